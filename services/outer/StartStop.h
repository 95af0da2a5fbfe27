// Start and stop of the common services: control block, trace, CCSID table, in this order, and
// back in the reverse one.
#pragma once

#include <cstdint>

// Starts the services under `name`, of which 7 characters count. Does nothing when this process
// runs them under that name, or one that begins so, already; a forked child or another name starts
// them again with a block of its own. 0, xecS_E_NONE without storage for the block, or the result
// of the start of the text conversion, which a caller may disregard.
std::int32_t InitCommonServices(const char* name);

// Stops the services and releases the block; the outer layer doesn't start them again. 0.
std::int32_t xnzTermCommonServices();
