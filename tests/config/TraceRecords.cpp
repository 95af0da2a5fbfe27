#include "TraceRecords.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <utility>

#include "ServiceCalls.h"

namespace {

// Never destroyed: static objects of tests may trace until the end.
std::vector<std::string>& records() {
    static auto* const all = new std::vector<std::string>;
    return *all;
}

}  // namespace

void dnzxtr_entry(const char* functionName) {
    records().push_back(std::string("{") + functionName);
}

void dnzxtr_text(const char* text) {
    records().emplace_back(text);
}

void dnzxtr_exit(const char* functionName, std::int32_t returnCode) {
    records().push_back(std::string("}") + functionName + " " + std::to_string(returnCode));
}

std::vector<std::string> takeTraceRecords() {
    return std::exchange(records(), {});
}

std::string printed() {
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
}
