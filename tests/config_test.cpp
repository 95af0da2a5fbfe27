// What requests don't show: operations of the classes that only other programs call.
#include "config/CGIPart.h"
#include "config/ConfigurationSet.h"
#include "config/FileSearch.h"
#include "config/IniFilePart.h"
#include "config/NameValuePairSet.h"
#include "config/URLDecoder.h"
#include "frontend/CGIInterface.h"
#include "frontend/ContextName.h"
#include "frontend/HTMLPage.h"
#include "frontend/ThreadObjectSet.h"
#include "frontend/interface/WebInterface.h"
#include "services/base/Path.h"
#include "support/Services.h"

using namespace dnz;

namespace {

using namespace std::string_literals;

// Copies and assignments are equal to their original, and have arrays of their own.
template <typename Part>
void expectOwnEqualCopies(const Part& part, const Part& other) {
    const Part copy(part);
    Part assigned(other);
    EXPECT_TRUE(assigned != part);
    assigned = copy;
    EXPECT_TRUE(copy == part && assigned == part && !(copy != part) && !(copy == other));
    EXPECT_NE(copy.get_oValue(), part.get_oValue());
    EXPECT_STREQ(assigned.getValue(), part.getValue());
    EXPECT_STREQ(assigned.getDesc(), part.getDesc());
}

TEST_F(Services, PartsAreCopiedComparedAndLent) {
    expectOwnEqualCopies(NameValuePair("name", "value"), NameValuePair("name", "another"));
    expectOwnEqualCopies(CGIPart("name", 4, "%2541", 5), CGIPart("name", 4, "A", 1));
    IniFilePart entry("name", "value #description");
    IniFilePart other("name", "value #another one");
    entry.get_oValue()[5] = other.get_oValue()[5] = '\0';
    expectOwnEqualCopies(entry, other);
    EXPECT_TRUE(IniFilePart() == IniFilePart() && CGIPart() != CGIPart("name", 4, nullptr, 0));
    check(
        "abc abc => 0 | ab abc => -1 | Zeta alpha => -1 | b abcd => 1 | \xc3 z => 1 | - a => -1 | "
        "- - => 0",
        [](std::istream& in) {
            const auto pair = [&in] {
                const std::string name = next(in);
                return NameValuePair(name == "-" ? nullptr : name.c_str(), "value");
            };
            const NameValuePair left = pair();
            const NameValuePair right = pair();
            const int order = left.compare(&right);
            EXPECT_TRUE((right.compare(left) < 0) == (order > 0));
            return (order > 0) - (order < 0);
        });
    NameValuePair pair("abc", 3, "xyz", 2);
    char* text = nullptr;
    unsigned long size = 0;
    pair.getName(&text, &size);
    EXPECT_TRUE(text == pair.get_oName() && size == 4 && pair.get_oNameLength() == 4);
    pair.getValue(&text, &size);
    EXPECT_TRUE(text == pair.get_oValue() && text == "xy"s && size == 3);
    pair.set_oValue(new char[2]{'v', '\0'});
    pair.set_oValueLength(2);
    delete[] pair.get_oName();
    pair.set_oName(nullptr);
    pair.set_oNameLength(0);
    EXPECT_TRUE(pair == NameValuePair(nullptr, "v"));
}

TEST_F(Services, SetsGiveBackDumpAndFill) {
    NameValuePair pairs[] = {{"xx", "1"}, {"y", ""}, {"xx", 2, "2\0#3", 4}, {"a", nullptr}};
    NameValuePairSet set;
    for (NameValuePair& pair : pairs) {
        EXPECT_EQ(set.push(&pair), 1U);
    }
    EXPECT_EQ(set.pull(&pairs[0]) + set.pull(&pairs[0]), 1U);
    NameValuePairSet copy;
    copy = set;
    EXPECT_TRUE(!(copy == set) && !(set == set) && NameValuePairSet(set) != set);
    EXPECT_TRUE(copy.getFirst() == &pairs[3] && copy.getNext() == &pairs[2]);
    testing::internal::CaptureStdout();
    copy.dump();
    EXPECT_EQ(
        testing::internal::GetCapturedStdout(),
        "NameValuePairSet-------------Start\nNumberInSet<3>\nMaxNumberInSet<256>\nHalfLife<2>\n"
        "oIndexOfPairs[0]\nName<a\0>\nValue<>\noIndexOfPairs[1]\nName<xx\0>\nValue<2\0#3\0>\n"
        "oIndexOfPairs[2]\nName<y\0>\nValue<\0>\nNameValuePairSet-------------End\n"s);
    CGIPartSet form;
    form.Initialize("full=abc&cut=a%00b&none=", 24);
    check(
        R"(full 6 => 1 4 abc~~? | full 4 => 1 3 abc~?? | full 3 => 0 2 ab~??? | full 1 => 0 0 ~?????
        full 0 => 0 0 ?????? | cut 6 => 1 2 a~~??? | none 6 => 1 0 ~????? | none 0 => 1 0 ??????
        gone 6 => 0 0 ~?????)",
        [&](std::istream& in) {
            const std::string name = next(in);
            auto length = next<unsigned long>(in);
            std::string buffer(6, '?');
            const long code = form.getPartValue(name.c_str(), buffer.data(), &length);
            std::replace(buffer.begin(), buffer.end(), '\0', '~');
            return std::to_string(code) + " " + std::to_string(length) + " " + buffer;
        });
}

TEST_F(Services, DirectoriesFollowTheLanguage) {
    check(
        R"(- => en_US | C => en_US | POSIX => en_US | en_GB => en_US | English => en_US | zh => zh_CN
        zh_CN.UTF-8 => zh_CN | de_CH => de_DE | de_ => de_DE | zh_TW => zh_TW | pt_BR => pt_BR
        nb_NO => nb_NB | ja_JP.eucJP => ja_JP | Pt_BR => Pt_PT | DE_de => DE_de | ko_XX => ko_XX
        C.UTF-8 => C.UC. | de => de | d => d)",
        [](std::istringstream& in) {
            setVariable("LANG", in.str() == "-" ? nullptr : in.str().c_str());
            setVariable("PATH", "/nowhere");
            char found[kPathSize];
            EXPECT_EQ(findfileinpath("PATH", "gone", found, kPathSize), 0);
            const std::string path = std::getenv("PATH");
            EXPECT_EQ(path.substr(0, path.rfind('/')),
                      "/nowhere:/opt/nzm/bin:/var/nzm:/opt/nzm/html/dnzgate");
            return path.substr(path.rfind('/') + 1);
        });
}

class CollectingCache : public Cache {
public:
    void write(const char* text, long length) override {
        text_.append(text, static_cast<std::size_t>(length));
    }
    std::string text_;
};

TEST_F(Services, TransportsAnswerOtherPrograms) {
    writeFile("other.ini", "b request\nc request\nNZIGwQueueManager QM2\n");
    writeFile("dnz.ini", "b default\nc default\nd default\nNZIGwQueueManager QM1\n");
    check(R"(a=form&b=x a => form | a=x&b=form b => form | b=&NZIGwIniFile=other.ini b => request
        b= b => default | NZIGwIniFile=other.ini c => request | NZIGwIniFile=other.ini d => default
        NZIGwIniFile= c => default | NZIGwQueueManager= NZIGwQueueManager => none
        NZIGwIniFile=other.ini NZIGwQueueManager => QM2 | x=y e => absent)",
          [](std::istream& in) {
              const std::string form = next(in);
              writeFile("body", form);
              EXPECT_NE(std::freopen("body", "r", stdin), nullptr);
              setVariable("CONTENT_LENGTH", std::to_string(form.size()).c_str());
              CGIInterface transport;
              EXPECT_STREQ(transport.getInputBuffer(), form.c_str());
              EXPECT_EQ(transport.getInputBufferLength(), form.size() + 1);
              ConfigurationSet copy(*transport.getConfigurationSet());
              EXPECT_TRUE(copy != *transport.getConfigurationSet() && !(copy == copy));
              EXPECT_EQ(copy.findPart("b"), nullptr);
              const ConfigurationPart* part =
                  transport.getConfigurationSet()->findPart(next(in).c_str());
              return part == nullptr               ? "absent"
                     : part->getValue() != nullptr ? part->getValue()
                                                   : "none"s;
          });
    CGIInterface transport;
    EXPECT_STREQ(transport.InterfaceType(), "CGI");
    EXPECT_EQ(WebInterface::Instance(), &transport);
    std::string expected;
    for (const char* name : ContextName) {
        setVariable(name, name == "HTTP_HOST"s ? "a b:8\xE9" : nullptr);
        expected += "&"s + name + (name == "HTTP_HOST"s ? "=a+b%3A8%E9" : "=");
    }
    CollectingCache cache;
    EXPECT_EQ(transport.CacheContext(&cache, nullptr), 1);
    EXPECT_EQ(cache.text_, expected);
    ThreadObjectSet::Instance()->remove();
    EXPECT_EQ(WebInterface::Instance(), nullptr);
    HTMLPage page("a.htm");
    HTMLPage copy(page);
    EXPECT_TRUE(copy == page && copy.get_HTMLSourceFile() != page.get_HTMLSourceFile());
    page.setHTMLSourceFileName("b.htm");
    EXPECT_TRUE(copy != page && copy != HTMLPage());
    copy = page;
    EXPECT_STREQ(copy.get_HTMLSourceFile(), "b.htm");
    const URLDecoder decoder;
    NZBYTE bytes[24] = {};
    EXPECT_EQ(
        decoder.hexStringToPNZBYTE24("00fF10A90102030400fF10A90102030400fF10A901020304", &bytes),
        &bytes);
    EXPECT_EQ(std::string(bytes, bytes + 24),
              std::string(3, '\0').assign("\x00\xff\x10\xa9\x01\x02\x03\x04\x00\xff\x10\xa9\x01\x02"
                                          "\x03\x04\x00\xff\x10\xa9\x01\x02\x03\x04",
                                          24));
    EXPECT_EQ(decoder.HexCharToInt('g'), 0);
    EXPECT_TRUE(decoder == URLDecoder() && !(decoder != decoder));
}

}  // namespace
