#include "CCSIDTable.h"

#include <chrono>
#include <climits>

#include "ConversionTest.h"
#include "ReturnCodes.h"

namespace {

using CCSIDTableTest = ConversionTest;

std::string describe(const CCSIDNode* node) {
    if (node == nullptr) {
        return "-";
    }
    char text[128];
    std::snprintf(text, sizeof text, "%d %d %d %d %d %d %s %s", node->ccsid, node->dbcsPage,
                  node->sbcsPage, node->widthClass, node->encodingClass, node->leadByteClass,
                  node->dbcsPageHex, node->sbcsPageHex);
    return text;
}

// The keys of the tree with its shape: (left key right).
std::string shape(const CCSIDNode* node) {
    if (node == nullptr) {
        return "";
    }
    return "(" + shape(node->left) + std::to_string(node->ccsid) + shape(node->right) + ")";
}

TEST_F(CCSIDTableTest, LinesGiveNodes) {
    const std::string longComment = "# " + std::string(252, 'c') + "\n";  // exactly 255 bytes
    const std::string overlong = std::string(250, ' ') + "1 2 3 4 5 6 7 8 9 10 11 12\n";
    const struct {
        const char* name;
        std::string file;
        std::int32_t ccsid;
        const char* node;
    } kCases[] = {
        {"plain", "1234 300 850 3 2 1\n", 1234, "1234 300 850 3 2 1 012c 0352"},
        {"no newline", "1234 300 850 3 2 1", 1234, "1234 300 850 3 2 1 012c 0352"},
        {"white space", "\t 1234\v300\f850  3\r2\t1\n", 1234, "1234 300 850 3 2 1 012c 0352"},
        {"text behind", "7 0 65535 1 2 1 free text\n", 7, "7 0 65535 1 2 1 0000 ffff"},
        {"prefix numbers", "-7x 0x12 +9z 1 q 1\n", -7, "-7 0 9 1 0 1 0000 0009"},
        {"large numbers", "99999999999 0 0 1 1 -99999999999\n", INT_MAX,
         "2147483647 0 0 1 1 -2147483648 0000 0000"},
        {"comment", "#1 2 3 4 5 6\n" + longComment + "2 0 1 1 1 1\n", 1, "-"},
        {"after comments", "#1 2 3 4 5 6\n" + longComment + "2 0 1 1 1 1\n", 2,
         "2 0 1 1 1 1 0000 0001"},
        {"mark behind a blank", " # 2 3 1 5 6\n", 0, "0 2 3 1 5 6 0002 0003"},
        {"last line wins", "5 1 2 3 4 5\n5 6 7 1 2 3\n", 5, "5 6 7 1 2 3 0006 0007"},
        {"too few columns", "1 2 3 4 5\n\n", 1, "-"},
        {"page too large", "1 0 65536 1 1 1\n", 1, "-"},
        {"page negative", "1 -1 0 1 1 1\n", 1, "-"},
        {"long line begins", overlong, 1, "-"},
        {"long line goes on", overlong, 4, "4 5 6 7 8 9 0005 0006"},
    };
    for (const auto& row : kCases) {
        SCOPED_TRACE(row.name);
        writeFile("ccsid.tbl", row.file);
        EXPECT_EQ(xxxInitialize(), kServiceOk);
        EXPECT_EQ(describe(xxxFindNode(block_.ccsidTable, row.ccsid)), row.node);
    }
}

TEST_F(CCSIDTableTest, TheShapeFollowsTheLines) {
    std::string file;
    for (const char* ccsid : {"50", "20", "70", "60", "-10", "80", "20", "65", "30", "25", "55"}) {
        file += std::string(ccsid) + " 1 2 3 1 0\n";
    }
    writeFile("ccsid.tbl", file);
    EXPECT_EQ(xxxInitialize(), kServiceOk);
    EXPECT_EQ(shape(block_.ccsidTable), "(((-10)20((25)30))50(((55)60(65))70(80)))");
    xxxFreeNode(block_.ccsidTable->left);
    EXPECT_EQ(shape(block_.ccsidTable), "((20)50(((55)60(65))70(80)))");
}

TEST_F(CCSIDTableTest, InsertingKeepsAnEntryThatIsThere) {
    CCSIDNode* root = nullptr;
    CCSIDEntry entry{7, 1, 2, 3, 4, 5, "0001", "0002"};
    xxxInsertNode(&root, &entry);
    entry.sbcsPage = 99;
    for (const std::int32_t ccsid : {7, 9, 8, 3}) {
        entry.ccsid = ccsid;
        xxxInsertNode(&root, &entry);
    }
    EXPECT_EQ(shape(root), "((3)7((8)9))");
    EXPECT_EQ(describe(xxxFindNode(root, 7)), "7 2 1 4 3 5 0002 0001");
    xxxDeleteNode(&root);
    EXPECT_EQ(root, nullptr);
    EXPECT_EQ(xxxFindNode(root, 7), nullptr);
}

TEST_F(CCSIDTableTest, ChainsOfAnyLengthAreReadAndFreed) {
    for (const int direction : {1, -1}) {
        std::string file;
        for (int round = 0; round < 2; ++round) {
            for (int number = 1; number <= 100000; ++number) {
                file += std::to_string(direction * number) + " 0 850 1 2 1\n";
            }
        }
        writeFile("ccsid.tbl", file);
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(xxxInitialize(), kServiceOk);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
        EXPECT_NE(xxxFindNode(block_.ccsidTable, direction * 100000), nullptr);
    }
    xxxFreeNode(block_.ccsidTable);
}

constexpr char kLine[] = "1 0 850 1 2 1\n";

TEST_F(CCSIDTableTest, FileIsSoughtInOneDirectory) {
    const std::string here = directory_.path();
    const std::string farAway(400, 'd');
    const std::string none =
        "Failed to open ccsid.tbl\nFailed to open DNZCCSID.TBL or "
        "dnzccsid.tbl ....\n";
    const std::string noUpper = "Failed to open DNZCCSID.TBL\n";
    std::filesystem::create_directory("tables");
    const struct {
        const char* name;
        const char* variable;
        const char* file;
        std::int32_t code;
        std::string trace;
    } kCases[] = {
        {"upper", "tables", "tables/DNZCCSID.TBL", kServiceOk, ""},
        {"lower", "tables", "tables/ccsid.tbl", kServiceOk, noUpper},
        {"slash", "tables/", "tables/ccsid.tbl", kServiceOk, noUpper},
        {"not set", nullptr, "ccsid.tbl", kServiceOk, ""},
        {"empty", "", "ccsid.tbl", kServiceOk, ""},
        {"not set, missing", nullptr, "other", xecX_S_NO_CCSID_TABLE, none + "ccsid.tbl\n"},
        {"only there", "tables", "ccsid.tbl", xecX_S_NO_CCSID_TABLE,
         noUpper + none + "tables/ccsid.tbl\n"},
        {"too long", farAway.c_str(), "ccsid.tbl", xecX_S_NO_CCSID_TABLE,
         noUpper + none + farAway.substr(0, 254) + "\n"},
    };
    for (const auto& row : kCases) {
        SCOPED_TRACE(row.name);
        setVariable("DNZ_XLAT_PATH", row.variable);
        writeFile(row.file, kLine);
        startTrace();
        EXPECT_EQ(xxxInitialize(), row.code);
        EXPECT_EQ(block_.ccsidTable != nullptr, row.code == kServiceOk);
        EXPECT_EQ(block_.systemCodePage, 819);
        closeTrace();
        const std::string texts = traceTexts();
        const std::string kBefore = "Code page is 819\n";
        EXPECT_EQ(texts.substr(texts.find(kBefore) + kBefore.size()), row.trace);
        std::filesystem::remove(fileName("TRC"));
        std::filesystem::remove(row.file);
        xxxDeleteNode(&block_.ccsidTable);
    }
}

TEST_F(CCSIDTableTest, SkippedLinesAreTraced) {
    writeFile("ccsid.tbl", "# comment\n1 2 3\n2 0 70000 1 1 1\n3 0 1 1 1 1\n");
    startTrace();
    EXPECT_EQ(xxxInitialize(), kServiceOk);
    closeTrace();
    const std::string texts = traceTexts();
    EXPECT_NE(texts.find("Line 2 of the CCSID table skipped: fewer than six"), std::string::npos);
    EXPECT_NE(texts.find("Line 3 of the CCSID table skipped: a page number"), std::string::npos);
    EXPECT_EQ(shape(block_.ccsidTable), "(3)");
}

TEST_F(CCSIDTableTest, QueryGivesTheEncodingFirst) {
    writeFile("ccsid.tbl", "9 0 850 3 2 1\n");
    EXPECT_EQ(xxxInitialize(), kServiceOk);
    CCSIDType type{-1, -1};
    EXPECT_EQ(xcsQueryCCSIDType(8, &type), xecX_S_CCSID_NOT_FOUND);
    EXPECT_EQ(type.encodingClass, -1);
    EXPECT_EQ(xcsQueryCCSIDType(9, &type), kServiceOk);
    EXPECT_EQ(type.encodingClass, 2);
    EXPECT_EQ(type.widthClass, 3);
}

}  // namespace
