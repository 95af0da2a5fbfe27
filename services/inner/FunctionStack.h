// The function stack: the chain of callers for failure reports, kept whether or not the process
// traces.
#pragma once

#include <cstddef>
#include <cstdint>

namespace dnz {

constexpr std::size_t kFunctionStackSlots = 40;
constexpr std::size_t kFunctionNameSize = 40;
// Only the first half of the slots is used; deeper calls are counted, not named.
constexpr std::int32_t kFunctionStackLimit = 20;

}  // namespace dnz

struct FunctionStackBlock {
    std::int32_t depth;  // operations entered and not yet left
    char names[dnz::kFunctionStackSlots][dnz::kFunctionNameSize];
};

// Null before the first entry, and always if memory runs out then. Never released.
extern FunctionStackBlock* pCtl;

namespace dnz {

// Record an entry or an exit. They return the indentation of its trace record: two columns for each
// level, 0 without a stack.
std::int32_t pushFunction(const char* name);
std::int32_t popFunction();

}  // namespace dnz
