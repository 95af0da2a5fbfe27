// The template of all trace scopes. An object traces one operation: entry and exit.
#pragma once

#include <cstdint>

namespace dnz {

// Writes the entry record when it is made and the exit record when it is destroyed, on every way
// out. Declare it first in a function, so that the records of other locals come between the two.
// The labels are literals; they are borrowed.
template <void (*EntryRecord)(const char*), void (*ExitRecord)(const char*, std::int32_t)>
class BasicTraceScope {
public:
    explicit BasicTraceScope(const char* label) : BasicTraceScope(label, label) {}
    BasicTraceScope(const char* entryLabel, const char* exitLabel) : exitLabel_(exitLabel) {
        EntryRecord(entryLabel);
    }
    ~BasicTraceScope() { ExitRecord(exitLabel_, exitCode_); }

    BasicTraceScope(const BasicTraceScope&) = delete;
    BasicTraceScope& operator=(const BasicTraceScope&) = delete;

    // Sets the code of the exit record, 0 by default, and returns it, for the return statement.
    template <typename Code>
    Code exitWith(Code code) {
        exitCode_ = static_cast<std::int32_t>(code);
        return code;
    }

private:
    const char* exitLabel_;
    std::int32_t exitCode_ = 0;
};

}  // namespace dnz
