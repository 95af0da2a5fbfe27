// Terminated texts: texts of the C library, views of texts that may be null, numbers and fields in
// texts, and bounded builders. All buffers of fixed size are filled by these builders, which cut a
// text instead of overrunning.
#pragma once

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

namespace dnz {

struct TextReleaser {
    void operator()(char* text) const { std::free(text); }
};

// A text from malloc or calloc, released with the object.
using CTextHandle = std::unique_ptr<char, TextReleaser>;

// The text, or an empty one for null.
inline std::string_view viewOf(const char* text) {
    return text != nullptr ? std::string_view(text) : std::string_view("");
}

// Removes the first field and the separator after it from `text`, and returns the field. Without a
// separator the whole text is the field.
inline std::string_view takeField(std::string_view& text, char separator) {
    const std::string_view field = text.substr(0, text.find(separator));
    text.remove_prefix(std::min(field.size() + 1, text.size()));
    return field;
}

inline bool isNullOrEmpty(const char* text) {
    return text == nullptr || *text == '\0';
}

// The value of an environment variable, or null if it isn't set or is empty. Borrowed from the
// environment.
[[nodiscard]] const char* nonEmptyVariable(const char* name);

// The decimal number at the start of `text`, which isn't null. Reads it as atoi does: white space,
// a sign, digits; 0 without digits. A number too large for an int gives the nearest int.
[[nodiscard]] int leadingNumber(const char* text);

// The upper case of an ASCII letter, whatever the locale. Other characters stay.
constexpr char upperCase(char character) {
    return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A')
                                                : character;
}

// Appends text to an array of the caller. The array is always terminated. Text that doesn't fit is
// dropped, and truncated() remembers it. The array is borrowed.
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
    // How many bytes fit before the terminator.
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
