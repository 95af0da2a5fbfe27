#include "ServiceNames.h"

#include <cstdlib>
#include <cstring>
#include <string_view>

#include "ControlBlock.h"

namespace {

// Names are made from the first four bytes of the service name.
constexpr std::size_t kStemLength = 4;

std::string_view serviceStem() {
    return {xnzCSCtrl->serviceName, strnlen(xnzCSCtrl->serviceName, kStemLength)};
}

}  // namespace

const char* serviceVariable(const char* suffix) {
    if (xnzCSCtrl == nullptr) {
        return nullptr;
    }
    char name[16];
    BoundedText(name).append(serviceStem()).append(suffix);
    return std::getenv(name);
}

const char* serviceDirectory() {
    const char* directory = serviceVariable("_PATH");
    return directory != nullptr && *directory != '\0' ? directory : nullptr;
}

void appendDirectory(BoundedText& path, const char* directory) {
    const std::string_view text = directory;
    path.append(text);
    if (text.empty() || text.back() != '/') {
        path.append("/");
    }
}

void appendServiceFileName(BoundedText& path, const char* extension) {
    constexpr std::size_t kShortName = 3;
    constexpr int kFourDigits = 10000;
    const bool isShort =
        strnlen(xnzCSCtrl->serviceName, sizeof xnzCSCtrl->serviceName) == kShortName;
    const int id = reducedProcessId();
    path.append(serviceStem());
    if (isShort) {
        path.appendf("%5.5d.%s", id, extension);
    } else {
        path.appendf("%4.4d.%s", id % kFourDigits, extension);
    }
}
