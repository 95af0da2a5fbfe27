#include "NameValuePair.h"

#include <gtest/gtest.h>

#include <string>

using namespace std::string_literals;

static const std::string kTwoTexts = "10\0#text"s;

static int sign(int number) {
    return (number > 0) - (number < 0);
}

TEST(NameValuePair, KeepsLengthsThatCountTheTerminator) {
    const NameValuePair texts("abc", nullptr);
    EXPECT_EQ(texts.get_oNameLength(), 4U);
    EXPECT_EQ(texts.get_oValueLength(), 0U);
    EXPECT_EQ(NameValuePair("abc", 3, nullptr, 0).get_oValueLength(), 1U);
    NameValuePair cut("abc", 3, "xyz", 2);
    char* value = nullptr;
    unsigned long length = 0;
    cut.getValue(&value, &length);
    EXPECT_STREQ(value, "xy");
    EXPECT_EQ(length, 3U);
}

TEST(NameValuePair, OrdersByTheBytesOfTheName) {
    struct {
        const char* left;
        const char* right;
        int order;
    } const cases[] = {{"abc", "abc", 0},    {"ab", "abc", -1},    {"Zeta", "alpha", -1},
                       {"b", "abcdefgh", 1}, {"#x", "0", -1},      {"z", "\xe9", -1},
                       {nullptr, "", -1},    {nullptr, nullptr, 0}};
    for (const auto& row : cases) {
        const NameValuePair left(row.left, "1");
        const NameValuePair right(row.right, "2");
        SCOPED_TRACE(row.left != nullptr ? row.left : "null");
        EXPECT_EQ(sign(left.compare(&right)), row.order);
        EXPECT_EQ(sign(right.compare(&left)), -row.order);
        EXPECT_EQ(sign(left.compare(right)), row.order);
        if (row.left != nullptr) {
            EXPECT_EQ(sign(left.compare(row.right)), row.order);
        }
    }
}

TEST(NameValuePair, DumpsEveryByte) {
    testing::internal::CaptureStdout();
    NameValuePair("n", 1, kTwoTexts.data(), kTwoTexts.size()).dump();
    NameValuePair(nullptr, 5, nullptr, 5).dump();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Name<n\0>\nValue<10\0#text\0>\nName<>\nValue<>\n"s);
}
