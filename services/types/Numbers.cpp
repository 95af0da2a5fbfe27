#include "Numbers.h"

#include <algorithm>
#include <climits>
#include <cstdlib>

int leadingNumber(const char* text) {
    constexpr int kDecimal = 10;
    const long number = std::strtol(text, nullptr, kDecimal);
    return static_cast<int>(std::clamp<long>(number, INT_MIN, INT_MAX));
}
