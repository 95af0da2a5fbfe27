// What the services ask the operating system: code page, codeset, date and time, a sleep.
#pragma once

#include <cstddef>
#include <cstdint>

namespace dnz {

// Room for any codeset name.
constexpr std::size_t kCodesetSize = 20;

// Options of xnzQueryDateTime2.
constexpr std::int16_t kLocalTime = 1;
constexpr std::int16_t kUniversalTime = 2;

}  // namespace dnz

// The code page of the system, 819 where nothing else is known. Sets the process locale from
// the environment, for all categories, and leaves it so (setlocale, ISO C).
std::int32_t ObtainSystemCP();

// Writes the codeset name of the current locale to `codeset`, which has kCodesetSize bytes.
// Where the locale is "C", the variable LANG names it.
void xnzGetCodeset(char* codeset);

// Date in the locale's form with a blank behind it, and time as hh:mm:ss. The sizes are those
// of the buffers in bytes, of which the last stays unused. Returns 0, xecU_E_INVALID_OPTION
// with both buffers untouched, or xecU_E_TIME_ERROR when a text doesn't fit.
std::int32_t xnzQueryDateTime2(std::int16_t option, char* date, char* time, std::int16_t dateSize,
                               std::int16_t timeSize);

// Sleeps, in whole seconds: the time goes up to the next one.
void xnzSleep(std::uint32_t milliseconds);
