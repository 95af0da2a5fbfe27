// What requests don't show: operations of the classes that only other programs call.
#include "config/CGIPart.h"
#include "config/ConfigurationSet.h"
#include "config/IniFilePart.h"
#include "config/NameValuePairSet.h"
#include "config/URLDecoder.h"
#include "frontend/CGIInterface.h"
#include "frontend/ContextName.h"
#include "frontend/HTMLPage.h"
#include "frontend/ThreadObjectSet.h"
#include "frontend/interface/WebInterface.h"
#include "support/Services.h"

using namespace dnz;

namespace {

using namespace std::string_literals;

// A copy is equal to its original, and has an array of its own.
template <typename Part>
void expectOwnEqualCopy(const Part& part, Part other) {
    const Part copy(part);
    EXPECT_TRUE(copy == part && !(copy != part) && other != part && !(other == part));
    other = part;
    EXPECT_TRUE(other == part && copy.get_oValue() != part.get_oValue());
    EXPECT_STREQ(other.getDesc(), part.getDesc());
}

TEST_F(Services, PartsAndSetsServeOtherPrograms) {
    expectOwnEqualCopy(NameValuePair("name", "value"), NameValuePair("name", "other"));
    expectOwnEqualCopy(CGIPart("name", 4, "%2541", 5), CGIPart("name", 4, "A", 1));
    expectOwnEqualCopy(IniFilePart("name", "value #text"), IniFilePart());
    NameValuePair pairs[] = {{"xx", "1"}, {"xx", 2, "2\0#3", 4}, {"a", nullptr}};
    NameValuePairSet set;
    EXPECT_EQ(set.push(&pairs[0]) + set.push(&pairs[1]) + set.push(&pairs[2]), 3U);
    EXPECT_EQ(set.pull(&pairs[0]) + set.pull(&pairs[0]), 1U);
    char* text = pairs[1].get_oName();
    unsigned long size = 1;
    pairs[2].getValue(&text, &size);
    EXPECT_TRUE(text == nullptr && size == 0);
    pairs[2].set_oValue(new char[2]{'v', '\0'});
    pairs[2].set_oValueLength(2);
    testing::internal::CaptureStdout();
    NameValuePairSet(set).dump();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "NameValuePairSet-------------Start\nNumberInSet<2>\nMaxNumberInSet<256>\n"
              "HalfLife<2>\noIndexOfPairs[0]\nName<a\0>\nValue<v\0>\noIndexOfPairs[1]\n"
              "Name<xx\0>\nValue<2\0#3\0>\nNameValuePairSet-------------End\n"s);
    CGIPartSet form;
    form.Initialize("full=abc&cut=a%00b&none=", 24);
    check(
        R"(full 6 => 1 4 abc~~? | full 4 => 1 3 abc~?? | full 3 => 0 2 ab~??? | none 6 => 1 0 ~?????
        full 1 => 0 0 ~????? | full 0 => 0 0 ?????? | cut 6 => 1 2 a~~??? | gone 6 => 0 0 ~?????)",
        [&](std::istream& in) {
            const std::string name = next(in);
            auto length = next<unsigned long>(in);
            std::string buffer(6, '?');
            const long code = form.getPartValue(name.c_str(), buffer.data(), &length);
            std::replace(buffer.begin(), buffer.end(), '\0', '~');
            return std::to_string(code) + " " + std::to_string(length) + " " + buffer;
        });
}

TEST_F(Services, TransportsServeOtherPrograms) {
    writeFile("other.ini", "b request\nNZIGwQueueManager QM2\n");
    writeFile("dnz.ini", "b default\nc default\nNZIGwQueueManager QM1\n");
    struct : Cache {
        void write(const char* text, long length) override { size += length, written += text; }
        std::string written;
        long size = 0;
    } cache;
    check(R"(a=form&b=x a => form | b=&NZIGwIniFile=other.ini b => request | b= b => default
        NZIGwIniFile=other.ini c => default | NZIGwQueueManager= NZIGwQueueManager => none
        NZIGwIniFile= c => default | NZIGwIniFile=other.ini NZIGwQueueManager => QM2 | x=y e => -)",
          [&](std::istream& in) {
              const std::string form = next(in);
              writeFile("body", form);
              EXPECT_NE(std::freopen("body", "r", stdin), nullptr);
              setVariable("CONTENT_LENGTH", std::to_string(form.size()).c_str());
              CGIInterface transport;
              EXPECT_EQ(transport.CacheContext(&cache, nullptr), 1);
              const ConfigurationPart* part =
                  transport.getConfigurationSet()->findPart(next(in).c_str());
              ThreadObjectSet::Instance()->remove();
              EXPECT_EQ(WebInterface::Instance(), nullptr);
              return part == nullptr ? "-" : part->getValue() ? part->getValue() : "none"s;
          });
    EXPECT_TRUE(cache.written.starts_with("&"s + ContextName[0] + "=&" + ContextName[1] + "="));
    HTMLPage page("a.htm");
    const HTMLPage copy(page);
    page.setHTMLSourceFileName("b.htm");
    EXPECT_TRUE(copy != page && (page = copy) == copy && copy != HTMLPage());
    NZBYTE bytes[24] = {};
    URLDecoder().hexStringToPNZBYTE24("00fF10A90102030400fF10A90102030400fF10A901020g04", &bytes);
    EXPECT_EQ(std::string(bytes + 20, bytes + 24), "\1\2\0\4"s);
}

}  // namespace
