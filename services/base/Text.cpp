#include "services/base/Text.h"

#include <climits>
#include <cstdio>

namespace dnz {

const char* nonEmptyVariable(const char* name) {
    const char* value = std::getenv(name);
    return isNullOrEmpty(value) ? nullptr : value;
}

int leadingNumber(const char* text) {
    constexpr int kDecimal = 10;
    const long number = std::strtol(text, nullptr, kDecimal);
    return static_cast<int>(std::clamp<long>(number, INT_MIN, INT_MAX));
}

BoundedText& BoundedText::appendf(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    vappendf(format, arguments);
    va_end(arguments);
    return *this;
}

BoundedText& BoundedText::vappendf(const char* format, std::va_list arguments) {
    const int wanted = std::vsnprintf(buffer_ + length_, size_ - length_, format, arguments);
    const std::size_t count = wanted > 0 ? static_cast<std::size_t>(wanted) : 0;
    truncated_ = truncated_ || wanted < 0 || count > room();
    length_ += std::min(room(), count);
    return *this;
}

}  // namespace dnz
