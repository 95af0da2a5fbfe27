#include "services/inner/FunctionStack.h"

#include <new>

#include "services/base/Text.h"

using namespace dnz;

FunctionStackBlock* pCtl = nullptr;

namespace {

constexpr std::int32_t kColumnsPerLevel = 2;

// Doesn't clear the names: `depth` says how many are in use.
FunctionStackBlock* newFunctionStack() {
    auto* stack = new (std::nothrow) FunctionStackBlock;
    if (stack != nullptr) {
        stack->depth = 0;
    }
    return stack;
}

}  // namespace

std::int32_t dnz::pushFunction(const char* name) {
    if (pCtl == nullptr) {
        pCtl = newFunctionStack();
    }
    if (pCtl == nullptr) {
        return 0;
    }
    if (pCtl->depth < kFunctionStackLimit) {
        BoundedText(pCtl->names[pCtl->depth]).append(name);
    }
    return kColumnsPerLevel * pCtl->depth++;
}

std::int32_t dnz::popFunction() {
    if (pCtl == nullptr) {
        return 0;
    }
    if (pCtl->depth > 0) {
        --pCtl->depth;
    }
    return kColumnsPerLevel * pCtl->depth;
}
