// The template of all trace scopes. An object traces one operation: entry and exit.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace dnz {

// The size of a row of the function stack, which contains the labels of the running operations.
constexpr std::size_t kFunctionNameSize = 40;

// Writes the entry record when it is made and the exit record when it is destroyed, on every way
// out. Declare it first in a function, so that the records of other locals come between the two.
// The labels are borrowed. `Enter` returns the row in which to store the label, or null;
// `EntryRecord` is `Enter` plus storing the label, cut to the row.
template <char* (*Enter)(const char*), void (*EntryRecord)(const char*),
          void (*ExitRecord)(const char*, std::int32_t)>
class BasicTraceScope {
public:
    // For a literal. Its size is known here, so that storing it takes a few moves: a request enters
    // thousands of operations.
    template <std::size_t Size>
    explicit BasicTraceScope(const char (&label)[Size]) : exitLabel_(label) {
        static_assert(Size <= kFunctionNameSize, "the label doesn't fit the function stack");
        if (char* row = Enter(label); row != nullptr) {
            std::memcpy(row, label, Size);
        }
    }
    // For two labels of any length; the stack cuts a label that doesn't fit.
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
