// The conversion engines, in every mode, with tables of any size and contents.
#include <memory>

#include "ConversionEngines.h"
#include "Input.h"

namespace {

using Engine = decltype(TranSBCS);
constexpr Engine* kEngines[] = {TranSBCS, HostPCMM, PCHostMM};

// A copy of its exact size, so that no byte behind it can be read unnoticed.
std::unique_ptr<unsigned char[]> exactCopy(std::string_view bytes) {
    std::unique_ptr<unsigned char[]> copy(new unsigned char[bytes.size()]);
    std::copy(bytes.begin(), bytes.end(), copy.get());
    return copy;
}

}  // namespace

// One byte each for the engine, the mode, the lead bytes, the tables there are and the size of the
// double-byte table in units of 64; two for the size of the target; the tables; the text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    Engine* engine = kEngines[input.byte() % std::size(kEngines)];
    const auto mode = static_cast<ConvMode>(1 + input.byte() % 4);
    const std::int32_t leadByteClass = input.byte() % 8;
    const unsigned char tables = input.byte();
    const std::size_t pairTableSize = 64U * input.byte();
    const int room = 256 * input.byte() + input.byte();

    unsigned char singleBytes[256] = {};
    const std::string_view singles = input.text((tables & 1U) != 0 ? sizeof singleBytes : 0);
    std::copy(singles.begin(), singles.end(), singleBytes);
    const std::string_view pairs = input.text((tables & 2U) != 0 ? pairTableSize : 0);
    const auto pairTable = exactCopy(pairs);
    const bool hasPairs = pairs.size() >= 256;  // the row vector is always there
    const std::string_view text = input.rest();
    const auto source = exactCopy(text);

    const std::unique_ptr<unsigned char[]> target(
        new unsigned char[static_cast<std::size_t>(room)]);
    const ConvContext context{0, hasPairs ? pairTable.get() : nullptr,
                              (tables & 1U) != 0 ? singleBytes : nullptr, leadByteClass,
                              static_cast<std::int32_t>(pairs.size())};
    const unsigned char* from = source.get();
    unsigned char* to = target.get();
    const auto length = static_cast<std::int32_t>(text.size());
    std::int32_t written = room;
    const std::int32_t code = engine(&from, &length, &to, &written, &context, mode);
    const std::ptrdiff_t read = from - source.get();
    require(read >= 0 && read <= length, "no byte behind the source is taken");
    require(to >= target.get() && to <= target.get() + room, "no byte behind the target is given");
    require(written == (code == 0 ? to - target.get() : room), "the count is what was written");
    require(code != 0 || read == length || to == target.get() + room || engine == kEngines[2],
            "only a full target ends a text early");
    if (engine == kEngines[0]) {
        require(code == 0 && written == std::min(length, room), "single bytes go one to one");
    }
    return 0;
}
