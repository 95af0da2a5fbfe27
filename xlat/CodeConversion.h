// The inner step of the text conversion: xcsConvertString chooses tables and mode, and this
// converts the bytes.
#pragma once

#include <cstdint>

#include "ConversionEngines.h"

// The class that a conversion takes where nothing else is said.
constexpr std::int32_t kDefaultLeadByteClass = 1;

// Converts with the tables of `handle`, by the engine that fits its parts and `mode`; arguments
// and result are those of the engines. The class of lead bytes comes with the double-byte table;
// where pairs pass unchanged there is none, and `sourceLeadByteClass` holds.
[[nodiscard]] std::int32_t xxxCodeConv(const unsigned char** source,
                                       const std::int32_t* sourceLength, unsigned char** target,
                                       std::int32_t* targetLength, std::int32_t handle,
                                       ConvMode mode,
                                       std::int32_t sourceLeadByteClass = kDefaultLeadByteClass);
