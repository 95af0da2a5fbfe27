#include "services/inner/SystemInformation.h"

#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string_view>

#include "services/base/ReturnCodes.h"
#include "services/base/Text.h"
#include "services/inner/Codesets.h"
#include "services/inner/TraceRecords.h"

using namespace dnz;

namespace {

constexpr std::int32_t kDefaultCodePage = 819;
constexpr char kDefaultCodeset[] = "88591";

struct CodesetPage {
    std::string_view codeset;
    std::int32_t page;
};

constexpr CodesetPage kCodesetPages[] = {
    {kDefaultCodeset, kDefaultCodePage},
    {"88592", 912},
    {"88595", 915},
    {"88596", 1089},
    {"88597", 813},
    {"88598", 916},
    {"88599", 920},
    {"roman8", 1051},
};

std::int32_t codePageOf(std::string_view codeset) {
    for (const CodesetPage& row : kCodesetPages) {
        if (row.codeset == codeset) {
            return row.page;
        }
    }
    return kDefaultCodePage;
}

// The locale in use; if that is only C, the one that LANG names.
const char* currentLocaleName() {
    static constexpr char kPlainLocale[] = "C";
    const char* name = std::setlocale(LC_ALL, nullptr);
    if (isNullOrEmpty(name) || std::strcmp(name, kPlainLocale) == 0) {
        name = std::getenv("LANG");
    }
    return isNullOrEmpty(name) ? kPlainLocale : name;
}

// Formats into `out`, whose last byte stays unused; false if the text doesn't fit.
bool formatTime(char* out, std::int16_t size, const char* format, const std::tm& time) {
    return size > 1 && std::strftime(out, static_cast<std::size_t>(size) - 1, format, &time) != 0;
}

}  // namespace

std::int32_t ObtainSystemCP() {
    const ServiceTraceScope trace("ObtainSystemCP");
    std::setlocale(LC_ALL, "");
    char codeset[kCodesetSize];
    xnztr_text("About to go off to xnzGetCodeset");
    xnzGetCodeset(codeset);
    xnztr_text(".... back with .....");
    xnztr_text(codeset);
    const std::int32_t page = codePageOf(codeset);
    xnztr_text(FixedText<32>().appendf("Code page is %d", page).c_str());
    return page;
}

void xnzGetCodeset(char* codeset) {
    const std::string_view name = currentLocaleName();
    const LocaleCodeset* row = xxxCodesetInfo;
    while (row->locale != nullptr && row->locale != name) {
        ++row;
    }
    const bool isKnown = row->locale != nullptr;
    BoundedText(codeset, kCodesetSize).append(isKnown ? row->codeset : kDefaultCodeset);
}

std::int32_t xnzQueryDateTime2(std::int16_t option, char* date, char* time, std::int16_t dateSize,
                               std::int16_t timeSize) {
    ServiceTraceScope trace("xnzQueryDateTime2");
    if (option != kLocalTime && option != kUniversalTime) {
        return trace.exitWith(xecU_E_INVALID_OPTION);
    }
    const std::time_t now = std::time(nullptr);
    const std::tm* parts = option == kLocalTime ? std::localtime(&now) : std::gmtime(&now);
    const bool formatted = parts != nullptr && formatTime(date, dateSize, "%x ", *parts) &&
                           formatTime(time, timeSize, "%H:%M:%S", *parts);
    return trace.exitWith(formatted ? kServiceOk : xecU_E_TIME_ERROR);
}

void xnzSleep(std::uint32_t milliseconds) {
    constexpr std::uint32_t kMillisecondsPerSecond = 1000;
    const bool hasRest = milliseconds % kMillisecondsPerSecond != 0;
    sleep(milliseconds / kMillisecondsPerSecond + (hasRest ? 1 : 0));
}
