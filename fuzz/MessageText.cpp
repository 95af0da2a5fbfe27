// Message texts with markers, sections and folding, as a catalogue of somebody else may contain
// them. The target takes the place of the catalogue.
#include <nl_types.h>

#include "Fuzz.h"
#include "messages/MessageRetrieval.h"
#include "services/base/ReturnCodes.h"

using namespace dnz;

static std::string catalogueText;

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
void run(Input input) {
    const auto number = static_cast<std::int32_t>(input.number(4));
    const auto control = static_cast<std::int32_t>(input.number(1) % 16);
    const auto buffer = [&] { return std::string(input.number(2) % 3000, 'x'); };
    std::string sections[] = {buffer(), buffer(), buffer()};
    const auto text = [&] { return input.textTo({"", 1}); };
    const std::string texts[] = {text(), text(), text()};
    catalogueText = text();
    const xcsINSERTS inserts{.number1 = number,
                             .text1 = texts[0].c_str(),
                             .text2 = texts[1].c_str(),
                             .text3 = texts[2].empty() ? nullptr : texts[2].c_str()};
    const auto size = [&](int i) { return static_cast<std::uint32_t>(sections[i].size()); };
    const std::int32_t code =
        xnzGetMessage(number, control, inserts, kInsertCcsid, sections[0].data(), size(0),
                      sections[1].data(), size(1), sections[2].data(), size(2));
    for (const std::string& section : sections) {
        require(section.empty() || code == xecE_E_INVALID_CONTROL ||
                    section.find('\0') != std::string::npos,
                "a buffer that is filled is terminated");
    }
}
