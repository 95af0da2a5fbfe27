// The one way to fill a buffer of fixed size: a builder that cuts instead of overrunning.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

// Appends text to a caller's array. The array is terminated from the start and after every
// step, and what doesn't fit is dropped and remembered. The array is borrowed.
class BoundedText {
public:
    // `size` counts the terminator; an array of size 0 is left alone and holds nothing.
    BoundedText(char* buffer, std::size_t size) : buffer_(buffer), size_(size) {
        if (size_ > 0) {
            buffer_[0] = '\0';
        }
    }
    template <std::size_t Size>
    explicit BoundedText(char (&buffer)[Size]) : BoundedText(buffer, Size) {}

    BoundedText(const BoundedText&) = delete;
    BoundedText& operator=(const BoundedText&) = delete;

    BoundedText& append(std::string_view text);
    // Formats as printf does.
    BoundedText& appendf(const char* format, ...) __attribute__((format(printf, 2, 3)));

    // Cuts the text to its first `length` bytes; a longer length changes nothing.
    void shorten(std::size_t length);

    [[nodiscard]] std::size_t length() const { return length_; }
    [[nodiscard]] std::string_view view() const { return {buffer_, length_}; }
    // True once something didn't fit.
    [[nodiscard]] bool truncated() const { return truncated_; }

private:
    // What still fits in front of the terminator.
    [[nodiscard]] std::size_t room() const { return size_ > 0 ? size_ - 1 - length_ : 0; }

    char* buffer_;
    std::size_t size_;
    std::size_t length_ = 0;
    bool truncated_ = false;
};

// Inline, since every traced operation notes its name by it.
inline BoundedText& BoundedText::append(std::string_view text) {
    const std::size_t count = std::min(room(), text.size());
    if (count > 0) {
        std::memcpy(buffer_ + length_, text.data(), count);
        length_ += count;
        buffer_[length_] = '\0';
    }
    truncated_ = truncated_ || count < text.size();
    return *this;
}
