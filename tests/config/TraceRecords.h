// The trace records that the code under test has written since the last call, a line each:
// "+label" for an entry, "-label code" for an exit, texts as they are.
#pragma once

#include <string>

std::string takeTraceRecords();
