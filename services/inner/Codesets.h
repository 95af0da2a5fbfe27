// Which codeset a locale means, for systems whose locale doesn't say.
#pragma once

#include <cstddef>

namespace dnz {

struct LocaleCodeset {
    const char* locale;  // compared whole: de_DE.UTF-8 isn't de_DE
    const char* codeset;
};

constexpr std::size_t kLocaleCount = 97;

}  // namespace dnz

// Searched from the start; the last row holds two null pointers.
extern const dnz::LocaleCodeset xxxCodesetInfo[dnz::kLocaleCount + 1];
