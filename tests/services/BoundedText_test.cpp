#include "BoundedText.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "Numbers.h"

TEST(BoundedText, CutsAtItsSizeAndRemembers) {
    struct {
        std::size_t size;
        const char* text;
        const char* kept;
        bool truncated;
    } const cases[] = {
        {5, "abc", "abc", false}, {4, "abc", "abc", false}, {3, "abc", "ab", true},
        {1, "abc", "", true},     {1, "", "", false},
    };
    for (const auto& row : cases) {
        for (const bool formatted : {false, true}) {
            SCOPED_TRACE(testing::Message() << row.text << " into " << row.size << formatted);
            std::string buffer(8, '?');
            BoundedText text(buffer.data(), row.size);
            formatted ? text.appendf("%s", row.text) : text.append(row.text);
            EXPECT_STREQ(buffer.c_str(), row.kept);
            EXPECT_EQ(text.truncated(), row.truncated);
            EXPECT_EQ(buffer.substr(row.size), std::string(8 - row.size, '?'));
        }
    }
}

TEST(BoundedText, HoldsNothingInNoSpace) {
    char untouched = '?';
    BoundedText text(&untouched, 0);
    text.append("a").appendf("%d", 1);
    EXPECT_TRUE(text.truncated());
    EXPECT_EQ(text.length(), 0U);
    EXPECT_EQ(untouched, '?');
}

TEST(BoundedText, GoesOnBehindAShortenedText) {
    char buffer[8];
    BoundedText text(buffer);
    text.append("abcdef").shorten(2);
    text.append("x").shorten(9);
    EXPECT_STREQ(buffer, "abx");
}

TEST(Numbers, ReadsLikeTheLibraryButNeverOverflows) {
    struct {
        const char* text;
        int number;
    } const cases[] = {{"", 0},
                       {"x1", 0},
                       {" \t-12x", -12},
                       {"+7", 7},
                       {"007 8", 7},
                       {"- 1", 0},
                       {"0x10", 0},
                       {"4294967297", INT_MAX},
                       {"99999999999999999999", INT_MAX},
                       {"-99999999999999999999", INT_MIN}};
    for (const auto& row : cases) {
        EXPECT_EQ(leadingNumber(row.text), row.number) << row.text;
    }
}
