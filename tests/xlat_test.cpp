#include <cerrno>
#include <numeric>

#include "services/base/ReturnCodes.h"
#include "support/Services.h"
#include "xlat/CCSIDTable.h"
#include "xlat/ConversionEngines.h"
#include "xlat/ConverterCache.h"
#include "xlat/TextConversion.h"

using namespace dnz;

namespace {

// The bytes that the rest of the input writes in hexadecimal.
std::string bytesOf(std::istream& in) {
    std::string bytes;
    for (int byte = 0; in >> std::hex >> byte;) {
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

std::string hex(const std::string& bytes) {
    std::string text;
    for (const char byte : bytes) {
        char digits[4];
        std::snprintf(digits, sizeof digits, " %02X", static_cast<unsigned char>(byte));
        text += digits;
    }
    return text;
}

// A single byte changes its top bit.
std::string singleTable() {
    std::string table;
    for (unsigned byte = 0; byte < 256; ++byte) {
        table += static_cast<char>(byte ^ 0x80U);
    }
    return table;
}

// A pair f c becomes D1 c for an even f and D2 c for an odd one; no row is there for f from FC on.
std::string pairTable() {
    std::string table(1536, '\0');
    for (std::size_t byte = 0; byte < 256; ++byte) {
        table[byte] = static_cast<char>(byte < 0xFC ? 1 + byte % 2 : byte);
        for (const std::size_t row : {1U, 2U}) {
            table[512 * row + 2 * byte] = static_cast<char>(0xD0 + row);
            table[512 * row + 2 * byte + 1] = static_cast<char>(byte);
        }
    }
    return table;
}

class Conversion : public Services {
protected:
    ~Conversion() override {
        xnzCSCtrl = &block_;
        xxxTerminate();
    }
};

// Code, bytes up to the last that was touched, and length.
std::string convert(std::istream& in) {
    const auto from = next<std::int32_t>(in);
    const auto to = next<std::int32_t>(in);
    auto length = next<std::int32_t>(in);
    const std::string source = bytesOf(in);
    std::string target(64, '\xEE');
    const std::int32_t code = xcsConvertString(
        from, to, source.data(), static_cast<std::int32_t>(source.size()), target.data(), &length);
    target.erase(target.find_last_not_of('\xEE') + 1);
    return std::to_string(code) + ":" + hex(target) + " /" + std::to_string(length);
}

std::string nameOf(int source, int target) {
    char name[32];
    std::snprintf(name, sizeof name, "%04x%04x.tbl", source, target);
    return name;
}

// CCSIDs from 10 on are single-byte, from 20 on mixed, from 30 on mixed with the class of lead
// bytes as their last digit; 11, 20 and 21 are of the host.
TEST_F(Conversion, GivesCodesBytesAndLengths) {
    std::string table =
        "10 0 10 1 2 1\n11 0 11 1 1 0\n12 0 10 1 3 1\n18 0 12 1 9 1\n20 20 11 3 1 0\n"
        "21 21 10 3 1 0\n22 22 11 3 3 1\n28 31 12 3 9 1\n39 31 11 3 3 2\n";
    for (int page = 30; page < 38; ++page) {
        const std::string number = std::to_string(page);
        table.append(number + " " + number + " 10 3 2 " + number.back() + "\n");
        writeFile(nameOf(page, 20), pairTable());
    }
    writeFile("ccsid.tbl", table);
    for (const auto& [from, to] : {std::pair{10, 11}, {11, 10}, {12, 10}}) {
        writeFile(nameOf(from, to), singleTable());
    }
    for (const auto& [from, to] : {std::pair{20, 31}, {20, 21}, {21, 31}, {31, 22}}) {
        writeFile(nameOf(from, to), pairTable());
    }
    ASSERT_EQ(xxxInitialize(), 0);
    check(
        R"(77 77 9 41 42 => 0: 41 42 /2 | 77 77 2 41 42 43 => 2120: 41 42 /2 | 77 77 0 41 => 2120: /0
        10 12 2 41 42 => 0: 41 42 /2 | 31 12 2 81 42 => 0: 81 42 /2 | 10 21 2 81 0E => 0: 81 0E /2
        31 11 2 81 42 => 0: 01 C2 /2 | 11 31 2 0E 15 => 0: 8E A5 /2 | 10 11 5 15 42 => 0: 95 C2 /2
        10 11 5 15 25 => 0: 95 A5 /2 | 11 10 5 15 25 => 0: A5 A5 /2 | 10 18 9 41 => 2119: /9
        18 31 9 15 => 0: 95 /1 | 28 31 9 41 => 2111: /9 | 31 28 9 41 => 2115: /9 | 10 11 9 => 0: /0
        77 10 9 41 => 2111: /9 | 10 77 9 41 => 2115: /9 | 77 78 9 => 2111: /9 | 77 78 -1 => 2144: /-1
        20 31 8 41 0E 81 42 82 43 0F 15 => 0: C1 D2 42 D1 43 A5 /6 | 20 31 7 0E 0F 41 => 0: 8E 8F C1 /3
        20 21 8 41 0E 81 42 82 43 0F 15 => 0: C1 0E D2 42 D1 43 0F 95 /8 | 20 21 2 0E 0F => 0: 8E 8F /2
        20 31 3 0E 41 0F => 0: 8F /1 | 20 21 3 0E 41 0F => 0: 0E 0F 8F /3 | 20 31 2 0F 41 => 0: 8F C1 /2
        20 31 2 41 0E => -15: C1 /2 | 20 21 2 0E 81 => -15: 0E /2 | 20 31 4 0E 81 42 83 => -15: D2 42 /4
        20 31 7 0E FC 41 FF 42 FB 43 0F => 2120: /7 | 21 31 5 41 0E 81 42 0F => 0: 41 D2 42 /3
        20 31 8 0E FC 41 FF 42 FB 43 0F => 0: 00 00 00 00 D2 43 /6
        31 20 6 41 81 42 43 => 0: C1 0E D2 42 0F C3 /6 | 31 22 9 41 81 42 43 => 0: C1 D2 42 C3 /4
        31 20 5 41 81 42 => 0: C1 0E D2 42 0F /5 | 31 20 7 81 41 E0 42 41 => 0: 0E D2 41 D1 42 0F C1 /7
        31 20 6 81 0E 82 00 => 0: 0E D2 0E D1 00 0F /6 | 31 20 9 41 81 => -12: C1 /9
        31 20 3 81 41 => -13: /3 | 31 20 4 81 41 => 0: 0E D2 41 0F /4 | 31 22 2 81 41 => -13: /2
        31 22 3 81 41 => 0: D2 41 /2 | 31 22 4 81 42 83 44 => 0: D2 42 03 C4 /4
        31 22 4 81 42 E1 44 => -13: D2 42 /4 | 31 22 9 81 42 82 => 0: D2 42 02 /3
        31 22 9 81 42 E1 => -12: D2 42 /9 | 31 21 9 81 42 0E => 2119: /9
        39 31 6 41 81 8F 42 41 => 0: C1 01 8F 42 C1 /5 | 39 20 4 81 42 => 0: 0E D2 42 0F /4
        30 20 9 81 41 9E 41 => 0: 0E D2 41 D1 41 0F /6 | 31 20 9 80 9F DF FF => 0: 00 1F 5F 7F /4
        32 20 9 8E 8F 41 FE 41 FF 41 => 0: 0E 0E D2 41 00 00 0F 7F C1 /9
        33 20 9 80 81 41 FC 41 FD 41 => 0: 00 0E D2 41 00 00 0F 7D C1 /9
        34 20 9 E0 41 FE 41 => 0: 0E D1 41 00 00 0F /6 | 37 20 9 FE 41 9F => 0: 0E 00 00 0F 1F /5
        35 20 9 80 81 41 FE 41 FF 41 => 0: 00 0E D2 41 00 00 0F 7F C1 /9
        36 20 9 8B 8C 41 FE 41 FF 41 => 0: 0B 0E D1 41 00 00 0F 7F C1 /9)",
        convert);
    std::string bytes = singleTable();
    std::string ascending = bytes;
    std::iota(ascending.begin(), ascending.end(), '\0');
    std::int32_t length = 256;
    EXPECT_EQ(xcsConvertString(10, 11, bytes.data(), 256, bytes.data(), &length), 0);
    EXPECT_EQ(bytes, ascending);
    char text[] = "abcdef";
    length = 5;
    EXPECT_EQ(xcsConvertString(77, 77, text, 5, text + 1, &length), 0);
    EXPECT_EQ(xcsConvertString(10, 11, text, 2, text, &(length = 2)), 0);
    EXPECT_EQ(hex(text), " E1 E1 62 63 64 65");
    EXPECT_EQ(xcsConvertString(77, 77, nullptr, -1, nullptr, &length), 2143);
    const auto classes = [](std::istream& in) {
        CCSIDType type{};
        const std::int32_t code = xcsQueryCCSIDType(next<std::int32_t>(in), &type);
        return std::to_string(code) +
               hex({static_cast<char>(type.encodingClass), static_cast<char>(type.widthClass)});
    };
    check("31 => 0 02 03 | 11 => 0 01 01 | 9 => 1073766663 00 00", classes);
    const std::string records = traced([&] {
        check("10 11 5 15 => 0: 95 /1", convert);
        check("31 => 0 02 03", classes);
        EXPECT_EQ(xxxTerminate(), 0);
        EXPECT_EQ(block_.ccsidTable, nullptr);
    });
    EXPECT_EQ(callsOf(records),
              "xcsConvertString xxxOpenConv xxxCodeConv xcsQueryCCSIDType xxxTerminate ");
    xnzCSCtrl = nullptr;
    check("31 => 545284184 00 00", classes);
    check("77 77 1 41 => 545284184: /1", convert);
    EXPECT_EQ(xxxInitialize(), xecX_E_SERVICE_UNAVAILABLE);
}

TEST(Engines, ConvertInSteps) {
    const std::string tables = pairTable() + singleTable();
    const auto* pairs = reinterpret_cast<const unsigned char*>(tables.data());
    const ConvContext context{0, pairs, pairs + 1536, 1};
    const unsigned char text[] = {0x15, 0x81, 0x44};
    unsigned char target[3] = {};
    const unsigned char* from = text;
    unsigned char* to = target;
    std::int32_t places[] = {10, 20};
    XltSBCS(&from, &to, &places[0], &places[1], &context, ConvHostToPC);
    XltDBCS(&from, &to, &places[0], &places[1], &context);
    EXPECT_TRUE(from == text + 3 && to == target + 3 && places[0] == 13 && places[1] == 23);
    EXPECT_EQ(hex({target, to}), " A5 D2 44");
}

// The keys of the tree with its shape: (left key right).
std::string shape(const CCSIDNode* node) {
    const auto key = [&] { return std::to_string(node->ccsid); };
    return node == nullptr ? "" : "(" + shape(node->left) + key() + shape(node->right) + ")";
}

TEST_F(Conversion, ReadsTheCCSIDTable) {
    check(
        R"(1234 300 850 3 2 1; => (1234) 300 850 3 2 1 012c 0352 | 1 2 3 4 5 6 => (1) 2 3 4 5 6 0002 0003
        -7x 0x2 +9z 1 q 1; => (-7) 0 9 1 0 1 0000 0009 | 1 2 3 4 5;; => | 1 0 65536 1 1 1;1 -1 0 1 1 1; =>
        99999999999 0 0 1 1 -99999999999; => (2147483647) 0 0 1 1 -2147483648 0000 0000
        #1 2 3 4 5 6;x# 2 3 1 5 6; => (0) 2 3 1 5 6 0002 0003 | 7 0 65535 1 2 1 x; => (7) 0 65535 1 2 1 0000 ffff
        5 1 2 3 4 5;5 6 7 1 2 3; => (5) 6 7 1 2 3 0006 0007
        5 1 2 3 1 0;2 0 1 1 1 1;7 0 1 1 1 1;6 0 1 1 1 1; => ((2)5((6)7)) 1 2 3 1 0 0001 0002
        .1 2 3 4567 8 9 10 11 12 13; => (67) 8 9 10 11 12 0008 0009)",
        [&](std::istringstream& in) {
            const std::string lines = std::regex_replace(in.str(), std::regex(";"), "\n");
            writeFile("ccsid.tbl",
                      std::regex_replace(lines, std::regex("[.]"), std::string(247, ' ')));
            EXPECT_EQ(xxxInitialize(), 0);
            char fields[99] = "";
            if (const CCSIDNode* node = block_.ccsidTable; node != nullptr) {
                std::snprintf(fields, sizeof fields, " %d %d %d %d %d %s %s", node->dbcsPage,
                              node->sbcsPage, node->widthClass, node->encodingClass,
                              node->leadByteClass, node->dbcsPageHex, node->sbcsPageHex);
            }
            return shape(block_.ccsidTable) + fields;
        });
    writeFile("ccsid.tbl", "5 0 1 1 1 1\n \n1 2 3\n3 0 70000 1 1 1\n");
    const std::string records = traced(xxxInitialize);
    EXPECT_EQ(std::regex_replace(records, std::regex("   ! (Line .*)\n|.*\n"), "$1"),
              "Line 3 of the CCSID table skipped: fewer than six columns"
              "Line 4 of the CCSID table skipped: a page number outside 0 to 65535");
    xxxFreeNode(block_.ccsidTable);
    EXPECT_EQ(shape(block_.ccsidTable), "(5)");
}

// Rows of a directory, a table file with its size, the single-byte pages and the double-byte pages.
TEST_F(Conversion, LoadsTables) {
    const std::string longest = directory_.path + std::string(254 - directory_.path.size(), '/');
    check(R"(- x 256 0001 0001 0001 0001 => 999999 0 | - x 256 0000 0000 0002 0002 => 999 0
        - 0001000a.tbl 255 0001 000a 0000 0000 => -1 22 ????0001000a,0,0
        - 0001000a.tbl 300 0001 000a 0002 0002 => 1999 0 ICNV0001000a,256,0
        - 0001000A.TBL 256 0001 000a 0000 0000 => 1000 0 ICNV0001000a,256,0
        - 0001000A.tbl 256 0001 000a 0000 0000 => -1 22 ????0001000a,0,0
        - 0001000a.tbl 512 0001 000a 0003 0004 => -1 22 ICNV0001000a,256,0
        - 0003000b.tbl 512 0000 0000 0003 000b => -1 22 ????0003000b,0,6
        - 0003000b.tbl 513 0000 0000 0003 000b => 1 0 ICNV0003000b,513,6
        - 0003000b.tbl 200000 0005 0005 0003 000b => 999001 0 ICNV0003000b,131072,6
        )" + longest +
              " 00010002.tbl 256 0001 0002 0000 0000 => 1000 0 ICNV00010002,256,0 | " + longest +
              "/ 00010002.tbl 256 0001 0002 0000 0000 => -1 22 ????00010002,0,0",
          [](std::istream& in) {
              const std::string directory = next(in);
              setVariable("DNZ_XLAT_PATH", directory == "-" ? "" : directory.c_str());
              const std::string file = next(in);
              writeFile(file, std::string(next<std::size_t>(in), '\1'));
              const std::string pages[] = {next(in), next(in), next(in), next(in)};
              errno = 0;
              std::ostringstream result;
              result << xxxOpenConv(pages[1].c_str(), pages[3].c_str(), pages[0].c_str(),
                                    pages[2].c_str(), 6);
              result << ' ' << errno << ' ';
              if (const ConvSlot* slot = iconv_list; slot != nullptr) {
                  result << std::string(slot->tag, 4) << slot->key << ',' << slot->tableSize << ','
                         << slot->leadByteClass;
              }
              std::filesystem::remove(file);
              freeConverters();
              return result.str();
          });
    setVariable("DNZ_XLAT_PATH", "");
    writeFile("0000000b.tbl", pairTable());
    const auto open = [](const std::string& single, const std::string& pair) {
        return xxxOpenConv(single.c_str(), pair.c_str(), "0001", "0000", 1);
    };
    const std::string records = traced([&] { open("000a", "0000"), open("0001", "000b"); });
    EXPECT_EQ(std::regex_replace(records, std::regex("T.*\n|   ! (.*\n)"), "$1"),
              "xxxOpenConv: About to try opening (LC) ....\n./0001000a.tbl\n"
              "xxxOpenConv: retrying.........\n"
              "xxxOpenConv: About to try opening (UC) ....\n./0001000A.TBL\n"
              "xxxOpenConv: Open failed.\n"
              "xxxOpenConv: About to try opening (LC)....\n./0000000b.tbl\n"
              "xxxOpenConv: Open was sucessful.\n");
    for (int number = 2; number <= 999; ++number) {  // the slot that was given up is filled first
        writeFile(nameOf(1, number), singleTable());
        const std::int32_t handle = open(nameOf(number, 0).substr(0, 4), "0000");
        ASSERT_EQ(handle, number <= 998 ? number * 1000 : kNoHandle);
        ASSERT_EQ(iconv_list_size, (std::min(number, 998) + 49) / 50 * 50);
    }
    EXPECT_EQ(errno, ENOMEM);
    EXPECT_EQ(open("0002", "000b"), 2001);
}

// The tables of the installation, with the substitute for what has no counterpart.
TEST_F(Conversion, ConvertsByTheTablesOfTheInstallation) {
    setVariable("DNZ_XLAT_PATH", TABLE_DIRECTORY);
    ASSERT_EQ(xxxInitialize(), 0);
    check(R"(850 819 40 41 7E 5B E1 82 98 => 0: 41 7E 5B DF E9 FF /6 | 850 37 9 C9 => 0: 3F /1
        930 932 40 C1 0E 45 62 45 66 4F 58 43 41 0F F1 => 0: 41 93 FA 96 7B 8A BF 81 42 31 /10
        943 930 40 41 93 FA 96 7B 8A BF 81 42 31 => 0: C1 0E 45 62 45 66 4F 58 43 41 0F F1 /12)",
          convert);
}

}  // namespace
