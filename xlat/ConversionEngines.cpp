// How each engine walks through a text. All convert in runs: a loop over bytes or pairs of one
// kind, and between two runs a step that changes the kind.
//   TranSBCS  one run of single bytes, as long as the shorter of the two texts
//   HostPCMM  single bytes up to a shift-out, then pairs up to a shift-in, and so on; the mode says
//             whether the shift bytes stay. An empty section is two single bytes.
//   PCHostMM  single bytes up to a lead byte, then pairs as long as lead bytes follow, and so on;
//             the mode says whether shift bytes are put around them. The byte after a section is
//             a single byte, whatever it is.
#include "xlat/ConversionEngines.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <numeric>

#include "services/base/ReturnCodes.h"
#include "services/inner/TraceRecords.h"
#include "xlat/ConverterCache.h"
#include "xlat/LeadBytes.h"
#include "xlat/TextConversion.h"

using namespace dnz;

namespace {

constexpr unsigned char kShiftOut = 0x0E;
constexpr unsigned char kShiftIn = 0x0F;
constexpr unsigned char kHostNewLine = 0x15;
constexpr unsigned char kHostLineFeed = 0x25;

constexpr std::size_t kByteValues = 256;
constexpr std::ptrdiff_t kRowSize = 512;
constexpr unsigned char kMostRows = 128;  // row numbers are signed bytes
constexpr std::ptrdiff_t kPairSize = 2;

using ByteTable = std::array<unsigned char, kByteValues>;

unsigned char translateByte(unsigned char byte, const unsigned char* table, ConvMode mode) {
    if (table == nullptr) {
        return byte;
    }
    // The host ends lines with a byte of its own, which leaves it as a line feed.
    return mode == ConvHostToPC && byte == kHostNewLine ? table[kHostLineFeed] : table[byte];
}

// The result of translateByte for all bytes, computed once so that a loop needs no test.
class SingleByteTable {
public:
    SingleByteTable(const unsigned char* table, ConvMode mode) {
        if (table == nullptr) {
            entries_ = kUnchanged.data();
        } else if (mode == ConvHostToPC) {
            std::copy_n(table, kByteValues, changed_.begin());
            changed_[kHostNewLine] = translateByte(kHostNewLine, table, mode);
            entries_ = changed_.data();
        } else {
            entries_ = table;
        }
    }
    SingleByteTable(const SingleByteTable&) = delete;
    SingleByteTable& operator=(const SingleByteTable&) = delete;

    [[nodiscard]] const unsigned char* entries() const { return entries_; }

private:
    static constexpr ByteTable kUnchanged = [] {
        ByteTable table{};
        std::iota(table.begin(), table.end(), static_cast<unsigned char>(0));
        return table;
    }();

    const unsigned char* entries_;
    ByteTable changed_;
};

class DoubleByteTable {
public:
    explicit DoubleByteTable(const unsigned char* table) : table_(table) {}

    // Translates one pair.
    void translate(const unsigned char* source, unsigned char* target) const {
        unsigned char first = source[0];
        unsigned char second = source[1];
        if (table_ != nullptr) {
            const unsigned char row = table_[first];
            const unsigned char* pair =
                row < kMostRows ? table_ + kRowSize * row + kPairSize * second : kNoPair;
            first = pair[0];
            second = pair[1];
        }
        target[0] = first;
        target[1] = second;
    }

private:
    static constexpr unsigned char kNoPair[kPairSize] = {};

    const unsigned char* table_;
};

// A text on its way through a loop: the two positions, and what a step needs.
class Walk {
public:
    Walk(const unsigned char* source, std::int32_t sourceLength, unsigned char* target,
         std::int32_t targetLength, const ConvContext& context, const SingleByteTable& table)
        : source_(source),
          sourceEnd_(source + std::max(sourceLength, 0)),
          target_(target),
          targetEnd_(target + std::max(targetLength, 0)),
          singleBytes_(table.entries()),
          pairs_(context.dbcsTable) {}

    [[nodiscard]] std::ptrdiff_t sourceLeft() const { return sourceEnd_ - source_; }
    [[nodiscard]] std::ptrdiff_t targetLeft() const { return targetEnd_ - target_; }
    [[nodiscard]] bool goesOn() const { return source_ < sourceEnd_ && target_ < targetEnd_; }

    // The byte at `offset` from here; the source must reach that far.
    [[nodiscard]] unsigned char byteAt(std::ptrdiff_t offset) const { return source_[offset]; }

    void convertByte() { *target_++ = singleBytes_[*source_++]; }
    // Converts single bytes up to one that stops the run; false at the end of either text.
    template <typename Stops>
    bool convertBytesUntil(const Stops& stops) {
        const unsigned char* end = source_ + std::min(sourceLeft(), targetLeft());
        while (source_ != end && !stops(*source_)) {
            convertByte();
        }
        return source_ != end;
    }
    void convertPair() {
        pairs_.translate(source_, target_);
        source_ += kPairSize;
        target_ += kPairSize;
    }
    // Converts pairs up to one that stops the run, or to the end of either text, of which the
    // target's comes `reserve` bytes earlier; false there.
    template <typename Stops>
    bool convertPairsUntil(std::ptrdiff_t reserve, const Stops& stops) {
        const std::ptrdiff_t room = std::min(sourceLeft(), targetLeft() - reserve);
        const unsigned char* end = source_ + room / kPairSize * kPairSize;
        while (source_ != end && !stops(source_[0], source_[1])) {
            convertPair();
        }
        return source_ != end;
    }
    void skip() { ++source_; }
    void put(unsigned char byte) { *target_++ = byte; }

    [[nodiscard]] const unsigned char* source() const { return source_; }
    [[nodiscard]] unsigned char* target() const { return target_; }

private:
    const unsigned char* source_;
    const unsigned char* sourceEnd_;
    unsigned char* target_;
    unsigned char* targetEnd_;
    const unsigned char* singleBytes_;
    DoubleByteTable pairs_;
};

// Walks through the text with `loop`, and returns to the caller how far it came.
template <typename Loop>
std::int32_t run(const unsigned char** source, std::int32_t sourceLength, unsigned char** target,
                 std::int32_t* targetLength, const ConvContext& context, ConvMode mode,
                 const Loop& loop) {
    const SingleByteTable table(context.sbcsTable, mode);
    Walk walk(*source, sourceLength, *target, *targetLength, context, table);
    const std::int32_t code = loop(walk);
    if (code == kServiceOk) {
        *targetLength = static_cast<std::int32_t>(walk.target() - *target);
    }
    *source = walk.source();
    *target = walk.target();
    return code;
}

// A shift-in in either place ends a section, also where it is the second byte of a pair.
bool isAtSectionEnd(const Walk& walk) {
    return (walk.sourceLeft() > 1 && walk.byteAt(1) == kShiftIn) ||
           (walk.sourceLeft() > 0 && walk.byteAt(0) == kShiftIn);
}

// Converts a section from its shift-out to the byte where it ends. `Keeps`: the shift bytes stay.
template <bool Keeps>
std::int32_t convertHostSection(Walk& walk) {
    if constexpr (Keeps) {
        walk.put(kShiftOut);
    }
    walk.skip();
    const bool isStopped = walk.convertPairsUntil(0, [](unsigned char first, unsigned char second) {
        return first == kShiftIn || second == kShiftIn;
    });
    if (!isStopped && !isAtSectionEnd(walk)) {
        return walk.sourceLeft() < kPairSize ? xxxRC_HOST_SOURCE_SHORT : xxxRC_HOST_TARGET_SHORT;
    }
    if (Keeps && walk.targetLeft() > 0) {
        walk.put(kShiftIn);
    }
    // This is the shift-in, or an odd byte before it, which is dropped: the shift-in is then
    // read as an ordinary byte.
    walk.skip();
    return kServiceOk;
}

// Two shift bytes with nothing between them are two single bytes.
void convertEmptySection(Walk& walk) {
    walk.convertByte();
    if (walk.targetLeft() > 0) {
        walk.convertByte();
    }
}

template <bool Keeps>
std::int32_t convertHostText(Walk& walk) {
    while (walk.convertBytesUntil([](unsigned char byte) { return byte == kShiftOut; })) {
        if (walk.sourceLeft() > 1 && walk.byteAt(1) == kShiftIn) {
            convertEmptySection(walk);
        } else {
            const std::int32_t code = convertHostSection<Keeps>(walk);
            if (code != kServiceOk) {
                return code;
            }
        }
    }
    return kServiceOk;
}

// Converts neighbouring double-byte characters as one section. `Adds`: shift bytes are put
// around it; space for one of them is demanded in either case.
template <bool Adds>
std::int32_t convertPcSection(Walk& walk, const LeadBytes& leadBytes) {
    constexpr std::ptrdiff_t kRoomToClose = 1;
    constexpr std::ptrdiff_t kRoomToOpen = kPairSize + kRoomToClose + (Adds ? 1 : 0);
    if (walk.sourceLeft() < kPairSize) {
        return xxxRC_PC_SOURCE_SHORT;
    }
    if (walk.targetLeft() < kRoomToOpen) {
        return xxxRC_PC_TARGET_SHORT;
    }
    if constexpr (Adds) {
        walk.put(kShiftOut);
    }
    walk.convertPair();
    walk.convertPairsUntil(kRoomToClose, [&leadBytes](unsigned char first, unsigned char) {
        return leadBytes[first] == 0;
    });
    if constexpr (Adds) {
        walk.put(kShiftIn);
    }
    return kServiceOk;
}

// Converts the section that begins here. It ends before a byte that isn't a lead byte, or where the
// source has one byte left or the target no space for another pair. There a lead byte of a later
// range begins another section, which fails for lack of bytes or space; one of the same or an
// earlier range is left to the caller.
template <bool Adds>
std::int32_t convertPcSections(Walk& walk, const LeadBytes& leadBytes) {
    unsigned char lastRange = 0;
    while (walk.sourceLeft() > 0 && leadBytes[walk.byteAt(0)] > lastRange) {
        lastRange = leadBytes[walk.byteAt(0)];
        const std::int32_t code = convertPcSection<Adds>(walk, leadBytes);
        if (code != kServiceOk) {
            return code;
        }
    }
    return kServiceOk;
}

template <bool Adds>
std::int32_t convertPcText(Walk& walk, const LeadBytes& leadBytes) {
    const auto isLeadByte = [&leadBytes](unsigned char byte) { return leadBytes[byte] != 0; };
    while (walk.convertBytesUntil(isLeadByte)) {
        const std::int32_t code = convertPcSections<Adds>(walk, leadBytes);
        if (code != kServiceOk) {
            return code;
        }
        // The byte after a section is a single byte, whatever it is.
        if (walk.goesOn()) {
            walk.convertByte();
        }
    }
    return kServiceOk;
}

// Takes several bytes at a step, so that the speed depends neither on the place of the loop in
// memory nor on what the compiler makes of it: a loop of single bytes ran at half the speed now and
// then.
void translateBytes(const unsigned char* source, unsigned char* target, std::int32_t count,
                    const unsigned char* table) {
    constexpr std::int32_t kStep = 8;
    std::int32_t done = 0;
    for (; count - done >= kStep; done += kStep) {
        for (std::int32_t i = done; i < done + kStep; ++i) {
            target[i] = table[source[i]];
        }
    }
    for (; done < count; ++done) {
        target[done] = table[source[done]];
    }
}

bool isTable(std::int32_t part) {
    return part != kNoPart && part != kUnchangedPart;
}

ConvContext contextOf(std::int32_t singleBytePart, std::int32_t doubleBytePart,
                      std::int32_t sourceLeadByteClass) {
    ConvContext context{};
    context.handle = singleBytePart * kHandleBase + doubleBytePart;
    context.leadByteClass = sourceLeadByteClass;
    if (isTable(doubleBytePart)) {
        const ConvSlot& slot = iconv_list[doubleBytePart - 1];
        context.dbcsTable = slot.table;
        context.leadByteClass = slot.leadByteClass;
    }
    if (isTable(singleBytePart)) {
        context.sbcsTable = iconv_list[singleBytePart - 1].table;
    }
    return context;
}

using Engine = decltype(&TranSBCS);

Engine engineOf(std::int32_t doubleBytePart, ConvMode mode) {
    if (doubleBytePart == kNoPart) {
        return TranSBCS;
    }
    return mode == ConvHostToPC || mode == ConvHostToHost ? HostPCMM : PCHostMM;
}

}  // namespace

std::int32_t TranSBCS(const unsigned char** source, const std::int32_t* sourceLength,
                      unsigned char** target, std::int32_t* targetLength,
                      const ConvContext* context, ConvMode mode) {
    const SingleByteTable table(context->sbcsTable, mode);
    const std::int32_t count = std::max(std::min(*sourceLength, *targetLength), 0);
    translateBytes(*source, *target, count, table.entries());
    *source += count;
    *target += count;
    *targetLength = count;
    return kServiceOk;
}

std::int32_t HostPCMM(const unsigned char** source, const std::int32_t* sourceLength,
                      unsigned char** target, std::int32_t* targetLength,
                      const ConvContext* context, ConvMode mode) {
    const auto loop = [mode](Walk& walk) {
        return mode == ConvHostToHost ? convertHostText<true>(walk) : convertHostText<false>(walk);
    };
    return run(source, *sourceLength, target, targetLength, *context, mode, loop);
}

std::int32_t PCHostMM(const unsigned char** source, const std::int32_t* sourceLength,
                      unsigned char** target, std::int32_t* targetLength,
                      const ConvContext* context, ConvMode mode) {
    const LeadBytes& leadBytes = leadBytesOf(context->leadByteClass);
    const auto loop = [mode, &leadBytes](Walk& walk) {
        return mode == ConvPCToHost ? convertPcText<true>(walk, leadBytes)
                                    : convertPcText<false>(walk, leadBytes);
    };
    return run(source, *sourceLength, target, targetLength, *context, mode, loop);
}

void XltSBCS(const unsigned char** source, unsigned char** target, std::int32_t* sourcePosition,
             std::int32_t* targetPosition, const ConvContext* context, ConvMode mode) {
    **target = translateByte(**source, context->sbcsTable, mode);
    ++*source;
    ++*target;
    ++*sourcePosition;
    ++*targetPosition;
}

void XltDBCS(const unsigned char** source, unsigned char** target, std::int32_t* sourcePosition,
             std::int32_t* targetPosition, const ConvContext* context) {
    DoubleByteTable(context->dbcsTable).translate(*source, *target);
    *source += kPairSize;
    *target += kPairSize;
    *sourcePosition += kPairSize;
    *targetPosition += kPairSize;
}

std::int32_t xxxCodeConv(const unsigned char** source, const std::int32_t* sourceLength,
                         unsigned char** target, std::int32_t* targetLength, std::int32_t handle,
                         ConvMode mode, std::int32_t sourceLeadByteClass) {
    ServiceTraceScope trace("xxxCodeConv");
    const std::int32_t singleBytePart = handle / kHandleBase;
    const std::int32_t doubleBytePart = handle % kHandleBase;
    const ConvContext context = contextOf(singleBytePart, doubleBytePart, sourceLeadByteClass);
    const Engine engine = engineOf(doubleBytePart, mode);
    return trace.exitWith(engine(source, sourceLength, target, targetLength, &context, mode));
}
