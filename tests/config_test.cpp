// What requests don't show: operations of the classes that only other programs call.
#include "config/CGIPart.h"
#include "config/ConfigurationSet.h"
#include "config/FileSearch.h"
#include "config/IniFilePart.h"
#include "config/IniFileSet.h"
#include "config/URLDecoder.h"
#include "frontend/CGIInterface.h"
#include "frontend/ContextName.h"
#include "frontend/HTMLPage.h"
#include "frontend/ThreadObjectSet.h"
#include "services/outer/ServiceCalls.h"
#include "support/Services.h"

using namespace dnz;

namespace {

using namespace std::string_literals;

class Classes : public Services {
protected:
    Classes() { dnzcsaInit = 1; }
    // Copies and compares, with these results, traced under the name of the class.
    template <typename Object>
    void expectCopies(const char* name, const std::vector<int>& results, const Object& one,
                      const Object& other) {
        std::vector<int> found;
        const std::string records = traced([&] {
            Object copy(one);
            found = {copy == one, copy != one, copy == other, copy != other};
            copy = other;
            found.push_back(copy == other);
        });
        EXPECT_EQ(found, results) << name;
        const std::string equal = "N::operator== N::operator!= ";
        const std::string calls =
            "N::N(copy) " + equal + equal + "N::operator= N::operator== N::~N ";
        EXPECT_EQ(callsOf(records, name + "::"s), std::regex_replace(calls, std::regex("N"), name));
    }
};

TEST_F(Classes, CopyAndCompare) {
    expectCopies("CGIPart", {1, 0, 0, 1, 1}, CGIPart("name", 4, "%2541", 5),
                 CGIPart("name", 4, "A", 1));
    expectCopies("IniFilePart", {1, 0, 0, 1, 1}, IniFilePart("name", "value #text"), IniFilePart());
    expectCopies("HTMLPage", {1, 0, 0, 1, 1}, HTMLPage("a.htm"), HTMLPage());
    expectCopies("CGIPartSet", {0, 1, 0, 1, 0}, CGIPartSet(), CGIPartSet());
    expectCopies("IniFileSet", {0, 1, 0, 1, 0}, IniFileSet(), IniFileSet());
    expectCopies("ConfigSet", {0, 1, 0, 1, 0}, ConfigurationSet(), ConfigurationSet());
    expectCopies("URLDecoder", {1, 0, 1, 0, 1}, URLDecoder(), URLDecoder());
}

TEST_F(Classes, ServeOtherPrograms) {
    NameValuePair pairs[] = {{"xx", "1"}, {"xx", 2, "2\0#3", 4}, {"a", nullptr}};
    NameValuePairSet set;
    EXPECT_EQ(set.push(&pairs[0]) + set.push(&pairs[1]) + set.push(&pairs[2]), 3U);
    EXPECT_EQ(set.pull(&pairs[0]) + set.pull(&pairs[0]), 1U);
    EXPECT_TRUE(set.getFirst() == &pairs[2] && set.getNext() == &pairs[1]);
    EXPECT_TRUE(set.getNext() == nullptr && set.getNext() == &pairs[1]);
    char* text = nullptr;
    unsigned long size = 0;
    IniFileSet file;
    const std::string records = traced([&] {
        EXPECT_TRUE(pairs[0].compare(pairs[1]) == 0 && pairs[0].compare("x") > 0);
        pairs[1].getName(&text, &size);
        EXPECT_TRUE(text == pairs[1].getName() && size == 3);
        pairs[2].getValue(&text, &size);
        EXPECT_TRUE(text == pairs[2].getValue() && text == nullptr && size == 0);
        NZBYTE bytes[24] = {};
        URLDecoder().hexStringToPNZBYTE24(std::string(48, 'a').c_str(), &bytes);
        EXPECT_TRUE(bytes[0] == 0xAA && bytes[23] == 0xAA);
        file.setIniFileName("none.ini");
        file.setIniFileName(nullptr);
        EXPECT_EQ(file.getIniFileName(), nullptr);
        HTMLPage page;
        page.set_HTMLSourceFile(new char[2]{'a', '\0'});
        EXPECT_STREQ(page.get_HTMLSourceFile(), "a");
    });
    EXPECT_EQ(callsOf(records, "(?!.*::hex.*har|IniFileSet)"),
              "NameValuePair::compare(&NameValuePair) NameValuePair::compare(char*) "
              "NameValuePair::getName ConfigPart::getName NameValuePair::getValue "
              "ConfigPart::getValue URLDecoder::URLDecoder URLDecoder::hexStringToPNZBYTE24 "
              "URLDecoder::~URLDecoder "
              "HTMLPage::HTMLPage HTMLPage::set_HTMLSourceFile HTMLPage::get_HTMLSourceFile "
              "HTMLPage::~HTMLPage ");
    char path[9];
    EXPECT_EQ(findfileinpath("NONE", "/etc/passwd", path, 9), 0);
    pairs[2].set_oValue(new char[2]{'v', '\0'});
    pairs[2].set_oValueLength(2);
    testing::internal::CaptureStdout();
    NameValuePairSet(set).dump();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "NameValuePairSet-------------Start\nNumberInSet<2>\nMaxNumberInSet<256>\n"
              "HalfLife<2>\noIndexOfPairs[0]\nName<a\0>\nValue<v\0>\noIndexOfPairs[1]\n"
              "Name<xx\0>\nValue<2\0#3\0>\nNameValuePairSet-------------End\n"s);
    // Field, size of the buffer => result, length, buffer with "~" for a zero byte, "?" untouched.
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

TEST_F(Classes, FindSettingsForOtherPrograms) {
    writeFile("other.ini", "b request\nNZIGwQueueManager QM2\n");
    writeFile("dnz.ini", "b default\nc default\nNZIGwQueueManager QM1\n");
    struct : Cache {
        void write(const char* text, long length) override {
            written.append(text, static_cast<std::size_t>(length));
        }
        std::string written;
    } cache;
    setVariable("GATEWAY_INTERFACE", "Zz 9/");
    check(R"(a=form&b=x a => form | b=&NZIGwIniFile=other.ini b => request | b= b => default
        NZIGwIniFile=other.ini c => default | NZIGwQueueManager= NZIGwQueueManager => none
        NZIGwIniFile= c => default | NZIGwIniFile=other.ini NZIGwQueueManager => QM2 | x=y e => -)",
          [&](std::istream& in) {
              const std::string form = next(in);
              writeFile("body", form);
              EXPECT_NE(std::freopen("body", "r", stdin), nullptr);
              setVariable("CONTENT_LENGTH", std::to_string(form.size()).c_str());
              CGIInterface transport;
              EXPECT_STREQ(transport.InterfaceType(), "CGI");
              EXPECT_EQ(transport.CacheContext(&cache, nullptr), 1);
              const ConfigurationPart* part =
                  transport.getConfigurationSet()->findPart(next(in).c_str());
              ThreadObjectSet::Instance()->remove();
              EXPECT_EQ(WebInterface::Instance(), nullptr);
              return part == nullptr ? "-" : part->getValue() ? part->getValue() : "none"s;
          });
    EXPECT_TRUE(cache.written.starts_with("&"s + ContextName[0] + "=&" + ContextName[1] + "="));
    EXPECT_TRUE(cache.written.ends_with("&GATEWAY_INTERFACE=Zz+9%2F"));
}

}  // namespace
