#include "MessageInserts.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "ReturnCodes.h"

namespace {

xcsINSERTS someInserts() {
    xcsINSERTS inserts;
    inserts.number1 = -1;
    inserts.number2 = INT32_MIN;
    inserts.text1 = "50% %4";
    inserts.text3 = "third";
    return inserts;
}

struct Expansion {
    const char* messageTemplate;
    const char* text;
};

}  // namespace

TEST(ConvertInserts, ReplacesMarkersAndNothingElse) {
    const Expansion cases[] = {
        {"", ""},
        {"plain", "plain"},
        {"%1|%2|%6", "-1|-2147483648|1073745954"},
        {"%7|%8", "FFFFFFFF|80000000"},
        {"<%3><%4><%5>", "<50% %4><><third>"},
        {"%3%3", "50% %450% %4"},
        {"%", "%"},
        {"100%", "100%"},
        {"%%3", "%%3"},
        {"%%%5", "%%third"},
        {"%9 %0 %x %\n", "%9 %0 %x %\n"},
    };
    for (const auto& row : cases) {
        char* text = nullptr;
        std::uint32_t length = 0;
        ASSERT_EQ(
            xnzConvertInserts(0x40001022, row.messageTemplate, someInserts(), 850, &text, &length),
            0);
        EXPECT_STREQ(text, row.text) << row.messageTemplate;
        EXPECT_EQ(length, std::string(row.text).size());
        std::free(text);
    }
}

TEST(ConvertInserts, HandsOutAllValuesInOneBlock) {
    char** table = nullptr;
    std::int32_t count = 0;
    ASSERT_EQ(xcsConvertInserts(0x40001022, someInserts(), 850, &table, &count), 0);
    const char* const expected[] = {"-1",    "-2147483648", "50% %4",   "",
                                    "third", "1073745954",  "FFFFFFFF", "80000000"};
    ASSERT_EQ(count, 8);
    const char* place = reinterpret_cast<const char*>(table + 8);
    for (int i = 0; i < 8; ++i) {
        EXPECT_STREQ(table[i], expected[i]);
        EXPECT_EQ(table[i], place);
        place += std::string(expected[i]).size() + 1;
    }
    std::free(table);
}

TEST(AddInserts, ExpandsIntoTheRoomGiven) {
    constexpr std::int32_t kCode = 77;
    struct {
        const char* messageTemplate;
        std::uint32_t size;
        const char* text;
        std::int32_t code;
    } const cases[] = {
        {"%1 %5", 20, "-1 third", kCode},
        {"%3%4.", 20, "50% %4.", kCode},
        {"a%6b", 20, "aBad insert!\nb", kCode},
        {"%%1", 20, "Bad insert!\n1", kCode},
        {"abc", 5, "abc", kCode},
        {"abc", 4, "abc", xecE_W_TEXT_TRUNCATED},
        {"abc", 3, "ab", xecE_W_TEXT_TRUNCATED},
        {"%5%5", 8, "thirdth", xecE_W_TEXT_TRUNCATED},
        {"abc", 1, "", xecE_W_TEXT_TRUNCATED},
    };
    for (const auto& row : cases) {
        char buffer[21] = "????????????????????";
        EXPECT_EQ(AddInserts(row.messageTemplate, buffer, row.size, someInserts(), kCode),
                  row.code);
        EXPECT_STREQ(buffer, row.text) << row.messageTemplate;
        EXPECT_EQ(buffer[row.size], row.size < 20 ? '?' : '\0');
    }
    EXPECT_EQ(AddInserts("abc", nullptr, 0, someInserts(), kCode), xecE_W_TEXT_TRUNCATED);
}
