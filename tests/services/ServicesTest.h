// Services at their start: a control block, a fresh directory, no trace, no report yet.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <regex>
#include <string>

#include "../support/TemporaryDirectory.h"
#include "ControlBlock.h"
#include "FailureReport.h"
#include "FunctionStack.h"
#include "TraceControl.h"

class ServicesTest : public testing::Test {
protected:
    ServicesTest() {
        setVariable("DNZ_TRACE", nullptr);
        setVariable("DNZ_PATH", nullptr);
        std::strcpy(block_.programName, "DNZ");
        std::strcpy(block_.serviceName, "DNZ");
        xnzCSCtrl = &block_;
    }
    ~ServicesTest() override {
        closeTrace();
        if (fdcFile != nullptr) {
            std::fclose(fdcFile);
            fdcFile = nullptr;
        }
        delete pCtl;
        pCtl = nullptr;
        xnzCSCtrl = nullptr;
    }

    void startTrace() {
        setVariable("DNZ_TRACE", "");
        xnz_xtrInitialize();
    }
    void closeTrace() {
        if (block_.traceFile != nullptr) {
            std::fclose(block_.traceFile);
            block_.traceFile = nullptr;
        }
    }

    static std::string fileName(const char* extension) {
        char name[32];
        std::snprintf(name, sizeof name, "DNZ%05d.%s", reducedProcessId(), extension);
        return name;
    }

    // The trace records behind the head of the file, with "T" for each time of day.
    static std::string records() {
        const std::string all = contentsOf(fileName("TRC"));
        const std::string records = all.substr(all.find('\n', all.find("BuildDate")) + 1);
        return std::regex_replace(records, std::regex("\\d\\d:\\d\\d:\\d\\d"), "T");
    }

    TemporaryDirectory directory_;
    CSCtrlBlock block_{};
};
