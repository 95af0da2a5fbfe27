// The control block of the common services: one record a process, from which all the services
// take their state, and the names of variables and files that they derive from it. It is made by
// the start of the services and released by their stop.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "services/base/Text.h"

struct CCSIDNode;  // the conversion's own; here only the root of its tree is kept

namespace dnz {

constexpr std::size_t kServiceNameSize = 8;

}  // namespace dnz

// Both names are the one that the services were started under. It has at most 7 characters, so a
// zero byte always follows.
struct CSCtrlBlock {
    char programName[dnz::kServiceNameSize];
    std::int32_t processId;                   // the reduced process id of the process that started
    std::int32_t inFailureReport;             // 1 while a failure report is being written
    std::int32_t traceIsOn;                   // 1 from the moment the trace file is open
    std::int32_t userTrace;                   // 1 when user tracing was asked for
    std::FILE* traceFile;                     // null if there is none; open until the services stop
    std::int32_t traceRequested;              // 1 when the trace variable is present
    std::int32_t systemCodePage;              // of the locale, see ObtainSystemCP
    CCSIDNode* ccsidTable;                    // null until a table has been read completely
    char serviceName[dnz::kServiceNameSize];  // the root of all names that the services derive
};

// Null before the start and after the stop.
extern CSCtrlBlock* xnzCSCtrl;

namespace dnz {

// A process id brought down to the five digits that fit into a file name.
constexpr std::int32_t reduceProcessId(std::int32_t processId) {
    constexpr std::int32_t kLargest = 99999;
    const std::int32_t positive = processId < 0 ? -processId : processId;
    return positive > kLargest ? positive % (kLargest + 1) : positive;
}

// The reduced id of this process (getpid, POSIX).
std::int32_t reducedProcessId();

// The value of the environment variable named by the service name and `suffix`, as DNZ_TRACE
// by "_TRACE". Null when it isn't set or the services aren't started. Borrowed from the
// environment.
const char* serviceVariable(const char* suffix);

// The directory for trace files and reports, from the service variable _PATH. Null when the
// variable isn't set or is empty, which means the working directory.
const char* serviceDirectory();

// The name of this process's file of one kind, as DNZ04711.TRC: eight characters from the service
// name and the reduced process id, a point and `extension`.
class ServiceFileName : public FixedText<16> {
public:
    explicit ServiceFileName(const char* extension);
};

}  // namespace dnz
