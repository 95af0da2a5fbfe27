#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "ConversionTest.h"
#include "ConverterCache.h"
#include "ReturnCodes.h"

namespace {

// CCSIDs 1n are single-byte, 2n mixed; even ones are PC, odd ones host.
constexpr char kTable[] =
    "10 0 10 1 2 1\n"
    "11 0 11 1 1 0\n"
    "12 0 10 1 3 1\n"
    "20 20 10 3 2 1\n"
    "21 21 11 3 1 0\n"
    "22 20 11 3 3 2\n"
    "23 21 10 3 1 0\n"
    "28 20 12 3 9 1\n"
    "18 0 12 1 9 1\n";

class TextConversionTest : public ConversionTest {
protected:
    TextConversionTest() {
        writeFile("ccsid.tbl", kTable);
        EXPECT_EQ(xxxInitialize(), kServiceOk);
        std::string single;
        for (int byte = 0; byte < 256; ++byte) {
            single += static_cast<char>(byte ^ 0x80);
        }
        std::string pairs(1024, '\x77');
        pairs.replace(0, 256, 256, '\x01');
        for (const char* name : {"000a000b.tbl", "000b000a.tbl", "000c000a.tbl"}) {
            writeFile(name, single);
        }
        writeFile("00140015.tbl", pairs);
        writeFile("00150014.tbl", pairs);
    }

    // Code, "target" in hexadecimal up to the last byte that was touched, and the length.
    static std::string convert(std::int32_t from, std::int32_t to, const char* source,
                               std::int32_t room) {
        const std::string text = bytes(source);
        std::string target(64, '\xEE');
        std::int32_t length = room;
        const std::int32_t code = xcsConvertString(
            from, to, text.data(), static_cast<std::int32_t>(text.size()), target.data(), &length);
        target.erase(target.find_last_not_of('\xEE') + 1);
        std::string result = std::to_string(code) + ":";
        for (const char byte : target) {
            char digits[4];
            std::snprintf(digits, sizeof digits, " %02X", static_cast<unsigned char>(byte));
            result += digits;
        }
        return result + " /" + std::to_string(length);
    }
};

TEST_F(TextConversionTest, CodesLengthsAndBytes) {
    const struct {
        const char* name;
        std::int32_t from;
        std::int32_t to;
        const char* source;
        std::int32_t room;
        const char* result;
    } kCases[] = {
        {"equal, unknown", 77, 77, "41 42", 9, "0: 41 42 /2"},
        {"equal, short target", 77, 77, "41 42 43", 2, "2120: 41 42 /2"},
        {"equal, no target", 77, 77, "41", 0, "2120: /0"},
        {"same pages", 10, 12, "41 42", 2, "0: 41 42 /2"},
        {"mixed and single, same page", 20, 12, "81 42", 2, "0: 81 42 /2"},
        {"single and mixed, same page", 10, 23, "81 0E", 2, "0: 81 0E /2"},
        {"mixed to single", 20, 11, "81 42", 2, "0: 01 C2 /2"},
        {"single to mixed", 11, 20, "0E 15", 2, "0: 8E A5 /2"},
        {"single-byte", 10, 11, "15 42", 5, "0: 95 C2 /2"},
        {"host to PC", 21, 20, "41 0E 81 42 0F 15", 6, "0: C1 77 77 A5 /4"},
        {"PC to host", 20, 21, "41 81 42 15", 6, "0: C1 0E 77 77 0F 95 /6"},
        {"lead bytes of the first user", 22, 21, "81 42", 4, "0: 0E 77 77 0F /4"},
        {"PC to PC, same double page", 22, 20, "41 81 8F 42 41", 6, "0: C1 01 8F 42 C1 /5"},
        {"host to PC, same single page", 21, 22, "41 0E 81 42 0F", 5, "0: 41 77 77 /3"},
        {"shift bytes wanted", 20, 21, "81 42", 3, "-13: /3"},
        {"PC breaks off", 20, 21, "41 81", 9, "-12: C1 /9"},
        {"host breaks off", 21, 20, "0E 81", 9, "-15: /9"},
        {"one too short", 21, 20, "41 0E 81 42 0F", 4, "2120: /4"},
        {"unknown source", 77, 10, "41", 9, "2111: /9"},
        {"unknown target", 10, 77, "41", 9, "2115: /9"},
        {"both unknown", 77, 78, "", 9, "2111: /9"},
        {"empty", 10, 11, "", 9, "0: /0"},
        {"missing table", 10, 18, "41", 9, "2119: /9"},
        {"odd encoding, single", 18, 20, "15", 9, "0: 95 /1"},
        {"odd encoding, source", 28, 20, "41", 9, "2111: /9"},
        {"odd encoding, target", 20, 28, "41", 9, "2115: /9"},
        {"negative room", 77, 78, "41", -1, "2144: /-1"},
    };
    for (const auto& row : kCases) {
        EXPECT_EQ(convert(row.from, row.to, row.source, row.room), row.result) << row.name;
    }
    std::int32_t length = 9;
    EXPECT_EQ(xcsConvertString(77, 77, nullptr, -1, nullptr, &length), NZRC_SOURCE_LENGTH_ERROR);
    EXPECT_EQ(fdcFile, nullptr);
}

TEST_F(TextConversionTest, TextsMayShareTheirStorage) {
    char text[] = "abcdef";
    std::int32_t length = 6;
    EXPECT_EQ(xcsConvertString(77, 77, text, 6, text, &length), kServiceOk);
    EXPECT_EQ(xcsConvertString(77, 77, text, 5, text + 1, &(length = 5)), kServiceOk);
    EXPECT_STREQ(text, "aabcde");
    EXPECT_EQ(xcsConvertString(10, 11, text, 6, text, &(length = 6)), kServiceOk);
    EXPECT_STREQ(text, "\xE1\xE1\xE2\xE3\xE4\xE5");
}

// In a process that may only read, write and end itself.
TEST_F(TextConversionTest, ASecondConversionNeedsNoSystemCall) {
    EXPECT_EQ(convert(20, 21, "81 42", 4), "0: 0E 77 77 0F /4");
    constexpr int kNoSandbox = 2;
    const pid_t child = fork();
    if (child == 0) {
        char target[4];
        std::int32_t length = sizeof target;
        if (prctl(PR_SET_SECCOMP, SECCOMP_MODE_STRICT) != 0) {
            _exit(kNoSandbox);
        }
        syscall(SYS_exit, xcsConvertString(20, 21, "\x81\x42", 2, target, &length));
    }
    int status = -1;
    waitpid(child, &status, 0);
    if (WIFEXITED(status) && WEXITSTATUS(status) == kNoSandbox) {
        GTEST_SKIP() << "no seccomp here";
    }
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST_F(TextConversionTest, NothingRunsWithoutAControlBlock) {
    xnzCSCtrl = nullptr;
    EXPECT_EQ(convert(77, 77, "41", 1), std::to_string(xecX_E_SERVICE_UNAVAILABLE) + ": /1");
    CCSIDType type{};
    EXPECT_EQ(xcsQueryCCSIDType(10, &type), xecX_E_SERVICE_UNAVAILABLE);
    EXPECT_EQ(xxxInitialize(), xecX_E_SERVICE_UNAVAILABLE);
    xnzCSCtrl = &block_;
}

}  // namespace
