// Which codeset a locale means, for systems whose locale doesn't say.
#pragma once

#include <cstddef>

struct LocaleCodeset {
    const char* locale;  // the whole name: nothing may stand behind it
    const char* codeset;
};

constexpr std::size_t kLocaleCount = 97;

// Searched from the start; the last row holds two null pointers.
extern const LocaleCodeset xxxCodesetInfo[kLocaleCount + 1];
