// The shape of all trace scopes: one object traces one operation.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace dnz {

// The size of a row of the function stack, which keeps the labels of the operations under way.
constexpr std::size_t kFunctionNameSize = 40;

// Writes the entry record when it is made and the exit record when it goes, on every way out.
// Declare it first in a function, so that the records of local objects fall inside.
// The labels are borrowed. `Enter` returns the row that the label is to be stored in, or null.
template <char* (*Enter)(const char*), void (*EntryRecord)(const char*),
          void (*ExitRecord)(const char*, std::int32_t)>
class BasicTraceScope {
public:
    // For a literal, whose size is known here: storing it takes a few moves, which counts where a
    // request enters thousands of operations.
    template <std::size_t Size>
    explicit BasicTraceScope(const char (&label)[Size]) : exitLabel_(label) {
        static_assert(Size <= kFunctionNameSize, "the label doesn't fit the function stack");
        if (char* row = Enter(label); row != nullptr) {
            std::memcpy(row, label, Size);
        }
    }
    // For two labels, of any length: what doesn't fit the stack is cut there.
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
