// Service calls: all that the configuration code needs of the common services.
// Each call first starts the services under the name "DNZ" if nobody has done so, then hands on
// to the inner operation that does the work. A service that fails lowers the quality of its
// output and stops nothing, so callers don't look at results. 0 is success.
#pragma once

#include <cstdint>

#include "services/base/Inserts.h"
#include "services/base/ReturnCodes.h"
#include "services/base/TraceScope.h"

// 0 until dnz_InitCommonServices has run, then 1 for the rest of the process.
extern std::int32_t dnzcsaInit;

// Starts the services under `name`, of which 7 characters count. A second call under that name
// changes nothing; another name starts them again.
void dnz_InitCommonServices(const char* name);

// Trace records; see TraceScope for the pair of entry and exit.
void dnzxtr_entry(const char* functionName);
void dnzxtr_text(const char* text);
void dnzxtr_exit(const char* functionName, std::int32_t returnCode);

// Fetches message `number` into up to three buffers, one for each section of its text; a size
// counts the terminator, and size 0 means a section that isn't wanted. The two unused words are
// passed as 0. Returns the code of the retrieval: 0, or what went wrong. Where arguments and
// storage allow, there is a text to show in the buffers all the same.
std::int32_t dnzxGetMessage(std::int32_t number, std::int32_t unused1, xcsINSERTS inserts,
                            std::int32_t unused2, char* buffer1, std::uint32_t size1, char* buffer2,
                            std::uint32_t size2, char* buffer3, std::uint32_t size3);

// Writes a failure report in the name of the function with this index, the first one for any
// index that has no name. Always 0.
std::int32_t dnz_xcsWYRD(const void* unused, std::uint16_t functionIndex, std::int32_t probe,
                         xcsINSERTS inserts);

namespace dnz {

// Whether trace records are written at present; for callers that would build a text in vain.
[[nodiscard]] bool startedAndTracing();

// An entry whose caller stores the name: the row of the function stack for it, or null.
char* startedAndEntered(const char* functionName);

// Traces one operation of the configuration code.
using TraceScope = BasicTraceScope<startedAndEntered, dnzxtr_entry, dnzxtr_exit>;

}  // namespace dnz
