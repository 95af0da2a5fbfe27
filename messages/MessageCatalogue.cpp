#include "messages/MessageCatalogue.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "services/base/Text.h"
#include "services/inner/ControlBlock.h"
#include "services/inner/TraceRecords.h"

namespace dnz {

namespace {

constexpr char kDefaultCatalogue[] = "/usr/lib/locale/C/LC_MESSAGES/dnz.cat";
constexpr char kProductCatalogue[] = "/opt/nzm/bin/dnz.cat";
constexpr char kNamedCatalogue[] = "dnz";

}  // namespace

MessageCatalogue::~MessageCatalogue() {
    if (isOpen_) {
        catclose(descriptor_);
    }
}

bool MessageCatalogue::open() {
    const std::string_view language = viewOf(std::getenv("LANG"));
    const bool isPlain = language == "C" || language == "POSIX";
    return tryOpen(isPlain ? kProductCatalogue : kDefaultCatalogue) ||
           (xnzCSCtrl != nullptr && tryOpen(xnzCSCtrl->serviceName)) ||
           tryOpen(kDefaultCatalogue) || tryOpen(kNamedCatalogue) || tryOpen(kProductCatalogue);
}

const char* MessageCatalogue::text(int id) const {
    constexpr int kMessageSet = 1;
    return catgets(descriptor_, kMessageSet, id, "");
}

bool MessageCatalogue::tryOpen(const char* name) {
    constexpr std::intptr_t kFailed = -1;
    descriptor_ = catopen(name, 0);
    isOpen_ = reinterpret_cast<std::intptr_t>(descriptor_) != kFailed;
    xnztr_text(name);
    return isOpen_;
}

}  // namespace dnz
