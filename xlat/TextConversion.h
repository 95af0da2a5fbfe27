// Text conversion between coded character sets: the entries for programs that use the services.
// A CCSID names a coded character set; which ones there are, and how each is encoded, is said by
// the CCSID table of the installation, read when the services start.
// Results: 0 done, else a code of ReturnCodes.h. Ownership: all arguments stay the caller's.
// Limits: one caller at a time.
#pragma once

#include <cstdint>

// How text of a CCSID is encoded, as the CCSID table says it.
struct CCSIDType {
    std::int32_t encodingClass;  // 1 host (shift bytes), 2 and 3 PC (lead bytes)
    std::int32_t widthClass;     // 1 single-byte, 3 mixed single-byte and double-byte
};

// Fills `out` for `ccsid`. 0, xecX_E_SERVICE_UNAVAILABLE before the services are started, or
// xecX_S_CCSID_NOT_FOUND; `out` is untouched unless the result is 0.
[[nodiscard]] std::int32_t xcsQueryCCSIDType(std::int32_t ccsid, CCSIDType* out);
