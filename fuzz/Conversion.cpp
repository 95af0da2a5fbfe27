// The conversion engines, in every mode, with tables of any contents.
#include <vector>

#include "Fuzz.h"
#include "xlat/ConversionEngines.h"

using namespace dnz;

// Memory of its exact size, so that no byte after it can be touched unnoticed.
using Bytes = std::vector<unsigned char>;

static Bytes bytesOf(const std::string& text, std::size_t size) {
    Bytes bytes(text.begin(), text.end());
    bytes.resize(size);
    return bytes;
}

// A byte each for engine, mode, class of lead bytes, a bit for each table that is there and the
// size of the double-byte one in 64 bytes, two for the space, the tables and the text.
void run(Input input) {
    constexpr decltype(&TranSBCS) kEngines[] = {TranSBCS, HostPCMM, PCHostMM};
    const auto engine = kEngines[input.number(1) % 3];
    const auto mode = static_cast<ConvMode>(1 + input.number(1) % 4);
    const auto leadByteClass = static_cast<std::int32_t>(input.number(1) % 8);
    const std::uint32_t tables = input.number(1);
    const std::size_t pairsSize = 64 * input.number(1);
    const auto space = static_cast<std::int32_t>(input.number(2));
    const Bytes singles = bytesOf(input.text((tables & 1U) != 0 ? 256 : 0), 256);
    const Bytes pairs = bytesOf(input.text((tables & 2U) != 0 ? pairsSize : 0), 65536);
    const std::string text = input.rest();
    const Bytes source = bytesOf(text, text.size());
    Bytes target(static_cast<std::size_t>(space));
    const ConvContext context{0, (tables & 2U) != 0 ? pairs.data() : nullptr,
                              (tables & 1U) != 0 ? singles.data() : nullptr, leadByteClass};
    const auto length = static_cast<std::int32_t>(source.size());
    const unsigned char* from = source.data();
    unsigned char* to = target.data();
    std::int32_t written = space;
    const std::int32_t code = engine(&from, &length, &to, &written, &context, mode);

    const std::ptrdiff_t taken = from - source.data();
    const std::ptrdiff_t put = to - target.data();
    require(taken >= 0 && taken <= length, "no byte after the source is taken");
    require(put >= 0 && put <= space, "no byte after the target is given");
    require(written == (code == 0 ? put : space), "the count is what was written");
    require(code != 0 || taken == length || put == space || engine == PCHostMM,
            "only a full target ends a text early");
    require(engine != TranSBCS || (code == 0 && written == std::min(length, space)),
            "single bytes go one to one");
}
