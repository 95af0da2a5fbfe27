// Trace control: whether this process traces, to which file, and how that file begins and ends. The
// environment decides once, at the start of the services. The presence of the service variable
// _TRACE switches tracing on, and _PATH names the directory. If _PATH is set, even to an empty
// value, a value of _TRACE that begins with "U" marks the trace as one that a user requested.
#pragma once

#include <cstdint>

// Copies of the fields of the control block, for the rest of the program.
extern std::int32_t xtrTraceIsOn;
extern std::int32_t xtrUserTrace;

// The line with the code level in traces and reports.
extern const char* const xnz_level;

// Opens the trace file if the environment requests one. Always 0: if the file can't be opened,
// there is a failure report, and tracing stays off.
std::int32_t xnz_xtrInitialize();

// Opens `path` and writes the head of a trace. 0, or xecX_E_SERVICE_UNAVAILABLE after a failure
// report.
std::int32_t xnz_xtrOpenTraceFile(const char* path);

// Writes the closing records and closes the file. Always 0. No record can be written after it.
std::int32_t xnz_xtrTerminate();
