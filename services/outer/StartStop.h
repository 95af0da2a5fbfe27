// Start and stop of the common services. The start makes control block, trace and CCSID table, in
// this order; the stop releases them in the reverse order.
#pragma once

#include <cstdint>

// Starts the services under `name`, of which 7 characters count. Does nothing if this process
// already runs them under a name that begins with `name`. A forked child or another name starts
// them again, with a new block; the former block is never released. 0, xecS_E_NONE without memory
// for the block, or the result of the start of the text conversion, which a caller may ignore.
std::int32_t InitCommonServices(const char* name);

// Stops the services and releases the block. The service calls don't start them again. Always 0.
std::int32_t xnzTermCommonServices();
