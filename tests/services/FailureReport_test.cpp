#include "FailureReport.h"

#include "BuildInformation.h"
#include "ServicesTest.h"
#include "TraceRecords.h"

using FailureReport = ServicesTest;

namespace {

xcsINSERTS insertsOf(std::int32_t major, std::int32_t minor, const char* comment) {
    xcsINSERTS inserts;
    inserts.number1 = major;
    inserts.number2 = minor;
    inserts.text1 = comment;
    inserts.text2 = " ";
    inserts.text3 = " ";
    return inserts;
}

std::string boxRow(const std::string& text) {
    return "|" + text + std::string(77 - text.size(), ' ') + "|\n";
}

}  // namespace

TEST(ReportRow, BreaksBehindColumnSeventyFive) {
    struct {
        std::size_t length;
        std::size_t first;
        std::size_t second;
    } const cases[] = {{0, 0, 0}, {75, 75, 0}, {76, 75, 1}, {145, 75, 70}, {146, 75, 70}};
    for (const auto& row : cases) {
        char line[kReportLineSize];
        std::string expected = boxRow(" " + std::string(row.first, 'x'));
        if (row.second > 0) {
            expected += boxRow("      " + std::string(row.second, 'x'));
        }
        EXPECT_EQ(FormatString(line, std::string(row.length, 'x').c_str()), expected);
    }
}

TEST_F(FailureReport, FillsItsBox) {
    xnztr_entry("caller");
    const std::string comment(64, 'c');
    EXPECT_EQ(xnz_xcsWYRD("someFunction", 7, insertsOf(0x20806058, 13, comment.c_str())), 0);
    const std::string border = "+" + std::string(77, '-') + "+\n";
    const std::string empty = boxRow("");
    const std::string text =
        std::regex_replace(contentsOf(fileName("FDC")), std::regex(":- ... ... .. ..:..:.. .... "),
                           ":- Www Mmm dd hh:mm:ss yyyy ");
    EXPECT_EQ(
        text,
        border + empty + boxRow("   HVL First Failure Symptom Report") +
            boxRow(" ====================================") + empty +
            boxRow(" Date/Time         :- Www Mmm dd hh:mm:ss yyyy") +
            boxRow(std::string(" Code Level           :- ") + xnz_level) + empty +
            boxRow(" Function Name     :- someFunction") + empty +
            boxRow(" Probe Id          :- HVL7") +
            boxRow(std::string(" Build Date        :- ") + kBuildDate) +
            boxRow(" Major Errorcode   :- Not found in retcode translation table (20806058) (545") +
            boxRow("      284184) ") + boxRow(" Minor Errorcode   :- 13 ") +
            boxRow(" Comment1          :- " + std::string(54, 'c')) +
            boxRow("      " + std::string(9, 'c')) + boxRow(" Comment2          :-") + empty +
            boxRow(" Comment3          :-") + empty + empty + border +
            "\n  Stored Function Stack\n  =====================\n\ncaller\nxnz_xcsWYRD\n\n");
}

TEST_F(FailureReport, GoesOnInOneFileAndNeverIntoItself) {
    xnz_xcsWYRD("first", 1, insertsOf(0, 0, " "));
    const std::string first = contentsOf(fileName("FDC"));
    block_.inFailureReport = 1;
    xnz_xcsWYRD("inside", 1, insertsOf(0, 0, " "));
    EXPECT_EQ(contentsOf(fileName("FDC")), first);
    block_.inFailureReport = 0;
    xnz_xcsWYRD("second", 1, insertsOf(0, 0, " "));
    EXPECT_EQ(contentsOf(fileName("FDC")).size(), 2 * first.size());
    EXPECT_EQ(block_.inFailureReport, 0);
    xnzCSCtrl = nullptr;
    EXPECT_EQ(xnz_xcsWYRD("stopped", 1, insertsOf(0, 0, " ")), 0);
}

TEST_F(FailureReport, FallsBackOnTheWorkingDirectory) {
    const std::string tooLong = "/" + std::string(300, 'd');
    for (const char* path : {"/nonexistent/", tooLong.c_str()}) {
        setVariable("DNZ_PATH", path);
        xnz_xcsWYRD("f", 1, insertsOf(0, 0, " "));
        EXPECT_TRUE(std::filesystem::exists(fileName("FDC")));
        std::fclose(fdcFile);
        fdcFile = nullptr;
        std::filesystem::remove(fileName("FDC"));
    }
}

TEST_F(FailureReport, ListsTheStoredPartOfTheStack) {
    const auto printed = [] {
        std::FILE* file = std::fopen("stack", "w");
        PrintFunctionStack(file);
        std::fclose(file);
        return contentsOf("stack");
    };
    EXPECT_EQ(printed(), "\nNo Function Stack Stored\n\n");
    xnztr_entry("f");
    xnztr_exit("f", 0);
    EXPECT_EQ(printed(), "\nNo Entries in Function Stack\n\n");
    std::string names;
    for (int depth = 0; depth < 25; ++depth) {
        xnztr_entry("f");
        names += depth < 20 ? "f\n" : "";
    }
    EXPECT_EQ(printed(), "\n  Stored Function Stack\n  =====================\n\n" + names + "\n");
}
