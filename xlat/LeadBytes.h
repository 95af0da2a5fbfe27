// The lead bytes: which bytes begin a double-byte character in PC text. A character set names a
// class of them, its leadByteClass in the CCSID table. The classes themselves are fixed here, for
// the conversion and for the program that makes tables.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>

namespace dnz {

// For each byte the number of the range that contains it, 0 if it isn't a lead byte.
using LeadBytes = std::array<unsigned char, 256>;

struct ByteRange {
    unsigned char first;
    unsigned char last;
};

template <std::size_t Count>
constexpr LeadBytes makeLeadBytes(const ByteRange (&ranges)[Count]) {
    LeadBytes bytes{};
    unsigned char number = 0;
    for (const ByteRange& range : ranges) {
        ++number;
        for (std::size_t byte = range.first; byte <= range.last; ++byte) {
            bytes[byte] = number;
        }
    }
    return bytes;
}

// By leadByteClass. The first row is also that of every unknown class.
inline constexpr LeadBytes kLeadByteClasses[] = {
    makeLeadBytes({{0x81, 0x9E}, {0xE0, 0xFE}}),  // any other
    makeLeadBytes({{0x81, 0x9E}, {0xE0, 0xFE}}),  // 1
    makeLeadBytes({{0x8F, 0xFE}}),                // 2
    makeLeadBytes({{0x81, 0xFC}}),                // 3
    makeLeadBytes({{0x81, 0x9E}, {0xE0, 0xFE}}),  // 4
    makeLeadBytes({{0x81, 0xFE}}),                // 5
    makeLeadBytes({{0x8C, 0xFE}}),                // 6
};

constexpr const LeadBytes& leadBytesOf(std::int32_t leadByteClass) {
    const bool isKnown =
        leadByteClass > 0 && leadByteClass < static_cast<std::int32_t>(std::size(kLeadByteClasses));
    return kLeadByteClasses[isKnown ? leadByteClass : 0];
}

}  // namespace dnz
