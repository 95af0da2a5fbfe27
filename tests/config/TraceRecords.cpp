#include "TraceRecords.h"

#include <utility>

#include "ServiceCalls.h"

static std::string records;

void dnzxtr_entry(const char* functionName) {
    records.append("+").append(functionName).append("\n");
}

void dnzxtr_text(const char* text) {
    records.append(text).append("\n");
}

void dnzxtr_exit(const char* functionName, std::int32_t returnCode) {
    records.append("-").append(functionName).append(" ");
    records.append(std::to_string(returnCode)).append("\n");
}

std::string takeTraceRecords() {
    return std::exchange(records, {});
}
