// Services at their start, with a fresh directory for conversion data.
#pragma once

#include <cstdint>
#include <cstdio>
#include <sstream>
#include <string>
#include <string_view>

#include "../services/ServicesTest.h"
#include "ConversionLifecycle.h"
#include "TextConversion.h"

class ConversionTest : public ServicesTest {
protected:
    ConversionTest() { setVariable("DNZ_XLAT_PATH", directory_.path().c_str()); }
    ~ConversionTest() override { xxxTerminate(); }

    // The free texts in the trace, one a line.
    static std::string traceTexts() {
        constexpr std::string_view kMark = "   ! ";
        std::istringstream all(records());
        std::string texts;
        for (std::string line; std::getline(all, line);) {
            if (line.starts_with(kMark)) {
                texts += line.substr(kMark.size()) + "\n";
            }
        }
        return texts;
    }
};

// The bytes that `text` writes in hexadecimal.
inline std::string bytes(const char* text) {
    std::string result;
    unsigned value = 0;
    for (int used = 0; std::sscanf(text, "%2x %n", &value, &used) == 1; text += used) {
        result += static_cast<char>(value);
    }
    return result;
}
