// The trace records that the code under test has written since the last call.
#pragma once

#include <string>
#include <vector>

// Each is a "{label" of an entry, a "}label code" of an exit, or a text as it is.
std::vector<std::string> takeTraceRecords();

// What was printed to standard output since testing::internal::CaptureStdout().
std::string printed();
