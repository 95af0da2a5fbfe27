#include "ThreadObjectSet.h"

#include <pthread.h>

#include <cstdlib>

#include "BoundedText.h"
#include "ServiceCalls.h"

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
    const pthread_t thread = pthread_self();
    const auto id = static_cast<long>(thread);
    char text[50];
    BoundedText(text).appendf(" PosixThreadId=%16.16lx", thread);
    dnzxtr_text(text);
    BoundedText(text).appendf(" ThreadId=%8.8lx", id);
    dnzxtr_text(text);
    const long normalisedId = id % kSlots;
    BoundedText(text).appendf(" Normalised ThreadId=%8.8lx", normalisedId);
    dnzxtr_text(text);
    return normalisedId;
}

// An id with its top bit set is negative and leaves a negative remainder.
void*& ThreadObjectSet::ownSlot() {
    return oObjects[std::labs(getThreadId())];
}
