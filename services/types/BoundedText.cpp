#include "BoundedText.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

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
