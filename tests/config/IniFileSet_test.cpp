#include "IniFileSet.h"

#include <gtest/gtest.h>

#include <string>

#include "../support/TemporaryDirectory.h"
#include "IniFilePart.h"

namespace {

using namespace std::string_literals;

// "name|value|description" of each entry in the order of a walk; "-" stands for what isn't there.
std::string entriesOf(NameValuePairSet set) {
    const auto shown = [](const char* text) { return std::string(text != nullptr ? text : "-"); };
    std::string entries;
    for (const NameValuePair* part = set.getFirst(); part != nullptr; part = set.getNext()) {
        entries += entries.empty() ? "" : ", ";
        entries += shown(part->getName()) + "|" + shown(part->getValue()) + "|";
        entries += shown(part->getDesc());
    }
    return entries;
}

// The set read from a file of this text.
IniFileSet readText(const std::string& text) {
    writeFile("read.ini", text);
    IniFileSet set;
    set.setIniFileName("read.ini");
    EXPECT_EQ(set.Populated(), 1U);
    return set;
}

// What the file holds after its entries went through a form.
std::string savedAgain(IniFileSet read) {
    IniFileSet form;
    for (const NameValuePair* part = read.getFirst(); part != nullptr; part = read.getNext()) {
        form.addNewIniPart(part->getName(), part->getValue(), part->getDesc());
    }
    EXPECT_EQ(form.saveIniFile("saved.ini"), 1);
    return contentsOf("saved.ini");
}

}  // namespace

TEST(IniFileSet, ReadsLines) {
    struct {
        std::string text;
        const char* entries;
    } const cases[] = {
        {"", ""},
        {"\n   \n\r\n", ""},
        {"n v\nm w\n", "m|w|-, n|v|-"},
        {"n v #", "n|v|-"},
        {"n v # \n", "n|v| "},
        {"n #\n", "n|-|"},
        {"n #a b #c\n", "n|-|a b #c"},
        {"n a#b c\n", "n|a#b|-"},
        {"n a#b\n", "n|a#b|-"},
        {"n a b#c\n", "n|a|c"},
        {"n\tvalue #d\n", "n\tvalue|-|d"},
        {"  n   v\r\n", "n|v|-"},
        {"n va\rlue #d\n", "n|va|-"},
        {"n v\0w #d\nm 1\n"s, "m|1|-, n|v|-"},
        {"n v #last line", "n|v|last line"},
    };
    const TemporaryDirectory directory;
    for (const auto& row : cases) {
        EXPECT_EQ(entriesOf(readText(row.text)), row.entries) << row.text;
        const std::string saved = savedAgain(readText(row.text));
        EXPECT_EQ(savedAgain(readText(saved)), saved);
    }
}

TEST(IniFileSet, ContinuesALongLineAsTheNextEntry) {
    const TemporaryDirectory directory;
    const std::string longest(253, 'v');
    EXPECT_EQ(entriesOf(readText("n " + longest + "\n")), "n|" + longest + "|-");
    EXPECT_EQ(entriesOf(readText("n " + longest + "w\n")), "n|" + longest + "|-, w|-|-");
    // The longest line that can be read still fits the line that is written.
    EXPECT_EQ(savedAgain(readText("n " + longest)), "n " + longest + " # \n");
    IniFileSet set;
    set.addNewIniPart("n", longest.c_str(), "12");
    EXPECT_EQ(set.saveIniFile("saved.ini"), 1);
    EXPECT_EQ(contentsOf("saved.ini"), "n " + longest + " #1\n");
}

TEST(IniFileSet, ComposesEntriesOfTheForm) {
    struct {
        const char* value;
        const char* desc;
        const char* entry;
        const char* saved;
    } const cases[] = {
        {"v", "d d", "n|v|d d", "n v #d d\n"},     {"a b", nullptr, "n|a| ", "n a # \n"},
        {nullptr, "d", "n|-|d", "n  #d\n"},        {"", "", "n|-|-", "n\n"},
        {"#x", nullptr, "n|-|x # ", "n  #x # \n"}, {" a b", "d", "n| a|d", "n  a #d\n"},
        {"a #b", "d", "n|a|b #d", "n a #b #d\n"},  {"  ", nullptr, "n|   #|-", "n    # #\n"}};
    const TemporaryDirectory directory;
    for (const auto& row : cases) {
        IniFileSet set;
        set.addNewIniPart("n", row.value, row.desc);
        EXPECT_EQ(entriesOf(set), row.entry);
        EXPECT_EQ(set.saveIniFile("saved.ini"), 1);
        EXPECT_EQ(contentsOf("saved.ini"), row.saved);
    }
}

TEST(IniFileSet, LeavesFilesThatCannotBeReadOrWritten) {
    const TemporaryDirectory directory;
    std::filesystem::create_directory("folder");
    setVariable("PATH", directory.path().c_str());
    const std::string tooLong(255, 'x');
    const char* const names[] = {"missing.ini", "folder", "", tooLong.c_str(), nullptr};
    for (const char* name : names) {
        IniFileSet set;
        set.setIniFileName(name);
        EXPECT_EQ(set.Populated(), 0U);
        EXPECT_STREQ(set.getIniFileName(), name);
        EXPECT_EQ(set.getIniFilePath(), nullptr);
    }
    EXPECT_EQ(IniFileSet().saveIniFile("folder"), 0);
}

TEST(IniFileSet, FindsFilesOnThePath) {
    const TemporaryDirectory directory;
    const std::string found = directory.path() + "/etc/";
    std::filesystem::create_directory("etc");
    writeFile("etc/found.ini", "n v #d\n");
    setVariable("PATH", (directory.path() + "/etc").c_str());
    IniFileSet set;
    set.setIniFileName("found.ini");
    EXPECT_EQ(set.getIniFilePath(), found);
    const IniFileSet copy(set);
    EXPECT_EQ(copy.getIniFilePath(), nullptr);
    EXPECT_EQ(copy.Populated(), 0U);
    // A second file adds to the first; under its own name it has no path.
    set.setIniFileName("etc/found.ini");
    EXPECT_EQ(set.getIniFilePath(), nullptr);
    EXPECT_EQ(entriesOf(set), "n|v|d, n|v|d");
}
