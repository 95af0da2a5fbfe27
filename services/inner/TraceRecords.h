// Trace records: what the code leaves in the trace file of its process.
// Entry and exit records also keep the function stack, which runs whether or not the process
// traces. All operations do nothing before the services are started, never fail as seen by the
// caller, and leave errno as it was. The program calls them from one thread.
#pragma once

#include <cstddef>
#include <cstdint>

#include "services/base/TraceScope.h"

namespace dnz {

// Room for the longest text of a return code, the terminator included.
constexpr std::size_t kReturnCodeTextSize = 63;

// Kinds of records for xnz_trcgent.
constexpr std::int32_t kTextRecord = 0;
constexpr std::int32_t kDumpRecord = 1;

// Whether records are written at present; for callers that would build a text in vain.
[[nodiscard]] bool isTracing();

}  // namespace dnz

void xnztr_entry(const char* functionName);
void xnztr_exit(const char* functionName, std::int32_t returnCode);
// A line of free text. A null text writes nothing.
void xnztr_text(const char* text);
// A hexadecimal dump, in chunks of 4000 bytes; null data leaves a line that says so.
void xnztr_data(const void* data, std::uint16_t length);

// Writes the text of a return code to `out`, which has kReturnCodeTextSize bytes: "OK", a
// decimal number up to 99, or a name of xnzRetList.
void xnz_xtrFormatRC(char* out, std::int32_t returnCode);

// Writes an entry record (`isEntry` 1) or an exit record (0).
void xnz_trchkgt(const char* functionName, std::int32_t returnCode, std::int32_t indentation,
                 std::int32_t isEntry);

// Writes a text record, up to the terminator of `data` whatever `length` says, or the dump of
// one chunk. Any other kind writes nothing.
void xnz_trcgent(std::int32_t kind, std::int32_t length, const void* data);

namespace dnz {

// An entry whose caller stores the name: the row of the function stack for it, or null.
char* enterFunction(const char* functionName);

// Traces one operation of the services. The outer layer has its twin for the code above it.
using ServiceTraceScope = BasicTraceScope<enterFunction, xnztr_entry, xnztr_exit>;

}  // namespace dnz
