// Text conversion between coded character sets, for programs that use the services.
// A CCSID names a coded character set. The CCSID table of the installation, read when the services
// start, lists the sets and how each is encoded.
// Results: 0 is success, else a code of ReturnCodes.h. Ownership: all arguments stay the caller's.
// No argument is null, except a text of length 0. Limits: one caller at a time.
#pragma once

#include <cstdint>

// More results of xcsConvertString, for mixed text that is incomplete or outgrows its target. The
// target then contains the text converted so far, and its length is not returned.
constexpr std::int32_t xxxRC_PC_SOURCE_SHORT = -12;    // a lead byte has no second byte
constexpr std::int32_t xxxRC_PC_TARGET_SHORT = -13;    // no space to begin a double-byte section
constexpr std::int32_t xxxRC_HOST_TARGET_SHORT = -14;  // no space for a pair inside a section
constexpr std::int32_t xxxRC_HOST_SOURCE_SHORT = -15;  // the text ends inside a section

// Converts `sourceLength` bytes of text; nothing is terminated. `*targetLength` is the size of
// `target` on entry, and the count of bytes written after a result of 0. The target must be at
// least as long as the source. Text that gains shift bytes needs more: if the target ends between
// two characters, it is cut without an error. The two texts may begin at the same byte, unless
// shift bytes are gained.
//   0                               converted, or copied where both CCSIDs have the same pages
//   xecX_E_SERVICE_UNAVAILABLE      the services aren't started
//   NZRC_SOURCE_LENGTH_ERROR, NZRC_TARGET_LENGTH_ERROR   the length is negative
//   NZRC_SOURCE_CCSID_ERROR, NZRC_TARGET_CCSID_ERROR     the CCSID isn't in the table, or its
//                                   encoding class is unknown and mixed text needs it
//   NZRC_CONVERTED_MSG_TOO_BIG      the target is shorter than the source. Text that needs no
//                                   conversion is copied as far as it fits, and counted
//   NZRC_STORAGE_NOT_AVAILABLE      no memory for a translation table
//   NZRC_NOT_CONVERTED              no usable translation table for this pair
//   xxxRC_...                       see above
// Unless stated otherwise, a result other than 0 leaves `target` and `*targetLength` untouched.
[[nodiscard]] std::int32_t xcsConvertString(std::int32_t fromCCSID, std::int32_t toCCSID,
                                            const char* source, std::int32_t sourceLength,
                                            char* target, std::int32_t* targetLength);

// How text of a CCSID is encoded, from the CCSID table.
struct CCSIDType {
    std::int32_t encodingClass;  // 1 host (shift bytes), 2 and 3 PC (lead bytes)
    std::int32_t widthClass;     // 1 single-byte, 3 mixed single-byte and double-byte
};

// Fills `out` for `ccsid`. 0, xecX_E_SERVICE_UNAVAILABLE before the services are started, or
// xecX_S_CCSID_NOT_FOUND; `out` is untouched unless the result is 0.
[[nodiscard]] std::int32_t xcsQueryCCSIDType(std::int32_t ccsid, CCSIDType* out);

// Start and stop of the text conversion, only for those of the services.
// The start finds the code page of the system and reads the CCSID table. 0,
// xecX_E_SERVICE_UNAVAILABLE if the services have no control block yet, or xecX_S_NO_CCSID_TABLE
// without a table file. Conversions then only copy text between equal CCSIDs.
std::int32_t xxxInitialize();
// Frees the CCSID table and all translation tables. Always 0.
std::int32_t xxxTerminate();
