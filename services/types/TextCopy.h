// Copies of texts that somebody owns.
#pragma once

#include <cstring>
#include <memory>

// A copy of `text` with its terminator; null for null.
inline std::unique_ptr<char[]> copyOfText(const char* text) {
    if (text == nullptr) {
        return nullptr;
    }
    const std::size_t size = std::strlen(text) + 1;
    std::unique_ptr<char[]> copy(new char[size]);
    std::memcpy(copy.get(), text, size);
    return copy;
}
