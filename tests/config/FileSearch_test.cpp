#include "FileSearch.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "../support/TemporaryDirectory.h"
#include "Sizes.h"
#include "TraceRecords.h"

namespace {

class FileSearch : public testing::Test {
protected:
    FileSearch() {
        setVariable("LANG", nullptr);
        setVariable("PATH", nullptr);
    }

    // Searches the list in a variable of the test's own; null removes it.
    int searchIn(const char* list, const std::string& fileName) {
        setVariable("DNZ_TEST_LIST", list);
        return findfileinpath("DNZ_TEST_LIST", fileName.c_str(), result_, kPathSize);
    }
    int searchIn(const std::string& list, const std::string& fileName) {
        return searchIn(list.c_str(), fileName);
    }

    TemporaryDirectory directory_;
    char result_[kPathSize] = "unchanged";
};

}  // namespace

TEST_F(FileSearch, EndsInTheDirectoryOfTheLanguage) {
    struct {
        const char* code;
        std::vector<const char*> languages;
    } const cases[] = {{"en_US", {nullptr, "C", "POSIX", "en_GB", "En_US", "english"}},
                       {"zh_CN", {"zh", "zh_CN.UTF-8"}},
                       {"de_DE", {"de_CH", "de_DE.ISO8859-1", "de_"}},
                       {"zh_TW", {"zh_TW"}},
                       {"pt_BR", {"pt_BR"}},
                       {"nb_NB", {"nb_NO"}},
                       {"ja_JP", {"ja_JP.eucJP"}},
                       {"Pt_PT", {"Pt_BR"}},
                       {"DE_de", {"DE_de"}},
                       {"C.UC.", {"C.UTF-8"}},
                       {"de", {"de"}},
                       {"d", {"d"}},
                       {"", {""}}};
    for (const auto& row : cases) {
        for (const char* language : row.languages) {
            setVariable("LANG", language);
            setVariable("PATH", "/nowhere");
            EXPECT_EQ(findfileinpath("PATH", "gone", result_, kPathSize), 0);
            const std::string last = std::string("/opt/nzm/html/dnzgate/") + row.code;
            EXPECT_EQ(result_, last + "/gone");
            EXPECT_EQ(getenv("PATH"), "/nowhere:/opt/nzm/bin:/var/nzm:" + last);
        }
    }
}

TEST_F(FileSearch, TriesEachDirectoryInOrder) {
    std::filesystem::create_directory("a");
    std::filesystem::create_directory("b");
    writeFile("b/file", "");
    writeFile("c", "");
    const std::string& here = directory_.path();
    takeTraceRecords();
    EXPECT_EQ(searchIn("::" + here + "/a:::" + here + "/b:" + here + ":", "file"), 1);
    EXPECT_EQ(takeTraceRecords(),
              "Using path to find file:\nfile\n" + here + "/a/file\n" + here + "/b/file\n");
    EXPECT_EQ(result_, here + "/b/file");
    // Neither a file in the place of a directory nor an empty element gives a find.
    EXPECT_EQ(searchIn(here + "/c::", "c"), 0);
    EXPECT_EQ(result_, here + "/c/c");
}

TEST_F(FileSearch, ExtendsThePathWithoutAListToSearch) {
    EXPECT_EQ(searchIn(nullptr, "file"), 0);
    EXPECT_EQ(searchIn("::", "file"), 0);
    EXPECT_STREQ(result_, "unchanged");
    const std::string added = ":/opt/nzm/bin:/var/nzm:/opt/nzm/html/dnzgate/en_US";
    EXPECT_EQ(getenv("PATH"), added + added);
}

TEST_F(FileSearch, TriesTheBareNameWhereAPathDoesNotFit) {
    const std::string fits(kPathSize - std::strlen("/file") - 1, 'x');
    EXPECT_EQ(searchIn(fits, "file"), 0);
    EXPECT_EQ(result_, fits + "/file");
    EXPECT_EQ(searchIn(fits + "x", "file"), 0);
    EXPECT_STREQ(result_, "file");
    EXPECT_EQ(searchIn(fits + "x:/nowhere", "file"), 0);
    EXPECT_STREQ(result_, "/nowhere/file");
    writeFile("file", "");
    EXPECT_EQ(searchIn(fits + "x", "file"), 1);
    // A name that doesn't fit either is never opened in part.
    const std::string cut(kPathSize - 1, 'f');
    writeFile(cut, "");
    EXPECT_EQ(searchIn("/nowhere", cut + "f"), 0);
    for (const int size : {1, 0, -1}) {
        const auto exact = std::make_unique<char[]>(1);
        EXPECT_EQ(findfileinpath("DNZ_TEST_LIST", "file", exact.get(), size), 0);
    }
}
