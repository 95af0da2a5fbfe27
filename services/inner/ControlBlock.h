// The control block of the common services: one record for each process, with the state of all the
// services. The start of the services makes it, their stop releases it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string_view>

struct CCSIDNode;  // the conversion's own; here only the root of its tree is kept

namespace dnz {

constexpr std::size_t kServiceNameSize = 8;

}  // namespace dnz

// Both names are the service name given at the start, at most 7 characters and a terminator.
struct CSCtrlBlock {
    char programName[dnz::kServiceNameSize];
    std::int32_t processId;                   // the reduced id of the process that started them
    std::int32_t inFailureReport;             // 1 while a failure report is being written
    std::int32_t traceIsOn;                   // 1 from the moment the trace file is open
    std::int32_t userTrace;                   // 1 when a user requested the trace
    std::FILE* traceFile;                     // null if there is none; open until the services stop
    std::int32_t traceRequested;              // 1 when the trace variable is present
    std::int32_t systemCodePage;              // of the locale, see ObtainSystemCP
    CCSIDNode* ccsidTable;                    // null until a table has been read completely
    char serviceName[dnz::kServiceNameSize];  // the root of all derived names
};

// Null before the start and after the stop.
extern CSCtrlBlock* xnzCSCtrl;

namespace dnz {

// The last five digits of a process id, which fit into a file name.
constexpr std::int32_t reduceProcessId(std::int32_t processId) {
    constexpr std::int32_t kLargest = 99999;
    const std::int32_t positive = processId < 0 ? -processId : processId;
    return positive > kLargest ? positive % (kLargest + 1) : positive;
}

// The reduced id of this process (getpid, POSIX).
std::int32_t reducedProcessId();

// The first four bytes of the service name, with which the names of its variables and files begin.
// Call it only while the services are started.
std::string_view serviceStem();

// The value of the environment variable whose name is the stem and `suffix`, such as DNZ_TRACE for
// "_TRACE". Null if it isn't set or the services aren't started. Borrowed from the environment.
const char* serviceVariable(const char* suffix);

}  // namespace dnz
