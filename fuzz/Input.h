// What a fuzz target gets: bytes, from which it takes its arguments from front to back. A taken
// number or text is zero or empty where the bytes have come to their end.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

class Input {
public:
    Input(const std::uint8_t* data, std::size_t size)
        : bytes_(reinterpret_cast<const char*>(data), size) {}

    unsigned char byte() {
        const std::string_view one = text(1);
        return one.empty() ? 0 : static_cast<unsigned char>(one.front());
    }
    // A number of so many bytes, the highest first.
    std::uint32_t number(int bytes) {
        std::uint32_t bits = 0;
        for (int i = 0; i < bytes; ++i) {
            bits = bits << 8U | byte();
        }
        return bits;
    }
    std::string_view text(std::size_t size) {
        const std::string_view taken = bytes_.substr(0, size);
        bytes_.remove_prefix(taken.size());
        return taken;
    }
    // What stands before the next `separator`, which is taken too, or all that is left.
    std::string_view textTo(std::string_view separator) {
        const std::string_view taken = bytes_.substr(0, bytes_.find(separator));
        bytes_.remove_prefix(std::min(taken.size() + separator.size(), bytes_.size()));
        return taken;
    }
    std::string_view rest() { return text(bytes_.size()); }

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
