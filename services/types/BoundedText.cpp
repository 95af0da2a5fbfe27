#include "BoundedText.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>

BoundedText::BoundedText(char* buffer, std::size_t size) : buffer_(buffer), size_(size) {
    if (size_ > 0) {
        buffer_[0] = '\0';
    }
}

BoundedText& BoundedText::append(std::string_view text) {
    const std::size_t count = std::min(room(), text.size());
    if (count > 0) {
        std::memcpy(buffer_ + length_, text.data(), count);
        length_ += count;
        buffer_[length_] = '\0';
    }
    truncated_ = truncated_ || count < text.size();
    return *this;
}

BoundedText& BoundedText::appendf(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const int wanted = std::vsnprintf(buffer_ + length_, size_ - length_, format, arguments);
    va_end(arguments);
    const std::size_t count = wanted > 0 ? static_cast<std::size_t>(wanted) : 0;
    truncated_ = truncated_ || wanted < 0 || count > room();
    length_ += std::min(room(), count);
    return *this;
}

void BoundedText::shorten(std::size_t length) {
    if (length < length_) {
        length_ = length;
        buffer_[length_] = '\0';
    }
}

std::size_t BoundedText::room() const {
    return size_ > 0 ? size_ - 1 - length_ : 0;
}
