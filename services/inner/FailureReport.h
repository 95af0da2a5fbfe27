// Failure reports: a boxed record, in a file of its own, of something that should not have
// happened inside the services. It names the function, the place in it (the probe), two codes,
// three comments and the chain of callers. A report changes no result and stops nothing: where
// none can be written it is lost without a further sign.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "services/base/Inserts.h"

// The report file of this process: null until the first report, then open to its end.
extern std::FILE* fdcFile;

// Reports a failure in `functionName` at the place `probe`. Of the inserts number1 is the major
// code, number2 the minor code, and the texts are the comments, " " where there is nothing to
// say. Always 0.
std::int32_t xnz_xcsWYRD(const char* functionName, std::int32_t probe, xcsINSERTS inserts);

// Writes one report to the open report file, if there is one. Always 0.
std::int32_t CreateWYRD(const char* functionName, std::int32_t probe, xcsINSERTS inserts);

namespace dnz {

// Room for the two rows of 80 bytes that one text may take, and a terminator.
constexpr std::size_t kReportLineSize = 161;

}  // namespace dnz

// The rows of the box. `line` is a scratch buffer of kReportLineSize bytes.
void PrintTop(char* line, std::FILE* stream);
void PrintBot(char* line, std::FILE* stream);
void PrintBlank(char* line, std::FILE* stream);
void PrintString(char* line, std::FILE* stream, const char* text);
// Puts `text` between the borders, in one row or two: 75 characters, then 70 more. Returns `line`.
char* FormatString(char* line, const char* text);
// Lists the chain of callers, below the box.
void PrintFunctionStack(std::FILE* stream);
