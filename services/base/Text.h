// Texts of the C kind: views of those that may be absent, numbers in them, and the one way to fill
// a buffer of fixed size, a builder that cuts instead of overrunning.
#pragma once

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace dnz {

// The text, or an empty one for null.
inline std::string_view viewOf(const char* text) {
    return text != nullptr ? std::string_view(text) : std::string_view("");
}

inline bool isNullOrEmpty(const char* text) {
    return text == nullptr || *text == '\0';
}

// The value of an environment variable, or null if it isn't set or is empty. Borrowed from the
// environment.
[[nodiscard]] const char* nonEmptyVariable(const char* name);

// The decimal number at the start of `text`, which isn't null, as atoi reads it: white space, a
// sign, digits, and 0 where there are none. A number too large for an int gives the nearest int.
[[nodiscard]] int leadingNumber(const char* text);

// The letter in upper case; by the portable characters alone, whatever the locale.
constexpr char upperCase(char character) {
    return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A')
                                                : character;
}

// Appends text to a caller's array. The array is terminated from the start and after every
// step, and what doesn't fit is dropped and remembered. The array is borrowed.
class BoundedText {
public:
    // `size` counts the terminator; an array of size 0 is left alone and contains nothing.
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
    BoundedText& vappendf(const char* format, std::va_list arguments);

    [[nodiscard]] const char* c_str() const { return buffer_; }
    [[nodiscard]] std::string_view view() const { return {buffer_, length_}; }
    // True once something didn't fit.
    [[nodiscard]] bool truncated() const { return truncated_; }

private:
    // What still fits before the terminator.
    [[nodiscard]] std::size_t room() const { return size_ > 0 ? size_ - 1 - length_ : 0; }

    char* buffer_;
    std::size_t size_;
    std::size_t length_ = 0;
    bool truncated_ = false;
};

// The array of a FixedText, a base of its own so that it exists before the builder writes to it.
template <std::size_t Size>
struct FixedStorage {
    char chars[Size];
};

// A bounded text with its own array of `Size` bytes.
template <std::size_t Size>
class FixedText : private FixedStorage<Size>, public BoundedText {
public:
    FixedText() : BoundedText(FixedStorage<Size>::chars) {}
    explicit FixedText(std::string_view text) : FixedText() { append(text); }
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

}  // namespace dnz
