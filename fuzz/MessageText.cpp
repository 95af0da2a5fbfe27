// Message texts with markers, sections and folding, as a catalogue of somebody else's may hold
// them. The target stands in for the catalogue.
#include <nl_types.h>

#include <string>

#include "Input.h"
#include "messages/MessageRetrieval.h"
#include "services/base/ReturnCodes.h"

using namespace dnz;

namespace {

constexpr std::uint32_t kSizeLimit = 3000;
std::string catalogueText;

struct Buffers {
    std::int32_t code;
    std::string sections[3];
};

Buffers retrieve(std::int32_t number, std::int32_t control, const xcsINSERTS& inserts,
                 const std::uint32_t (&sizes)[3]) {
    Buffers result{
        0, {std::string(sizes[0], 'x'), std::string(sizes[1], 'x'), std::string(sizes[2], 'x')}};
    auto& [first, second, third] = result.sections;
    result.code = xnzGetMessage(number, control, inserts, kInsertCcsid, first.data(), sizes[0],
                                second.data(), sizes[1], third.data(), sizes[2]);
    for (std::string& section : result.sections) {
        require(section.empty() || result.code == xecE_E_INVALID_CONTROL ||
                    section.find('\0') != std::string::npos,
                "a buffer that is filled is terminated");
        section.resize(std::min(section.find('\0'), section.size()));
    }
    return result;
}

}  // namespace

nl_catd catopen(const char* /*name*/, int /*flag*/) {
    return reinterpret_cast<nl_catd>(&catalogueText);
}

int catclose(nl_catd /*catalogue*/) {
    return 0;
}

char* catgets(nl_catd /*catalogue*/, int /*set*/, int /*number*/, const char* text) {
    return catalogueText.empty() ? const_cast<char*>(text) : catalogueText.data();
}

// The message number, a byte for the control word, two each for the sizes of the buffers, the three
// texts to insert, each ended by a zero byte, and the catalogue's text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const auto number = static_cast<std::int32_t>(input.number(4));
    const std::int32_t control = input.byte() % 16;
    const auto nextSize = [&input] { return input.number(2) % kSizeLimit; };
    const auto nextText = [&input] { return std::string(input.textTo({"", 1})); };
    const std::uint32_t sizes[] = {nextSize(), nextSize(), nextSize()};
    const std::string texts[] = {nextText(), nextText(), nextText()};
    catalogueText = nextText();
    xcsINSERTS inserts;
    inserts.number1 = number;
    inserts.text1 = texts[0].c_str();
    inserts.text2 = texts[1].c_str();
    inserts.text3 = texts[2].empty() ? nullptr : texts[2].c_str();

    const Buffers folded = retrieve(number, control | kFoldMessage, inserts, sizes);
    const Buffers plain = retrieve(number, control & ~kFoldMessage, inserts, sizes);
    require(folded.code == plain.code, "folding has no say in the result");
    require(folded.sections[1] == plain.sections[1] && folded.sections[2] == plain.sections[2],
            "only the first section is folded");
    const std::string& before = plain.sections[0];
    const std::string& after = folded.sections[0];
    require(before.size() == after.size(), "folding keeps the length");
    for (std::size_t i = 0; i < after.size(); ++i) {
        require(after[i] == before[i] || (before[i] == ' ' && after[i] == '\n'),
                "folding breaks at blanks alone");
    }
    return 0;
}
