#include "ConversionEngines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "ConversionTest.h"

namespace {

using Bytes = std::vector<unsigned char>;
using Engine = decltype(&TranSBCS);

constexpr unsigned char kUntouched = 0xEE;

struct Result {
    std::int32_t code;
    Bytes written;
    bool operator==(const Result&) const = default;
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

// The engines a second time, as plain as can be: everything by positions, every access checked.
class Reference {
public:
    Reference(Bytes source, std::size_t room, const ConvContext& context, ConvMode mode)
        : source_(std::move(source)), room_(room), context_(context), mode_(mode) {}

    Result plain() {
        while (s_ < source_.size() && out_.size() < room_) {
            single();
        }
        return {0, out_};
    }

    Result host() {
        while (s_ < source_.size() && out_.size() < room_) {
            const bool opens = is(s_, 0x0E);
            if (opens && is(s_ + 1, 0x0F)) {
                single();
                single();
            } else if (!opens) {
                single();
            } else if (const std::int32_t code = hostSection()) {
                return {code, out_};
            }
        }
        return {0, out_};
    }

    Result pc() {
        while (s_ < source_.size() && out_.size() < room_) {
            for (const auto& [first, last] : ranges()) {
                if (s_ < source_.size() && source_[s_] >= first && source_[s_] <= last) {
                    if (const std::int32_t code = pcSection()) {
                        return {code, out_};
                    }
                }
            }
            if (s_ < source_.size()) {
                single();
            }
        }
        return {0, out_};
    }

private:
    [[nodiscard]] bool is(std::size_t place, unsigned char byte) const {
        return place < source_.size() && source_[place] == byte;
    }
    void put(unsigned char byte) {
        if (out_.size() < room_) {
            out_.push_back(byte);
        }
    }
    void single() {
        if (out_.size() >= room_) {
            return;
        }
        unsigned char byte = source_.at(s_++);
        if (context_.sbcsTable != nullptr) {
            byte = context_.sbcsTable[byte == 0x15 && mode_ == ConvHostToPC ? 0x25 : byte];
        }
        put(byte);
    }
    void pair() {
        const unsigned char first = source_.at(s_++);
        const unsigned char second = source_.at(s_++);
        if (context_.dbcsTable == nullptr) {
            put(first);
            put(second);
            return;
        }
        const int row = static_cast<signed char>(context_.dbcsTable[first]);
        const int place = 512 * row + 2 * second;
        const bool isThere = row >= 0 && place + 2 <= context_.dbcsTableSize;
        put(isThere ? context_.dbcsTable[place] : 0);
        put(isThere ? context_.dbcsTable[place + 1] : 0);
    }
    std::int32_t hostSection() {
        if (mode_ == ConvHostToHost) {
            put(0x0E);
        }
        for (++s_; !is(s_ + 1, 0x0F) && !is(s_, 0x0F); pair()) {
            if (s_ + 1 >= source_.size()) {
                return xxxRC_HOST_SOURCE_SHORT;
            }
            if (out_.size() + 1 >= room_) {
                return xxxRC_HOST_TARGET_SHORT;
            }
        }
        if (mode_ == ConvHostToHost) {
            put(0x0F);
        }
        ++s_;
        return 0;
    }
    std::int32_t pcSection() {
        const bool adds = mode_ == ConvPCToHost;
        if (s_ + 1 >= source_.size()) {
            return xxxRC_PC_SOURCE_SHORT;
        }
        if (out_.size() + (adds ? 4 : 3) > room_) {
            return xxxRC_PC_TARGET_SHORT;
        }
        if (adds) {
            put(0x0E);
        }
        pair();
        while (s_ + 2 <= source_.size() && out_.size() + 3 <= room_ && isLead(source_[s_])) {
            pair();
        }
        if (adds) {
            put(0x0F);
        }
        return 0;
    }
    [[nodiscard]] std::vector<std::pair<int, int>> ranges() const {
        switch (context_.leadByteClass) {
            case 2:
                return {{0x8F, 0xFE}};
            case 3:
                return {{0x81, 0xFC}};
            case 5:
                return {{0x81, 0xFE}};
            case 6:
                return {{0x8C, 0xFE}};
            default:
                return {{0x81, 0x9E}, {0xE0, 0xFE}};
        }
    }
    [[nodiscard]] bool isLead(unsigned char byte) const {
        for (const auto& [first, last] : ranges()) {
            if (byte >= first && byte <= last) {
                return true;
            }
        }
        return false;
    }

    Bytes source_;
    std::size_t room_;
    const ConvContext& context_;
    ConvMode mode_;
    std::size_t s_ = 0;
    Bytes out_;
};

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
        return {0, pairs.data(), single.data(), leadByteClass, static_cast<int>(pairs.size())};
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

TEST(ConversionEngines, PairsOutsideTheTableGiveZeroBytes) {
    // First bytes and their rows: 00 to row 0, 01 to row 1, 02 to row 2, 80 and FF to none.
    for (const std::size_t size : {513U, 1023U, 1024U, 1535U, 1536U}) {
        SCOPED_TRACE(size);
        Bytes table(size, 0x77);
        for (const unsigned char row : hex("00 01 02 80 FF")) {
            table[row] = row;
        }
        const ConvContext context{0, table.data(), nullptr, 1, static_cast<int>(size)};
        const std::string one = size >= 1024 ? " 77 77" : " 00 00";
        const std::string two = size >= 1536 ? " 77 77" : " 00 00";
        EXPECT_EQ(
            convert(HostPCMM, hex("0E 00 20 01 FF 02 FF 80 41 FF 42 0F"), 12, context, ConvHostToPC)
                .written,
            hex(("77 77" + one + two + " 00 00 00 00").c_str()));
        // The row may be cut, as long as the pair is there.
        EXPECT_EQ(convert(HostPCMM, hex("0E 01 00 0F"), 4, context, ConvHostToPC).written,
                  hex(size > 513 ? "77 77" : "00 00"));
    }
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
    for (const std::int32_t leadByteClass : {-1, 0, 1, 2, 3, 4, 5, 6, 7, 1000000}) {
        const ConvContext context{0, nullptr, nullptr, leadByteClass, 0};
        for (unsigned value = 0; value < 256; ++value) {
            SCOPED_TRACE(testing::Message() << "class " << leadByteClass << " byte " << value);
            const Bytes source{static_cast<unsigned char>(value), 0x41};
            EXPECT_EQ(convert(PCHostMM, source, 4, context, ConvPCToHost),
                      Reference(source, 4, context, ConvPCToHost).pc());
        }
    }
}

TEST(ConversionEngines, RandomTextsAndTablesAgreeWithTheReference) {
    std::mt19937 random(20261122);
    const auto below = [&random](std::size_t end) { return random() % end; };
    const auto fill = [&](Bytes& all) {
        for (unsigned char& byte : all) {
            byte = static_cast<unsigned char>(random());
        }
    };
    // Mostly bytes that mean something to an engine.
    const Bytes telling = hex("0E 0F 15 25 41 80 81 8B 8C 8E 8F 9E 9F DF E0 FC FD FE FF 0E 0F");
    for (int round = 0; round < 20000; ++round) {
        SCOPED_TRACE(round);
        Bytes single(256);
        Bytes pairs(513 + below(round % 100 == 0 ? 130000 : 3000));
        fill(single);
        fill(pairs);
        for (std::size_t byte = 0; byte < 256; ++byte) {
            pairs[byte] = static_cast<unsigned char>(below(below(4) != 0 ? 9 : 256));
        }
        Bytes source(below(24));
        for (unsigned char& byte : source) {
            byte = static_cast<unsigned char>(below(3) != 0 ? telling[below(telling.size())]
                                                            : random());
        }
        const std::size_t room = below(3) == 0 ? below(32) : source.size() + below(12);
        const ConvContext context{
            0, below(8) != 0 ? pairs.data() : nullptr, below(8) != 0 ? single.data() : nullptr,
            static_cast<std::int32_t>(below(9)), static_cast<std::int32_t>(pairs.size())};
        for (const ConvMode mode : {ConvHostToPC, ConvPCToHost, ConvPCToPC, ConvHostToHost}) {
            Reference reference(source, room, context, mode);
            const bool isHost = mode == ConvHostToPC || mode == ConvHostToHost;
            ASSERT_EQ(convert(isHost ? HostPCMM : PCHostMM, source, room, context, mode),
                      isHost ? reference.host() : reference.pc());
            ASSERT_EQ(convert(TranSBCS, source, room, context, mode),
                      Reference(source, room, context, mode).plain());
        }
    }
}

}  // namespace
