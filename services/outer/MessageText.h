// A numbered message of the catalogue as finished text.
#pragma once

#include <cstddef>
#include <cstdint>

namespace dnz {

// The size of a message, its terminator included. A longer message is cut.
constexpr std::size_t kMessageSize = 2000;

// Fetches a message with up to two text inserts, null for none. If the catalogue fails, a built-in
// text takes its place; if memory runs out, the text is empty.
class MessageText {
public:
    explicit MessageText(std::int32_t number, const char* insert1 = nullptr,
                         const char* insert2 = nullptr);

    [[nodiscard]] const char* text() const { return text_; }

private:
    char text_[kMessageSize];
};

}  // namespace dnz
