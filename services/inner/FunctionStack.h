// The function stack: the chain of callers for failure reports, kept whether or not the process
// traces. The entry and exit records of TraceRecords.h maintain it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "services/base/TraceScope.h"

namespace dnz {

constexpr std::size_t kFunctionStackSlots = 40;
// Only the first half of the slots is used; deeper calls are counted, not named.
constexpr std::int32_t kFunctionStackLimit = 20;

}  // namespace dnz

struct FunctionStackBlock {
    std::int32_t depth;  // operations entered and not yet left
    char names[dnz::kFunctionStackSlots][dnz::kFunctionNameSize];
};

// Null before the first entry, and always if memory runs out then. Never released.
extern FunctionStackBlock* pCtl;
