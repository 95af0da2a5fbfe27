// The chain of callers, kept whether or not the process traces, so that a failure report can
// name it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "services/base/TraceScope.h"

namespace dnz {

constexpr std::size_t kFunctionStackSlots = 40;
// Only the first half of the slots is filled; deeper calls are counted, not named.
constexpr std::int32_t kFunctionStackLimit = 20;

}  // namespace dnz

struct FunctionStackBlock {
    std::int32_t depth;  // entries without their exits so far
    char names[dnz::kFunctionStackSlots][dnz::kFunctionNameSize];
};

// Null until the first entry, and for good if there is no storage. Never released.
extern FunctionStackBlock* pCtl;

namespace dnz {

// Makes the stack; without storage it stays null.
void makeFunctionStack();

}  // namespace dnz
