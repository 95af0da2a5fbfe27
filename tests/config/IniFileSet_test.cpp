#include "IniFileSet.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "../support/TemporaryDirectory.h"
#include "IniFilePart.h"
#include "TraceRecords.h"

namespace {

using namespace std::string_literals;

// The entries in the order of a walk; "-" stands for what isn't there.
std::string entriesOf(NameValuePairSet& set) {
    const auto shown = [](const char* text) { return std::string(text != nullptr ? text : "-"); };
    std::string entries;
    for (const NameValuePair* part = set.getFirst(); part != nullptr; part = set.getNext()) {
        entries += "[" + shown(part->getName()) + "|" + shown(part->getValue()) + "|" +
                   shown(part->getDesc()) + "]";
    }
    return entries;
}

// What the file holds after its entries went through a form.
std::string savedAgain(NameValuePairSet& read) {
    IniFileSet form;
    for (const NameValuePair* part = read.getFirst(); part != nullptr; part = read.getNext()) {
        form.addNewIniPart(part->getName(), part->getValue(), part->getDesc());
    }
    EXPECT_EQ(form.saveIniFile("saved.ini"), 1);
    return contentsOf("saved.ini");
}

}  // namespace

TEST(IniFileSet, ReadsLinesAndSavesThemAgain) {
    const std::string longName(255, 'x');
    const std::string longest = "n " + std::string(253, 'v');
    struct {
        std::string file;
        std::string entries;
        std::string saved;
    } const cases[] = {
        {"NZIGwQueueManager QM1 #the queue manager\n", "[NZIGwQueueManager|QM1|the queue manager]",
         "NZIGwQueueManager QM1 #the queue manager\n"},
        {"NZIGwQueue   GATE.IN     #requests\n", "[NZIGwQueue|GATE.IN|requests]",
         "NZIGwQueue GATE.IN #requests\n"},
        {"NZIGwWaitInterval 30\n", "[NZIGwWaitInterval|30|-]", "NZIGwWaitInterval 30 # \n"},
        {"NZIGwReplyQueue #none yet\n", "[NZIGwReplyQueue|-|none yet]",
         "NZIGwReplyQueue  #none yet\n"},
        {"NZIGwContext\n", "[NZIGwContext|-|-]", "NZIGwContext\n"},
        {"\n   \n\r\n", "", ""},
        {"# the gateway's settings\n", "[#|the|-]", "# the # \n"},
        {"#old entry with #a note\n", "[#old|entry|a note]", "#old entry #a note\n"},
        {"#note one two\n", "[#note|one|-]", "#note one # \n"},
        {"b 1 #\na 2 # \n", "[a|2| ][b|1|-]", "a 2 # \nb 1 # \n"},
        {"n #\n", "[n|-|]", "n\n"},
        {"n #a b #c\n", "[n|-|a b #c]", "n  #a b #c\n"},
        {"n a#b c\n", "[n|a#b|-]", "n a#b # \n"},
        {"n a#b\n", "[n|a#b|-]", "n a#b # \n"},
        {"n a b#c\n", "[n|a|c]", "n a #c\n"},
        {"n\tvalue #d\n", "[n\tvalue|-|d]", "n\tvalue  #d\n"},
        {"n\t1 \tv \n", "[n\t1|\tv|-]", "n\t1 \tv # \n"},
        {"  n   v\r\n", "[n|v|-]", "n v # \n"},
        {"n va\rlue #d\n", "[n|va|-]", "n va # \n"},
        {"n v\0w #d\nm 1\n"s, "[m|1|-][n|v|-]", "m 1 # \nn v # \n"},
        {"n v #last line", "[n|v|last line]", "n v #last line\n"},
        {"n", "[n|-|-]", "n\n"},
        {longName + "\n", "[" + longName + "|-|-]", longName + "\n"},
        {longName + "n v\n", "[n|v|-][" + longName + "|-|-]", "n v # \n" + longName + "\n"},
        {longest + "\n", "[n|" + longest.substr(2) + "|-]", longest + " # \n"},
        {longest + "w", "[n|" + longest.substr(2) + "|-][w|-|-]", longest + " # \nw\n"},
    };
    const TemporaryDirectory directory;
    for (const auto& row : cases) {
        SCOPED_TRACE(row.file);
        writeFile("test.ini", row.file);
        IniFileSet set;
        set.setIniFileName("test.ini");
        EXPECT_EQ(set.Populated(), 1U);
        EXPECT_STREQ(set.getIniFileName(), "test.ini");
        EXPECT_EQ(set.getIniFilePath(), nullptr);
        EXPECT_EQ(entriesOf(set), row.entries);
        const std::string saved = savedAgain(set);
        EXPECT_EQ(saved, row.saved);
        // The tool's own files read and save unchanged.
        IniFileSet again;
        again.setIniFileName("saved.ini");
        if (saved.find('\n') < 256) {
            EXPECT_EQ(savedAgain(again), saved);
        }
    }
}

TEST(IniFileSet, ComposesEntriesOfTheForm) {
    struct {
        const char* value;
        const char* desc;
        const char* entry;
        const char* saved;
    } const cases[] = {
        {"v", "d d", "[n|v|d d]", "n v #d d\n"},
        {"a b", nullptr, "[n|a| ]", "n a # \n"},
        {nullptr, "d", "[n|-|d]", "n  #d\n"},
        {nullptr, nullptr, "[n|-|-]", "n\n"},
        {"", "", "[n|-|-]", "n\n"},
        {"#x", nullptr, "[n|-|x # ]", "n  #x # \n"},
        {" a b", "d", "[n| a|d]", "n  a #d\n"},
        {"a #b", "d", "[n|a|b #d]", "n a #b #d\n"},
        // A value of blanks alone takes the mark of the description for its word.
        {"  ", nullptr, "[n|   #|-]", "n    # #\n"},
    };
    const TemporaryDirectory directory;
    for (const auto& row : cases) {
        SCOPED_TRACE(row.saved);
        IniFileSet set;
        set.addNewIniPart("n", row.value, row.desc);
        EXPECT_EQ(entriesOf(set), row.entry);
        EXPECT_EQ(set.saveIniFile("test.ini"), 1);
        EXPECT_EQ(contentsOf("test.ini"), row.saved);
        EXPECT_STREQ(set.findPart("n")->getName(), "n");
    }
}

TEST(IniFileSet, CutsAWrittenLineAtItsLimit) {
    const TemporaryDirectory directory;
    for (const std::size_t length : {252, 253, 254}) {
        IniFileSet set;
        set.addNewIniPart("n", std::string(length, 'v').c_str(), "d");
        EXPECT_EQ(set.saveIniFile("test.ini"), 1);
        const std::string line = "n " + std::string(length, 'v') + " #d";
        EXPECT_EQ(contentsOf("test.ini"), line.substr(0, 258) + "\n");
    }
}

TEST(IniFileSet, LeavesFilesThatCannotBeReadOrWritten) {
    const TemporaryDirectory directory;
    std::filesystem::create_directory("folder");
    setVariable("PATH", directory.path().c_str());
    const std::string tooLong(255, 'x');
    for (const char* name :
         {"missing.ini", "folder", "", tooLong.c_str(), static_cast<const char*>(nullptr)}) {
        SCOPED_TRACE(name != nullptr ? name : "null");
        IniFileSet set;
        set.setIniFileName(name);
        EXPECT_EQ(set.Populated(), 0U);
        EXPECT_STREQ(set.getIniFileName(), name);
        EXPECT_EQ(set.getIniFilePath(), nullptr);
        EXPECT_EQ(set.getFirst(), nullptr);
    }
    EXPECT_EQ(IniFileSet().saveIniFile("folder"), 0);
    EXPECT_EQ(IniFileSet().saveIniFile("missing/test.ini"), 0);
}

TEST(IniFileSet, FindsFilesOnThePath) {
    const TemporaryDirectory directory;
    std::filesystem::create_directory("etc");
    writeFile("etc/found.ini", "n v #d\n");
    setVariable("PATH", (directory.path() + "/etc").c_str());
    IniFileSet set;
    takeTraceRecords();
    set.setIniFileName("found.ini");
    const std::string found = directory.path() + "/etc/";
    EXPECT_EQ(takeTraceRecords(),
              (std::vector<std::string>{
                  "{IniFileSet::setIniFileName", "{IniFileSet::populate",
                  "Using path to find file:", "found.ini", found + "found.ini", "Path is ", found,
                  "{IniFilePart::IniFilePart", "}IniFilePart::IniFilePart 0", "n", "v #d",
                  "}IniFileSet::populate 1", "}IniFileSet::setIniFileName 0"}));
    EXPECT_EQ(set.getIniFilePath(), found);

    // A copy shares the entries and counts as not read; a file under its own name has no path.
    IniFileSet copy(set);
    EXPECT_EQ(entriesOf(copy), "[n|v|d]");
    EXPECT_STREQ(copy.getIniFileName(), "found.ini");
    EXPECT_EQ(copy.getIniFilePath(), nullptr);
    EXPECT_EQ(copy.Populated(), 0U);
    set.setIniFileName("etc/found.ini");
    EXPECT_EQ(set.getIniFilePath(), nullptr);
    EXPECT_EQ(entriesOf(set), "[n|v|d][n|v|d]");
    copy = set;
    EXPECT_STREQ(copy.getIniFileName(), "etc/found.ini");
}

TEST(IniFileSet, TracesASave) {
    const TemporaryDirectory directory;
    IniFileSet set;
    takeTraceRecords();
    EXPECT_EQ(set.saveIniFile("test.ini"), 1);
    EXPECT_EQ(takeTraceRecords(),
              (std::vector<std::string>{"{IniFileSet::saveIniFile", "Save to file", "test.ini",
                                        "}IniFileSet::saveIniFile 1"}));
}

TEST(IniFilePart, CarriesItsDescriptionIntoCopies) {
    IniFileSet set;
    set.addNewIniPart("n", "v", "d");
    const IniFilePart copy(*static_cast<IniFilePart*>(set.getFirst()));
    IniFilePart assigned;
    EXPECT_EQ(assigned.getDesc(), nullptr);
    assigned = copy;
    EXPECT_STREQ(assigned.getDesc(), "d");
    EXPECT_EQ(assigned == copy, 1);
    EXPECT_EQ(IniFilePart("n", "v").getDesc(), nullptr);
}
