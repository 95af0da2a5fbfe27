#include "services/outer/StartStop.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <string_view>

#include "services/base/ReturnCodes.h"
#include "services/inner/ControlBlock.h"
#include "services/inner/TraceControl.h"
#include "services/inner/TraceRecords.h"
#include "xlat/TextConversion.h"

using namespace dnz;

namespace {

bool isStarted(std::string_view name) {
    return xnzCSCtrl != nullptr && std::string_view(xnzCSCtrl->programName).starts_with(name) &&
           std::string_view(xnzCSCtrl->serviceName).starts_with(name) &&
           xnzCSCtrl->processId == reducedProcessId();
}

}  // namespace

std::int32_t InitCommonServices(const char* name) {
    // The part that fits with its terminator.
    const std::string_view usable(name, strnlen(name, kServiceNameSize - 1));
    if (isStarted(usable)) {
        return kServiceOk;
    }
    xnzCSCtrl = new (std::nothrow) CSCtrlBlock{};
    if (xnzCSCtrl == nullptr) {
        return xecS_E_NONE;
    }
    std::copy(usable.begin(), usable.end(), xnzCSCtrl->programName);
    std::copy(usable.begin(), usable.end(), xnzCSCtrl->serviceName);
    xnz_xtrInitialize();
    return xxxInitialize();
}

std::int32_t xnzTermCommonServices() {
    if (xnzCSCtrl == nullptr) {
        return kServiceOk;
    }
    // No exit record follows: the trace file is closed by then.
    xnztr_entry("xnzTermCommonServices");
    xxxTerminate();
    const std::int32_t code = xnz_xtrTerminate();
    delete xnzCSCtrl;
    xnzCSCtrl = nullptr;
    return code;
}
