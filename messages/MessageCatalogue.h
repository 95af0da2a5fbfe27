// The message catalogue, a file of numbered texts (catopen, catgets and catclose of X/Open), and
// the places that are searched for it.
#pragma once

#include <nl_types.h>

namespace dnz {

// An open catalogue, closed with the object.
class MessageCatalogue {
public:
    MessageCatalogue() = default;
    ~MessageCatalogue();
    MessageCatalogue(const MessageCatalogue&) = delete;
    MessageCatalogue& operator=(const MessageCatalogue&) = delete;

    // Tries these places in turn, with a trace text for each: first /opt/nzm/bin/dnz.cat if LANG is
    // "C" or "POSIX", else /usr/lib/locale/C/LC_MESSAGES/dnz.cat; then the service name, the latter
    // file again, "dnz", and /opt/nzm/bin/dnz.cat. False if there is no catalogue.
    bool open();
    [[nodiscard]] bool isOpen() const { return isOpen_; }

    // The text with this number, empty if there is none. Borrowed from the catalogue.
    [[nodiscard]] const char* text(int id) const;

private:
    bool tryOpen(const char* name);

    nl_catd descriptor_ = nullptr;
    bool isOpen_ = false;
};

}  // namespace dnz
