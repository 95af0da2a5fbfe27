#include "services/inner/ControlBlock.h"

#include <unistd.h>

#include <cstdlib>
#include <cstring>

#include "services/base/Text.h"

CSCtrlBlock* xnzCSCtrl = nullptr;

namespace dnz {

std::int32_t reducedProcessId() {
    return reduceProcessId(getpid());
}

std::string_view serviceStem() {
    constexpr std::size_t kStemLength = 4;
    return {xnzCSCtrl->serviceName, strnlen(xnzCSCtrl->serviceName, kStemLength)};
}

const char* serviceVariable(const char* suffix) {
    if (xnzCSCtrl == nullptr) {
        return nullptr;
    }
    FixedText<16> name(serviceStem());
    return std::getenv(name.append(suffix).c_str());
}

}  // namespace dnz
