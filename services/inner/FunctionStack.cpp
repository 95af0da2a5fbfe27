#include "services/inner/FunctionStack.h"

#include <new>

FunctionStackBlock* pCtl = nullptr;

// Doesn't clear the names: `depth` says how many are in use.
void dnz::makeFunctionStack() {
    pCtl = new (std::nothrow) FunctionStackBlock;
    if (pCtl != nullptr) {
        pCtl->depth = 0;
    }
}
