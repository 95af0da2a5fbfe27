// Prints all that the services take from the locale. It is linked twice, as the program is shipped
// and with shared libraries.
#include <clocale>
#include <cstdio>
#include <ctime>

#include "services/inner/SystemInformation.h"
#include "services/outer/MessageText.h"
#include "services/outer/ServiceCalls.h"

int main() {
    dnz_InitCommonServices("DNZ");
    char codeset[dnz::kCodesetSize];
    xnzGetCodeset(codeset);
    std::printf("code page %d codeset %s\n", ObtainSystemCP(), codeset);
    char date[64];
    char time[64];
    const auto code = xnzQueryDateTime2(dnz::kUniversalTime, date, time, sizeof date, sizeof time);
    std::printf("date %s (%d)\n", date, code);
    std::tm day{};  // one that every locale writes in another way
    day.tm_year = 121;
    day.tm_mon = 2;
    day.tm_mday = 9;
    day.tm_wday = 2;
    char text[256];
    static_cast<void>(std::strftime(text, sizeof text, "%c|%x|%X|%p|%A %B", &day));
    std::printf("day %s\n%s\n", text, dnz::MessageText(0x40001013, "two words").text());
    std::printf("locale %s point %s grouping %s currency %s\n", std::setlocale(LC_ALL, nullptr),
                std::localeconv()->decimal_point, std::localeconv()->thousands_sep,
                std::localeconv()->currency_symbol);
    return 0;
}
