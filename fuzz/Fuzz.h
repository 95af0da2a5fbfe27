// What a fuzz target is made of: the bytes that it gets, from which it takes its arguments from the
// front on, and what it demands. A number or text is zero or empty where the bytes have ended.
// With REPLAY, and without libFuzzer, the program runs over files, as a test.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "../tests/support/TemporaryDirectory.h"

class Input {
public:
    Input(const std::uint8_t* data, std::size_t size)
        : bytes_(reinterpret_cast<const char*>(data), size) {}

    unsigned char byte() { return static_cast<unsigned char>(number(1)); }
    // A number of so many bytes, the highest first.
    std::uint32_t number(std::size_t bytes) {
        std::uint32_t bits = 0;
        while (bytes-- > 0) {
            const std::string_view one = text(1);
            bits = bits << 8U | (one.empty() ? 0U : static_cast<unsigned char>(one.front()));
        }
        return bits;
    }
    std::string_view text(std::size_t size) {
        const std::string_view taken = bytes_.substr(0, size);
        bytes_.remove_prefix(taken.size());
        return taken;
    }
    // What precedes the next `separator`, which is taken too, or all that is left.
    std::string textTo(std::string_view separator) {
        const std::string_view taken = text(bytes_.find(separator));
        text(separator.size());
        return std::string(taken);
    }
    std::string rest() { return std::string(text(bytes_.size())); }

private:
    std::string_view bytes_;
};

// Ends the run as a finding.
inline void require(bool holds, const char* property) {
    if (!holds) {
        std::fprintf(stderr, "Broken: %s\n", property);
        std::abort();
    }
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

#ifdef REPLAY
int main(int count, char** arguments) {
    require(count > 1, "there are inputs");
    for (int i = 1; i < count; ++i) {
        const std::string bytes = contentsOf(arguments[i]);
        std::fprintf(stderr, "%s\n", arguments[i]);
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
}
#endif
