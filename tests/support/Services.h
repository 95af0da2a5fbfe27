// Services at their start, with a control block, in a fresh directory; and tables of tests.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <regex>
#include <sstream>

#include "TemporaryDirectory.h"
#include "services/inner/ControlBlock.h"
#include "services/inner/FailureReport.h"
#include "services/inner/FunctionStack.h"
#include "services/inner/TraceControl.h"

// Rows of "input => result", one a line or some in a line with "|" between them. `resultOf` makes
// the result of an input, which it reads as a stream; "/" stands for a line end in a result.
template <typename ResultOf>
void check(const std::string& table, ResultOf resultOf) {
    static const std::regex kRow(" *([^|\n]*?) *=> *([^|\n]*?) *(?=[|\n]|$)");
    std::sregex_iterator row(table.begin(), table.end(), kRow);
    EXPECT_NE(row, std::sregex_iterator()) << "an empty table";
    for (; row != std::sregex_iterator(); ++row) {
        std::istringstream input(row->str(1));
        std::ostringstream result;
        result << resultOf(input) << ' ';
        const std::string line = std::regex_replace(result.str(), std::regex("\n"), "/");
        EXPECT_EQ(line.substr(0, line.find_last_not_of(' ') + 1), row->str(2)) << row->str(1);
    }
}

template <typename Value = std::string>
Value next(std::istream& input) {
    Value value{};
    input >> value;
    return value;
}

// A trace with "T" for each line with a time of day.
inline std::string withoutTimes(const std::string& trace) {
    return std::regex_replace(trace, std::regex("\\d\\d:\\d\\d:\\d\\d\n"), "T");
}

// The labels of the calls in a trace that begin with `prefix`, each with a space after it.
inline std::string callsOf(const std::string& trace, const std::string& prefix = "") {
    return std::regex_replace(trace, std::regex("->(" + prefix + ".*)"), "$1 ",
                              std::regex_constants::format_no_copy);
}

class Services : public testing::Test {
protected:
    Services() {
        for (const char* name : {"DNZ_TRACE", "DNZ_PATH", "LANG", "LC_ALL"}) {
            setVariable(name, nullptr);
        }
        setVariable("DNZ_XLAT_PATH", directory_.path.c_str());
        std::strcpy(block_.programName, "DNZ");
        std::strcpy(block_.serviceName, "DNZ");
        xnzCSCtrl = &block_;
    }
    ~Services() override {
        delete pCtl;
        pCtl = nullptr;
        xnzCSCtrl = nullptr;
    }
    // The records that `write` leaves in a trace.
    template <typename Write>
    std::string traced(Write write) {
        xnz_xtrOpenTraceFile("trace");
        const std::size_t head = contentsOf("trace").size();
        write();
        std::fclose(block_.traceFile);
        block_.traceFile = nullptr;
        const std::string records = contentsOf("trace").substr(head);
        std::filesystem::remove("trace");
        return withoutTimes(records);
    }

    TemporaryDirectory directory_;
    CSCtrlBlock block_{};
};
