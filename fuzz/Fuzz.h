// What a fuzz target is made of: the bytes that it gets, from which it takes its arguments from the
// front on, and what it demands. A number or text is zero or empty where the bytes have ended.
// With REPLAY, and without libFuzzer, the program runs over files, as a test.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string_view>

#include "../tests/support/TemporaryDirectory.h"

struct Input {
    std::string_view bytes;

    // A number of so many bytes, the highest first.
    std::uint32_t number(std::size_t size) {
        std::uint32_t bits = 0;
        for (const char byte : text(size)) {
            bits = bits << 8U | static_cast<unsigned char>(byte);
        }
        return bits;
    }
    std::string text(std::size_t size) {
        const std::string taken(bytes.substr(0, size));
        bytes.remove_prefix(taken.size());
        return taken;
    }
    // What precedes the next `separator`, which is taken too, or all that is left.
    std::string textTo(std::string_view separator) {
        const std::string taken = text(bytes.find(separator));
        text(separator.size());
        return taken;
    }
    std::string rest() { return text(bytes.size()); }
};

// Ends the run as a finding.
inline void require(bool holds, const char* property) {
    if (!holds) {
        std::fprintf(stderr, "Broken: %s\n", property);
        std::abort();
    }
}

// One run of the target, in a folder that all its runs share.
void run(Input input);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TemporaryDirectory directory;
    run(Input{{reinterpret_cast<const char*>(data), size}});
    return 0;
}

#ifdef REPLAY
int main(int count, char** files) {
    require(count > 1, "there are inputs");
    for (int i = 1; i < count; ++i) {
        std::fprintf(stderr, "%s\n", files[i]);
        const std::string bytes = contentsOf(files[i]);
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
}
#endif
