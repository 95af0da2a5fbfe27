// The table of the codesets that locale names imply, for locales that don't name one themselves.
#pragma once

#include <cstddef>

namespace dnz {

struct LocaleCodeset {
    const char* locale;  // compared whole: de_DE.UTF-8 isn't de_DE
    const char* codeset;
};

constexpr std::size_t kLocaleCount = 97;

}  // namespace dnz

// The first matching row counts. The last row has two null pointers.
extern const dnz::LocaleCodeset xxxCodesetInfo[dnz::kLocaleCount + 1];
