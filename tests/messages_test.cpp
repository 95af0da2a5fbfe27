#include <nl_types.h>

#include <map>

#include "messages/MessageInserts.h"
#include "messages/MessageRetrieval.h"
#include "services/base/ReturnCodes.h"
#include "support/Services.h"

using namespace dnz;

namespace {

const std::string kWord(79, 'a');
const std::string kLong(93, 'b');
std::map<int, std::string> catalogue = {
    {1000, "Plain text"},
    {1001, "%1 %2 %6 %7 %8 <%3><%4><%5> %%3 %%%5 %9 %0 %x %\n 100%"},
    {1002, "one\024two\024three"},
    {1003, "one\024"},
    {1080, kWord + " b c " + kWord + " d"},
    {1081, kLong + " b " + kLong},
    {1082, kLong},
    {1083, kWord.substr(39) + " " + kWord.substr(40)},
    {1084, kWord.substr(39) + " " + kWord.substr(39)},
    {6090, "No text for %6."},
    {16665, "Groups above nine"}};
std::string tried;                             // the names of the catalogues that were asked for
std::string thereIs = "/opt/nzm/bin/dnz.cat";  // the one that opens

xcsINSERTS someInserts() {
    return {.number1 = -1, .number2 = INT32_MIN, .text1 = "50% %4", .text3 = "third"};
}

// Number in hexadecimal, control word, sizes of the buffers => code and sections of the message; a
// "~" is a buffer that stayed as it was.
std::string messageOf(std::istream& in) {
    const auto number = static_cast<std::int32_t>(next<std::uint32_t>(in >> std::hex));
    const auto control = next<std::int32_t>(in >> std::dec);
    std::uint32_t sizes[3] = {};
    static_cast<void>(in >> sizes[0] >> sizes[1] >> sizes[2]);
    char buffers[3][201];
    std::memset(buffers, '~', sizeof buffers);
    std::ostringstream result;
    result << std::hex
           << xnzGetMessage(number, control, someInserts(), kInsertCcsid, buffers[0], sizes[0],
                            buffers[1], sizes[1], buffers[2], sizes[2]);
    for (int i = 0; i < 3; ++i) {
        const std::string all(buffers[i], sizeof buffers[i]);
        const std::size_t size = all.find('~');
        EXPECT_TRUE(size == 0 || (size == sizes[i] && all[size - 1] == '\0')) << "not cleared";
        result << (size == 0 && sizes[i] > 0 ? " ~" : " ") << all.substr(0, size).c_str();
    }
    return result.str();
}

}  // namespace

// A catalogue in the place of those of the system.
nl_catd catopen(const char* name, int /*flag*/) {
    tried.append(name).append(" ");
    return reinterpret_cast<nl_catd>(thereIs == name ? 1L : -1L);
}
int catclose(nl_catd /*catalogue*/) {
    tried.append("closed");
    return 0;
}
char* catgets(nl_catd /*catalogue*/, int set, int number, const char* otherwise) {
    const auto text = catalogue.find(number);
    return set == 1 && text != catalogue.end() ? text->second.data() : const_cast<char*>(otherwise);
}

TEST_F(Services, RetrieveMessages) {
    check(R"(40001000 3 200 => 0 Plain text | 1000 3 11 => 0 Plain text | 1000 3 1 => 10806133
        1000 3 10 => 10806133 Plain tex | 7000FFFF 3 200 => 0 Groups above nine | 1000 2 5 => 10806133 NZL1
        1001 3 200 => 0 -1 -2147483648 4097 FFFFFFFF 80000000 <50% %4><><third> %%3 %%third %9 %0 %x %/ 100%
        4000FFFF 2 11 => 10806133 NZL????: G | 1000 2 10 => 10806133 NZL1000:
        1000 10 200 => 0 NZL1000: Plain text | 40009999 3 200 => 10806132 No text for 1073781145.
        40009999 2 30 => 10806133 NZL6090: No text for 10737811 | 80001000 3 11 => 0 Plain text
        20806129 3 200 => 10806132 No text for 545284393. | 1002 3 200 200 200 => 0 one two three
        1002 3 0 4 => 0  two | 1002 3 4 3 200 => 10806133 one tw three | 1003 3 200 200 => 0 one
        1000 0 200 => 20806128 ~ | 1000 1 200 => 20806128 ~ | 1000 12 200 => 20806128 ~
        1000 -1 200 => 20806128 ~ | 1000 3 0 => 20806127)",
          messageOf);
    // Folded after 80 columns, which don't count the prefix, but not within a word.
    check("1080 3 200 => 0 " + kWord + " b c " + kWord + " d | 1080 11 200 => 0 " + kWord +
              "/b c/" + kWord + "/d | 1081 11 200 => 0 " + kLong + "/b/" + kLong +
              " | 1082 11 200 => 0 " + kLong + " | 1083 11 200 => 0 " + kWord.substr(39) + " " +
              kWord.substr(40) + " | 1084 11 200 => 0 " + kWord.substr(39) + "/" +
              kWord.substr(39) + " | 1083 10 200 => 0 NZL1083: " + kWord.substr(39) + " " +
              kWord.substr(40),
          messageOf);
    EXPECT_EQ(xnzGetMessage(0x1000, kPlainMessage, {}, 0, nullptr, 0, nullptr, 1, nullptr, 0),
              xecE_E_INVALID_BUFFLEN);
    catalogue.clear();
    check("1000 3 99 => 10806132 Velmora was unable to display an error message.", messageOf);
}

TEST_F(Services, TryCataloguesInOrder) {
    check(R"(C none => own DNZ system dnz own | POSIX none => own DNZ system dnz own
             de none => system DNZ system dnz own | - none => system DNZ system dnz own
             C DNZ => own DNZ closed | C dnz => own DNZ system dnz closed | C own => own closed)",
          [](std::istream& in) {
              const std::string language = next(in);
              setVariable("LANG", language == "-" ? nullptr : language.c_str());
              thereIs = std::regex_replace(next(in), std::regex("own"), "/opt/nzm/bin/dnz.cat");
              tried.clear();
              std::istringstream any("1000 2 60");
              EXPECT_EQ(messageOf(any).find("unable to open") != std::string::npos,
                        thereIs == "none");
              tried = std::regex_replace(tried, std::regex("/opt/nzm/bin/dnz.cat"), "own");
              const std::regex system("/usr/lib/locale/C/LC_MESSAGES/dnz.cat");
              return std::regex_replace(tried, system, "system");
          });
    thereIs.clear();
    check(R"(1000 2 60 => 20806130 Velmora was unable to open a message catalog.
             1000 3 5 => 20806130 Velm)",
          messageOf);
}

TEST_F(Services, HandOutInserts) {
    check(R"(20 %1 %5 => -1 third | 20 %3%4. => 50% %4. | 20 a%6b => aBad insert!/b | 20 a% => a%
             20 %%1 => Bad insert!/1 | 05 abc => abc | 04 abc => cut: abc | 03 abc => cut: ab
             08 %5%5 => cut: thirdth | 01 abc => cut: | 00 abc => cut: ????????????????????)",
          [](std::istringstream& in) {
              const auto size = next<std::uint32_t>(in);
              char buffer[21] = "????????????????????";
              const auto code = AddInserts(&in.str()[3], buffer, size, someInserts(), 77);
              EXPECT_EQ(buffer[size], size < 20 ? '?' : '\0');
              return (code == 77 ? "" : "cut: ") + std::string(buffer);
          });
    char** values = nullptr;
    std::int32_t count = 0;
    const std::string records = traced([&] {
        EXPECT_EQ(xcsConvertInserts(-1, {.text2 = "b"}, kInsertCcsid, &values, &count), 0);
    });
    EXPECT_EQ(callsOf(records), "xcsConvertInserts ");
    EXPECT_EQ(std::vector<std::string>(values, values + count),
              std::vector<std::string>({"0", "0", "", "b", "", "-1", "0", "0"}));
    std::free(values);
}
