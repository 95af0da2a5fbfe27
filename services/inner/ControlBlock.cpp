#include "services/inner/ControlBlock.h"

#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <string_view>

CSCtrlBlock* xnzCSCtrl = nullptr;

namespace dnz {

namespace {

// File names begin with the first four bytes of the service name.
constexpr std::size_t kStemLength = 4;

std::string_view serviceStem() {
    return {xnzCSCtrl->serviceName, strnlen(xnzCSCtrl->serviceName, kStemLength)};
}

}  // namespace

std::int32_t reducedProcessId() {
    return reduceProcessId(getpid());
}

const char* serviceVariable(const char* suffix) {
    if (xnzCSCtrl == nullptr) {
        return nullptr;
    }
    FixedText<16> name(serviceStem());
    return std::getenv(name.append(suffix).c_str());
}

const char* serviceDirectory() {
    const char* directory = serviceVariable("_PATH");
    return isNullOrEmpty(directory) ? nullptr : directory;
}

ServiceFileName::ServiceFileName(const char* extension) {
    constexpr std::size_t kShortName = 3;
    constexpr int kFourDigits = 10000;
    const bool isShort =
        strnlen(xnzCSCtrl->serviceName, sizeof xnzCSCtrl->serviceName) == kShortName;
    const int id = reducedProcessId();
    append(serviceStem());
    if (isShort) {
        appendf("%5.5d.%s", id, extension);
    } else {
        appendf("%4.4d.%s", id % kFourDigits, extension);
    }
}

}  // namespace dnz
