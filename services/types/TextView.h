// Views of texts that may be absent.
#pragma once

#include <string_view>

// The text, or an empty one for null.
inline std::string_view viewOf(const char* text) {
    return text != nullptr ? std::string_view(text) : std::string_view("");
}
