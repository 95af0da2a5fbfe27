// The common services in a program of one's own: converts a text between two CCSIDs, dumps the
// result to the trace, and shows a message of the catalogue.
#include <dnz/MessageText.h>
#include <dnz/ServiceCalls.h>
#include <dnz/StartStop.h>
#include <dnz/TextConversion.h>
#include <dnz/TraceRecords.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>

int main() {
    // The name decides which variables are read, DNZ_TRACE and DNZ_PATH, and which catalogue.
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
        char reason[kReturnCodeTextSize];
        xnz_xtrFormatRC(reason, code);
        std::fprintf(stderr, "The text can't be converted: %s\n", reason);
    }

    constexpr std::int32_t kNameHoldsBlank = 0x40001013;
    std::puts(MessageText(kNameHoldsBlank, "two words").text());

    xnzTermCommonServices();
    return code == kServiceOk ? 0 : 1;
}
