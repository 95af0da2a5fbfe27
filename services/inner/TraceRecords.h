// Trace records: what operations write to the trace file of their process.
// Entry and exit records also maintain the function stack, whether or not the process traces.
// Before the services are started the operations do nothing. They report no errors and leave errno
// as it was. The program calls them from one thread.
#pragma once

#include <cstddef>
#include <cstdint>

#include "services/base/TraceScope.h"

namespace dnz {

// The size of the longest text of a return code, its terminator included.
constexpr std::size_t kReturnCodeTextSize = 63;

// Kinds of records for xnz_trcgent.
constexpr std::int32_t kTextRecord = 0;
constexpr std::int32_t kDumpRecord = 1;

// Whether records are currently written; lets callers skip building a text.
[[nodiscard]] bool isTracing();

}  // namespace dnz

void xnztr_entry(const char* functionName);
void xnztr_exit(const char* functionName, std::int32_t returnCode);
// A line of free text. A null text writes nothing.
void xnztr_text(const char* text);
// A hexadecimal dump, in chunks of 4000 bytes. For null data a line says so.
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

// Writes an entry record. Returns the row of the function stack in which the caller stores the
// name, or null.
char* enterFunction(const char* functionName);

// Traces one operation of the services. Code above the services uses TraceScope of ServiceCalls.h.
using ServiceTraceScope = BasicTraceScope<enterFunction, xnztr_entry, xnztr_exit>;

}  // namespace dnz
