// Start and stop of the text conversion. The start and the stop of the services call these;
// nobody else needs to.
#pragma once

#include <cstdint>

// Finds the code page of the system and reads the CCSID table. 0, xecX_E_SERVICE_UNAVAILABLE
// before the services have a control block, or xecX_S_NO_CCSID_TABLE when there is no table
// file: conversions then only copy text between equal CCSIDs.
std::int32_t xxxInitialize();

// Frees the CCSID table and all translation tables. Always 0.
std::int32_t xxxTerminate();
