// Service calls: the common services as config/ and frontend/ use them.
// Each call starts the services under the name "DNZ" unless they are started, then calls the inner
// operation that does the work. A service that fails lowers the quality of the output and stops
// nothing, so callers may ignore results. 0 is success.
#pragma once

#include <cstdint>

#include "services/base/Inserts.h"
#include "services/base/ReturnCodes.h"
#include "services/base/TraceScope.h"

// 0 before dnz_InitCommonServices has run, then 1 until the process ends.
extern std::int32_t dnzcsaInit;

// Starts the services under `name`, of which 7 characters count. A second call with that name
// changes nothing; another name starts them again.
void dnz_InitCommonServices(const char* name);

// Trace records. TraceScope writes entry and exit as a pair.
void dnzxtr_entry(const char* functionName);
void dnzxtr_text(const char* text);
void dnzxtr_exit(const char* functionName, std::int32_t returnCode);

// Fetches message `number` into up to three buffers, one for each section of its text. A size
// counts the terminator; size 0 omits a section. Pass 0 for the two unused arguments. Returns the
// code of the retrieval: 0, or what went wrong. Even then the buffers contain a text to show,
// unless the arguments are faulty or memory runs out.
std::int32_t dnzxGetMessage(std::int32_t number, std::int32_t unused1, xcsINSERTS inserts,
                            std::int32_t unused2, char* buffer1, std::uint32_t size1, char* buffer2,
                            std::uint32_t size2, char* buffer3, std::uint32_t size3);

// Writes a failure report that names the function with this index. An index without a name counts
// as the first one. Always 0.
std::int32_t dnz_xcsWYRD(const void* unused, std::uint16_t functionIndex, std::int32_t probe,
                         xcsINSERTS inserts);

namespace dnz {

// Starts the services if need be. Whether records are written; lets callers skip building a text.
[[nodiscard]] bool startAndAskTracing();

// Starts the services if need be and writes an entry record. Returns the row of the function stack
// in which the caller stores the name, or null.
char* startAndEnter(const char* functionName);

// Traces one operation of config/ or frontend/.
using TraceScope = BasicTraceScope<startAndEnter, dnzxtr_entry, dnzxtr_exit>;

}  // namespace dnz
