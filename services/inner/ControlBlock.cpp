#include "services/inner/ControlBlock.h"

#include <unistd.h>

using namespace dnz;

CSCtrlBlock* xnzCSCtrl = nullptr;

std::int32_t dnz::reducedProcessId() {
    return reduceProcessId(getpid());
}
