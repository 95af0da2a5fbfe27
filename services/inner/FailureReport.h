// Failure reports: records of errors inside the services, each a box in a file of its own. A report
// names the function, the place in it (the probe), two codes, three comments and the chain of
// callers. It changes no result and stops nothing. If it can't be written, it is lost without a
// sign.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "services/base/Inserts.h"

// The report file of this process: null before the first report, then open until the process ends.
extern std::FILE* fdcFile;

// Reports a failure in `functionName` at the place `probe`. In the inserts number1 is the major
// code, number2 the minor code, and the texts are the comments, " " for none. Always 0.
std::int32_t xnz_xcsWYRD(const char* functionName, std::int32_t probe, xcsINSERTS inserts);

// Writes one report to the open report file, if there is one. Always 0.
std::int32_t CreateWYRD(const char* functionName, std::int32_t probe, xcsINSERTS inserts);

namespace dnz {

// The size of the two rows of 80 bytes that a text may take, and a terminator.
constexpr std::size_t kReportLineSize = 161;

}  // namespace dnz

// The rows of the box. `line` is a scratch buffer of kReportLineSize bytes.
void PrintTop(char* line, std::FILE* stream);
void PrintBot(char* line, std::FILE* stream);
void PrintBlank(char* line, std::FILE* stream);
void PrintString(char* line, std::FILE* stream, const char* text);
// Writes `text` between the borders, in one row or two: 75 characters, then 70 more. Returns
// `line`.
char* FormatString(char* line, const char* text);
// Writes the chain of callers, which comes below the box.
void PrintFunctionStack(std::FILE* stream);
