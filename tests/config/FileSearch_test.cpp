#include "FileSearch.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "../support/TemporaryDirectory.h"
#include "TraceRecords.h"

namespace {

class FileSearch : public testing::Test {
protected:
    FileSearch() {
        setVariable("LANG", nullptr);
        setVariable("PATH", "/nowhere");
        std::strcpy(result_, "unchanged");
    }

    // Searches the list in a variable of the test's own.
    int searchIn(const std::string& list, const char* fileName) {
        setVariable("DNZ_TEST_LIST", list.c_str());
        return findfileinpath("DNZ_TEST_LIST", fileName, result_, kSearchPathSize);
    }

    TemporaryDirectory directory_;
    char result_[kSearchPathSize];
};

}  // namespace

TEST_F(FileSearch, EndsInTheDirectoryOfTheLanguage) {
    struct {
        const char* language;
        const char* code;
    } const cases[] = {
        {nullptr, "en_US"},
        {"C", "en_US"},
        {"POSIX", "en_US"},
        {"en_GB", "en_US"},
        {"En_US", "en_US"},
        {"english", "en_US"},
        {"zh", "zh_CN"},
        {"zh_TW", "zh_TW"},
        {"pt_PT", "pt_PT"},
        {"ja_JP.eucJP", "ja_JP"},
        {"ko_KR", "ko_KR"},
        {"de_CH", "de_DE"},
        {"de_DE.ISO8859-1", "de_DE"},
        {"DE_de", "DE_de"},
        {"fr_CA", "fr_FR"},
        {"Pt_BR", "Pt_PT"},
        {"de", "de"},
        {"d", "d"},
        {"", ""},
        {"de_", "de_DE"},
        {"fi_F", "fi_FI"},
        {"C.UTF-8", "C.UC."},
        {"EN_GB", "EN_EN"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.language != nullptr ? row.language : "not set");
        setVariable("LANG", row.language);
        setVariable("PATH", "/nowhere");
        EXPECT_EQ(findfileinpath("PATH", "gone", result_, kSearchPathSize), 0);
        const std::string last = std::string("/opt/nzm/html/dnzgate/") + row.code;
        EXPECT_EQ(result_, last + "/gone");
        EXPECT_EQ(getenv("PATH"), "/nowhere:/opt/nzm/bin:/var/nzm:" + last);
    }
}

TEST_F(FileSearch, TriesEachDirectoryInOrder) {
    std::filesystem::create_directories("a");
    std::filesystem::create_directories("b");
    writeFile("b/file", "");
    writeFile("c", "");
    const std::string& here = directory_.path();
    takeTraceRecords();
    EXPECT_EQ(searchIn("::" + here + "/a:::" + here + "/b:" + here + ":", "file"), 1);
    EXPECT_EQ(takeTraceRecords(), (std::vector<std::string>{"Using path to find file:", "file",
                                                            here + "/a/file", here + "/b/file"}));
    EXPECT_EQ(result_, here + "/b/file");
    writeFile("a/file", "");
    EXPECT_EQ(searchIn(here + "/a:" + here + "/b", "file"), 1);
    EXPECT_EQ(result_, here + "/a/file");
    // Neither an empty element nor a file in the place of a directory gives a find.
    EXPECT_EQ(searchIn(":", "c"), 0);
    EXPECT_EQ(result_, here + "/a/file");
    EXPECT_EQ(searchIn(here + "/c::", "c"), 0);
    EXPECT_EQ(result_, here + "/c/c");
}

TEST_F(FileSearch, ExtendsThePathWithoutAListToSearch) {
    setVariable("DNZ_TEST_LIST", nullptr);
    setVariable("PATH", nullptr);
    EXPECT_EQ(findfileinpath("DNZ_TEST_LIST", "file", result_, kSearchPathSize), 0);
    EXPECT_STREQ(result_, "unchanged");
    const std::string added = ":/opt/nzm/bin:/var/nzm:/opt/nzm/html/dnzgate/en_US";
    EXPECT_EQ(getenv("PATH"), added);
    EXPECT_EQ(findfileinpath("PATH", "gone", result_, kSearchPathSize), 0);
    EXPECT_EQ(getenv("PATH"), added + added);
}

TEST_F(FileSearch, TriesTheBareNameWhereAPathDoesNotFit) {
    const std::string fits(kSearchPathSize - std::strlen("/file") - 1, 'x');
    EXPECT_EQ(searchIn(fits, "file"), 0);
    EXPECT_EQ(result_, fits + "/file");
    EXPECT_EQ(searchIn(fits + "x", "file"), 0);
    EXPECT_STREQ(result_, "file");
    writeFile("file", "");
    EXPECT_EQ(searchIn(fits + "x", "file"), 1);
    // A long element doesn't end the search, and a long name is never opened in part.
    EXPECT_EQ(searchIn(fits + "x:/nowhere", "gone"), 0);
    EXPECT_STREQ(result_, "/nowhere/gone");
    const std::string cut(kSearchPathSize - 1, 'f');
    writeFile(cut, "");
    EXPECT_EQ(searchIn("/nowhere", (cut + "f").c_str()), 0);
    for (const int size : {5, 1, 0, -1}) {
        char* const exact = new char[5];
        setVariable("DNZ_TEST_LIST", "/nowhere:/else");
        EXPECT_EQ(findfileinpath("DNZ_TEST_LIST", "other", exact, size), 0);
        delete[] exact;
    }
}

TEST(SearchEnv, EndsAnElementAtTheLastColonOfARun) {
    struct {
        const char* list;
        std::size_t end;
        const char* element;
    } const cases[] = {
        {"a:b", 1, "a:b"}, {"a:::b", 3, "a"}, {"ab", 2, "ab"}, {"", 0, ""}, {"::", 1, ""}};
    for (const auto& row : cases) {
        std::string list(row.list);
        EXPECT_EQ(SearchEnv(list.data()), list.data() + row.end) << row.list;
        EXPECT_STREQ(list.c_str(), row.element);
    }
}
