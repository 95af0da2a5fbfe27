// The conversion engines, in every mode, with tables of any size and contents.
#include <vector>

#include "ConversionEngines.h"
#include "Input.h"

namespace {

using Engine = decltype(TranSBCS);
constexpr Engine* kEngines[] = {TranSBCS, HostPCMM, PCHostMM};
constexpr int kModes = 4;
constexpr int kLeadByteClasses = 8;
constexpr std::size_t kSingleByteTable = 256;
constexpr std::size_t kPairTableUnit = 64;
constexpr std::size_t kReachable = 65536;  // what a double-byte table contains, zeros at its end

// Memory of its exact size, so that no byte behind it can be touched unnoticed.
using Bytes = std::vector<unsigned char>;

Bytes bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

// What an input holds, in its order.
struct Case {
    Input input;
    Engine* engine = kEngines[input.byte() % std::size(kEngines)];
    ConvMode mode = static_cast<ConvMode>(1 + input.byte() % kModes);
    std::int32_t leadByteClass = input.byte() % kLeadByteClasses;
    unsigned tables = input.byte();  // a bit for each that there is
    std::size_t pairTableSize = kPairTableUnit * input.byte();
    std::int32_t room = static_cast<std::int32_t>(input.number(2));
    Bytes singles = bytesOf(input.text((tables & 1U) != 0 ? kSingleByteTable : 0));
    Bytes pairs = bytesOf(input.text((tables & 2U) != 0 ? pairTableSize : 0));
    Bytes source = bytesOf(input.rest());
    Bytes pairTable = pairs;

    Case(const std::uint8_t* data, std::size_t size) : input(data, size) {
        pairTable.resize(kReachable);
    }
};

// A table that the input doesn't hold whole is none.
ConvContext contextOf(const Case& given) {
    return {0, given.pairs.empty() ? nullptr : given.pairTable.data(),
            given.singles.size() == kSingleByteTable ? given.singles.data() : nullptr,
            given.leadByteClass};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Case given(data, size);
    const ConvContext context = contextOf(given);
    const auto length = static_cast<std::int32_t>(given.source.size());
    Bytes target(static_cast<std::size_t>(given.room));
    const unsigned char* from = given.source.data();
    unsigned char* to = target.data();
    std::int32_t written = given.room;
    const std::int32_t code = given.engine(&from, &length, &to, &written, &context, given.mode);

    const std::ptrdiff_t taken = from - given.source.data();
    const std::ptrdiff_t put = to - target.data();
    require(taken >= 0 && taken <= length, "no byte behind the source is taken");
    require(put >= 0 && put <= given.room, "no byte behind the target is given");
    require(written == (code == 0 ? put : given.room), "the count is what was written");
    require(code != 0 || taken == length || put == given.room || given.engine == PCHostMM,
            "only a full target ends a text early");
    require(given.engine != TranSBCS || (code == 0 && written == std::min(length, given.room)),
            "single bytes go one to one");
    return 0;
}
