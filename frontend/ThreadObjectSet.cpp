#include "frontend/ThreadObjectSet.h"

#include <pthread.h>

#include <cstdlib>

#include "services/base/Text.h"
#include "services/outer/ServiceCalls.h"

using namespace dnz;

namespace {

void traceId(const char* label, int digits, long id) {
    dnzxtr_text(FixedText<50>().appendf(" %s=%*.*lx", label, digits, digits, id).c_str());
}

}  // namespace

ThreadObjectSet* ThreadObjectSet::pGenericSet = nullptr;

ThreadObjectSet* ThreadObjectSet::Instance() {
    if (pGenericSet == nullptr) {
        pGenericSet = new ThreadObjectSet;
    }
    return pGenericSet;
}

ThreadObjectSet::ThreadObjectSet() {}

void* ThreadObjectSet::query() {
    return ownSlot();
}

void ThreadObjectSet::add(void* object) {
    ownSlot() = object;
}

void ThreadObjectSet::remove() {
    ownSlot() = nullptr;
}

long ThreadObjectSet::getThreadId() {
    const TraceScope trace("getThreadId");
    const auto id = static_cast<long>(pthread_self());
    const long normalisedId = id % kSlots;
    if (startAndAskTracing()) {  // every text of the page passes here
        traceId("PosixThreadId", 16, id);
        traceId("ThreadId", 8, id);
        traceId("Normalised ThreadId", 8, normalisedId);
    }
    return normalisedId;
}

// An id with its top bit set is negative and has a negative remainder.
void*& ThreadObjectSet::ownSlot() {
    return oObjects[std::labs(getThreadId())];
}
