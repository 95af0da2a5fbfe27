// Trace control: whether this process traces, into which file, and how that file begins and
// ends. The environment decides once, at the start of the services: the variable _TRACE of the
// service name switches tracing on by its presence, the variable _PATH names the directory. If
// that is set, even to nothing, a value that begins with "U" marks the trace as one that a user
// asked for.
#pragma once

#include <cstdint>

// Set together with the fields of the control block, for the rest of the program to see.
extern std::int32_t xtrTraceIsOn;
extern std::int32_t xtrUserTrace;

// The code level line of traces and reports.
extern const char* const xnz_level;

// Opens the trace file if the environment asks for one. Always 0: a trace file that can't be
// opened leaves a failure report and no tracing.
std::int32_t xnz_xtrInitialize();

// Opens `path` and writes the head of a trace. 0, or xecX_E_SERVICE_UNAVAILABLE after a report.
std::int32_t xnz_xtrOpenTraceFile(const char* path);

// Writes the closing records and closes the file. Always 0. No record can follow.
std::int32_t xnz_xtrTerminate();
