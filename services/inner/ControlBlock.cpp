#include "ControlBlock.h"

#include <unistd.h>

CSCtrlBlock* xnzCSCtrl = nullptr;

std::int32_t reducedProcessId() {
    return reduceProcessId(getpid());
}
