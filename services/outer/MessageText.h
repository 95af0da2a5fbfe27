// A numbered message, ready to be written.
#pragma once

#include <cstddef>
#include <cstdint>

#include "services/base/Inserts.h"

namespace dnz {

// The room for a message, its terminator included; what doesn't fit is cut.
constexpr std::size_t kMessageSize = 2000;

// Fetches a message with up to two text inserts, null for one that isn't given. Where the
// catalogue fails, the text is one that is built in; without storage it is empty.
class MessageText {
public:
    explicit MessageText(std::int32_t number, const char* insert1 = nullptr,
                         const char* insert2 = nullptr);

    [[nodiscard]] const char* text() const { return text_; }

private:
    char text_[kMessageSize];
};

}  // namespace dnz
