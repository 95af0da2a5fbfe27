// Services of the operating system: code page and codeset of the locale, date and time, a sleep.
#pragma once

#include <cstddef>
#include <cstdint>

namespace dnz {

// The size of the longest codeset name, its terminator included.
constexpr std::size_t kCodesetSize = 20;

// Options of xnzQueryDateTime2.
constexpr std::int16_t kLocalTime = 1;
constexpr std::int16_t kUniversalTime = 2;

}  // namespace dnz

// The code page of the system, 819 if it isn't known. Sets the process locale from the environment,
// for all categories (setlocale, ISO C), and does not restore it.
std::int32_t ObtainSystemCP();

// Writes the codeset name of the current locale to `codeset`, which has kCodesetSize bytes. If the
// locale is "C", the variable LANG names the locale.
void xnzGetCodeset(char* codeset);

// Writes the date in the locale's format, followed by a space, and the time as hh:mm:ss. The sizes
// are those of the buffers in bytes; the last byte stays unused. Returns 0, xecU_E_INVALID_OPTION
// with both buffers untouched, or xecU_E_TIME_ERROR if a text doesn't fit.
std::int32_t xnzQueryDateTime2(std::int16_t option, char* date, char* time, std::int16_t dateSize,
                               std::int16_t timeSize);

// Sleeps for a whole number of seconds, rounded up.
void xnzSleep(std::uint32_t milliseconds);
