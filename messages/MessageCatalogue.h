// The message catalogue, a file of numbered texts (catopen, catgets and catclose of X/Open), and
// the places where it is looked for.
#pragma once

#include <nl_types.h>

namespace dnz {

// A catalogue is closed with its object.
class MessageCatalogue {
public:
    MessageCatalogue() = default;
    ~MessageCatalogue();
    MessageCatalogue(const MessageCatalogue&) = delete;
    MessageCatalogue& operator=(const MessageCatalogue&) = delete;

    // Tries the places in their order, with a trace text for each: with LANG "C" or "POSIX"
    // /opt/nzm/bin/dnz.cat, else /usr/lib/locale/C/LC_MESSAGES/dnz.cat; then the service name, the
    // latter place once more, "dnz", and /opt/nzm/bin/dnz.cat. False if there is none.
    bool open();
    [[nodiscard]] bool isOpen() const { return isOpen_; }

    // The text of this number, empty if there is none. Borrowed from the catalogue.
    [[nodiscard]] const char* text(int id) const;

private:
    bool tryOpen(const char* name);

    nl_catd descriptor_ = nullptr;
    bool isOpen_ = false;
};

}  // namespace dnz
