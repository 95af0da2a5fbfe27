// The shape of all trace scopes: one object traces one operation.
#pragma once

#include <cstdint>

namespace dnz {

// Writes the entry record when it is made and the exit record when it goes, on every way out.
// Declare it first in a function, so that the records of local objects fall inside.
// The labels are borrowed; they are literals.
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

    // Sets the code of the exit record, which is 0 otherwise, and hands it back for the return.
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
