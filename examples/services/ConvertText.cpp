// An example of a program that uses the common services: it converts a text between two CCSIDs,
// dumps the result to the trace, and shows a message of the catalogue.
#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "services/inner/TraceRecords.h"
#include "services/outer/MessageText.h"
#include "services/outer/ServiceCalls.h"
#include "services/outer/StartStop.h"
#include "xlat/TextConversion.h"

using dnz::kServiceOk;

int main() {
    // The name selects the variables, DNZ_TRACE and DNZ_PATH, and the catalogue.
    dnz_InitCommonServices("DNZ");

    const char text[] = {'G', 'r', '\x81', '\xE1', 'e'};  // in CCSID 850, a German greeting
    char converted[sizeof text];
    std::int32_t length = sizeof converted;
    const std::int32_t code = xcsConvertString(850, 819, text, sizeof text, converted, &length);
    if (code == kServiceOk) {
        xnztr_data(converted, static_cast<std::uint16_t>(length));
        std::fwrite(converted, 1, static_cast<std::size_t>(length), stdout);
        std::puts("");
    } else {
        char reason[dnz::kReturnCodeTextSize];
        xnz_xtrFormatRC(reason, code);
        std::fprintf(stderr, "The text can't be converted: %s\n", reason);
    }

    constexpr std::int32_t kNameWithSpace = 0x40001013;
    std::puts(dnz::MessageText(kNameWithSpace, "two words").text());

    xnzTermCommonServices();
    return code == kServiceOk ? 0 : 1;
}
