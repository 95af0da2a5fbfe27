#include "services/inner/FunctionStack.h"

#include <new>

FunctionStackBlock* pCtl = nullptr;

// The names stay uncleared: `depth` says how many are current.
void dnz::makeFunctionStack() {
    pCtl = new (std::nothrow) FunctionStackBlock;
    if (pCtl != nullptr) {
        pCtl->depth = 0;
    }
}
