#include "ConversionEngines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "ConversionTest.h"

namespace {

using Bytes = std::vector<unsigned char>;
using Engine = decltype(&TranSBCS);

constexpr unsigned char kUntouched = 0xEE;

struct Result {
    std::int32_t code;
    Bytes written;
};

// Runs an engine on copies of exactly the size of the texts, so that the sanitizer sees a step
// over their ends. Checks what the pointers and the length say of the result.
Result convert(Engine engine, const Bytes& source, std::size_t room, const ConvContext& context,
               ConvMode mode) {
    const Bytes from(source);
    Bytes target(room, kUntouched);
    const unsigned char* sourcePlace = from.data();
    unsigned char* targetPlace = target.data();
    const auto sourceLength = static_cast<std::int32_t>(from.size());
    auto targetLength = static_cast<std::int32_t>(room);
    const std::int32_t code =
        engine(&sourcePlace, &sourceLength, &targetPlace, &targetLength, &context, mode);
    const std::ptrdiff_t written = targetPlace - target.data();
    EXPECT_EQ(targetLength, code == 0 ? written : static_cast<std::ptrdiff_t>(room));
    EXPECT_LE(sourcePlace, from.data() + from.size());
    EXPECT_TRUE(std::all_of(targetPlace, target.data() + room,
                            [](unsigned char byte) { return byte == kUntouched; }));
    return {code, {target.data(), targetPlace}};
}

// Tables whose entries can be told by eye: a single byte changes its top bit, and a pair f c
// becomes D1 c for an even f and D2 c for an odd one.
struct Tables {
    Bytes single = Bytes(256);
    Bytes pairs = Bytes(std::size_t{3} * 512);
    Tables() {
        for (std::size_t byte = 0; byte < 256; ++byte) {
            single[byte] = static_cast<unsigned char>(byte ^ 0x80);
            pairs[byte] = static_cast<unsigned char>(1 + byte % 2);
            for (std::size_t row = 1; row <= 2; ++row) {
                pairs[512 * row + 2 * byte] = static_cast<unsigned char>(0xD0 + row);
                pairs[512 * row + 2 * byte + 1] = static_cast<unsigned char>(byte);
            }
        }
    }
    [[nodiscard]] ConvContext context(std::int32_t leadByteClass = 1) const {
        return {0, pairs.data(), single.data(), leadByteClass};
    }
};

Bytes hex(const char* text) {
    const std::string raw = bytes(text);
    return {raw.begin(), raw.end()};
}

TEST(ConversionEngines, TextsByHand) {
    const Tables tables;
    const struct {
        Engine engine;
        ConvMode mode;
        const char* source;
        std::size_t room;
        std::int32_t code;
        const char* written;
    } kCases[] = {
        {TranSBCS, ConvHostToPC, "15 25 41 0E 0F", 9, 0, "A5 A5 C1 8E 8F"},
        {TranSBCS, ConvHostToHost, "15 25", 2, 0, "95 A5"},
        {TranSBCS, ConvPCToHost, "15 41 42", 2, 0, "95 C1"},
        {HostPCMM, ConvHostToPC, "41 0E 81 42 82 43 0F 15", 8, 0, "C1 D2 42 D1 43 A5"},
        {HostPCMM, ConvHostToHost, "41 0E 81 42 82 43 0F 15", 8, 0, "C1 0E D2 42 D1 43 0F 95"},
        {HostPCMM, ConvHostToPC, "0E 0F", 2, 0, "8E 8F"},
        {HostPCMM, ConvHostToHost, "0E 0F", 2, 0, "8E 8F"},
        {HostPCMM, ConvHostToPC, "0E 0F", 1, 0, "8E"},
        {HostPCMM, ConvHostToPC, "0E 41 0F", 3, 0, "8F"},
        {HostPCMM, ConvHostToHost, "0E 41 0F", 3, 0, "0E 0F 8F"},
        {HostPCMM, ConvHostToPC, "0F 41", 2, 0, "8F C1"},
        {HostPCMM, ConvHostToPC, "41 0E", 2, xxxRC_HOST_SOURCE_SHORT, "C1"},
        {HostPCMM, ConvHostToHost, "0E 81", 2, xxxRC_HOST_SOURCE_SHORT, "0E"},
        {HostPCMM, ConvHostToPC, "0E 81 42", 3, xxxRC_HOST_SOURCE_SHORT, "D2 42"},
        {HostPCMM, ConvHostToPC, "0E 81 42 83", 4, xxxRC_HOST_SOURCE_SHORT, "D2 42"},
        {HostPCMM, ConvHostToHost, "0E 81 42 0F", 2, xxxRC_HOST_TARGET_SHORT, "0E"},
        {HostPCMM, ConvHostToHost, "0E 81 42 0F 41", 3, 0, "0E D2 42"},
        {HostPCMM, ConvHostToHost, "0E 81 42 0F 41", 4, 0, "0E D2 42 0F"},
        {PCHostMM, ConvPCToHost, "41 81 42 43", 6, 0, "C1 0E D2 42 0F C3"},
        {PCHostMM, ConvPCToPC, "41 81 42 43", 4, 0, "C1 D2 42 C3"},
        {PCHostMM, ConvPCToHost, "41 81 42", 5, 0, "C1 0E D2 42 0F"},
        {PCHostMM, ConvPCToHost, "81 41 E0 42 41", 7, 0, "0E D2 41 D1 42 0F C1"},
        {PCHostMM, ConvPCToHost, "81 0E 82 00", 6, 0, "0E D2 0E D1 00 0F"},
        {PCHostMM, ConvPCToHost, "15", 1, 0, "95"},
        {PCHostMM, ConvPCToHost, "41 81", 9, xxxRC_PC_SOURCE_SHORT, "C1"},
        {PCHostMM, ConvPCToHost, "81 41", 3, xxxRC_PC_TARGET_SHORT, ""},
        {PCHostMM, ConvPCToHost, "81 41", 4, 0, "0E D2 41 0F"},
        {PCHostMM, ConvPCToPC, "81 41", 2, xxxRC_PC_TARGET_SHORT, ""},
        {PCHostMM, ConvPCToPC, "81 41", 3, 0, "D2 41"},
        {PCHostMM, ConvPCToPC, "81 42 83 44", 4, 0, "D2 42 03 C4"},
        {PCHostMM, ConvPCToPC, "81 42 E1 44", 4, xxxRC_PC_TARGET_SHORT, "D2 42"},
        {PCHostMM, ConvPCToPC, "81 42 82", 9, 0, "D2 42 02"},
        {PCHostMM, ConvPCToPC, "81 42 E1", 9, xxxRC_PC_SOURCE_SHORT, "D2 42"},
    };
    for (const auto& row : kCases) {
        SCOPED_TRACE(std::string(row.source) + " by mode " + std::to_string(row.mode));
        const Result result =
            convert(row.engine, hex(row.source), row.room, tables.context(), row.mode);
        EXPECT_EQ(result.code, row.code);
        EXPECT_EQ(result.written, hex(row.written));
    }
}

TEST(ConversionEngines, RowsFrom128GiveZeroBytes) {
    // First bytes and their rows: 00 to row 0, 7F to the last row, 80 and FF to none.
    Bytes table(std::size_t{128} * 512, 0x77);
    for (const unsigned char row : hex("00 7F 80 FF")) {
        table[row] = row;
    }
    const ConvContext context{0, table.data(), nullptr, 1};
    EXPECT_EQ(
        convert(HostPCMM, hex("0E 00 20 7F FF 80 41 FF 42 0F"), 10, context, ConvHostToPC).written,
        hex("77 77 77 77 00 00 00 00"));
}

TEST(ConversionEngines, AStepAdvancesPointersAndPositions) {
    const Tables tables;
    const ConvContext context = tables.context();
    const Bytes source = hex("15 83 44");
    Bytes target(3);
    const unsigned char* from = source.data();
    unsigned char* to = target.data();
    std::int32_t fromPlace = 10;
    std::int32_t toPlace = 20;
    XltSBCS(&from, &to, &fromPlace, &toPlace, &context, ConvHostToPC);
    XltDBCS(&from, &to, &fromPlace, &toPlace, &context);
    EXPECT_EQ(target, hex("A5 D2 44"));
    EXPECT_EQ(from - source.data(), 3);
    EXPECT_EQ(to - target.data(), 3);
    EXPECT_EQ(fromPlace, 13);
    EXPECT_EQ(toPlace, 23);
}

TEST(ConversionEngines, LeadBytesOfAllClasses) {
    using Ranges = std::vector<std::pair<unsigned, unsigned>>;
    const Ranges usual{{0x81, 0x9E}, {0xE0, 0xFE}};
    const struct {
        std::int32_t leadByteClass;
        Ranges ranges;
    } kCases[] = {
        {-1, usual},         {0, usual},       {1, usual},          {2, {{0x8F, 0xFE}}},
        {3, {{0x81, 0xFC}}}, {4, usual},       {5, {{0x81, 0xFE}}}, {6, {{0x8C, 0xFE}}},
        {7, usual},          {1000000, usual},
    };
    for (const auto& row : kCases) {
        const ConvContext context{0, nullptr, nullptr, row.leadByteClass};
        for (unsigned value = 0; value < 256; ++value) {
            SCOPED_TRACE(testing::Message() << "class " << row.leadByteClass << " byte " << value);
            const auto byte = static_cast<unsigned char>(value);
            const bool isLead =
                std::any_of(row.ranges.begin(), row.ranges.end(), [value](const auto& range) {
                    return value >= range.first && value <= range.second;
                });
            EXPECT_EQ(convert(PCHostMM, {byte, 0x41}, 4, context, ConvPCToHost).written,
                      isLead ? Bytes({0x0E, byte, 0x41, 0x0F}) : Bytes({byte, 0x41}));
        }
    }
}

}  // namespace
