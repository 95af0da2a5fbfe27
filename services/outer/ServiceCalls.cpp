#include "services/outer/ServiceCalls.h"

#include <cinttypes>
#include <cstddef>
#include <iterator>

#include "messages/MessageRetrieval.h"
#include "services/base/Text.h"
#include "services/inner/FailureReport.h"
#include "services/inner/TraceRecords.h"
#include "services/outer/StartStop.h"

using namespace dnz;

std::int32_t dnzcsaInit = 0;

[[gnu::cold, gnu::noinline]] void dnz_InitCommonServices(const char* name) {
    InitCommonServices(name);
    dnzcsaInit = 1;
}

namespace {

constexpr const char* dnz_WYRD_functionName[] = {"first_function!!!"};

void startServicesOnce() {
    if (dnzcsaInit == 0) {
        dnz_InitCommonServices("DNZ");
    }
}

}  // namespace

bool dnz::startAndAskTracing() {
    startServicesOnce();
    return isTracing();
}

char* dnz::startAndEnter(const char* functionName) {
    startServicesOnce();
    return enterFunction(functionName);
}

void dnzxtr_entry(const char* functionName) {
    startServicesOnce();
    xnztr_entry(functionName);
}

void dnzxtr_text(const char* text) {
    startServicesOnce();
    xnztr_text(text);
}

void dnzxtr_exit(const char* functionName, std::int32_t returnCode) {
    startServicesOnce();
    xnztr_exit(functionName, returnCode);
}

std::int32_t dnzxGetMessage(std::int32_t number, std::int32_t /*unused1*/, xcsINSERTS inserts,
                            std::int32_t /*unused2*/, char* buffer1, std::uint32_t size1,
                            char* buffer2, std::uint32_t size2, char* buffer3,
                            std::uint32_t size3) {
    startServicesOnce();
    const std::int32_t code = xnzGetMessage(number, kPlainMessage, inserts, kInsertCcsid, buffer1,
                                            size1, buffer2, size2, buffer3, size3);
    // No retrieval returns this code today.
    if (code == xecE_E_MSG_FILE_CORRUPTED && buffer1 != nullptr) {
        BoundedText(buffer1, size1)
            .appendf("The error message %" PRIu32
                     " could not be located.\nIs the CCSID table present?\n",
                     static_cast<std::uint32_t>(number));
    }
    return code;
}

std::int32_t dnz_xcsWYRD(const void* /*unused*/, std::uint16_t functionIndex, std::int32_t probe,
                         xcsINSERTS inserts) {
    startServicesOnce();
    const std::size_t row = functionIndex < std::size(dnz_WYRD_functionName) ? functionIndex : 0;
    return xnz_xcsWYRD(dnz_WYRD_functionName[row], probe, inserts);
}
