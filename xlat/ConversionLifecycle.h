// Start and stop of the text conversion, for the start and the stop of the services. Other code
// doesn't call these.
#pragma once

#include <cstdint>

// Finds the code page of the system and reads the CCSID table. 0, xecX_E_SERVICE_UNAVAILABLE if the
// services have no control block yet, or xecX_S_NO_CCSID_TABLE without a table file. Conversions
// then only copy text between equal CCSIDs.
std::int32_t xxxInitialize();

// Frees the CCSID table and all translation tables. Always 0.
std::int32_t xxxTerminate();
