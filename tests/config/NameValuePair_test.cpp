#include "NameValuePair.h"

#include <gtest/gtest.h>

#include <string>

#include "TraceRecords.h"

namespace {

using namespace std::string_literals;
using Records = std::vector<std::string>;

const std::string kTwoTexts = "10\0#text"s;

int sign(int number) {
    return (number > 0) - (number < 0);
}

std::string wholeValue(const NameValuePair& pair) {
    return {pair.get_oValue(), pair.get_oValueLength()};
}

}  // namespace

TEST(NameValuePair, KeepsCopiesWithLengthsThatCountTheTerminator) {
    const NameValuePair empty;
    EXPECT_EQ(empty.getName(), nullptr);
    EXPECT_EQ(empty.get_oNameLength(), 0U);
    EXPECT_EQ(empty.get_oValueLength(), 0U);

    const NameValuePair texts("abc", nullptr);
    EXPECT_STREQ(texts.getName(), "abc");
    EXPECT_EQ(texts.get_oNameLength(), 4U);
    EXPECT_EQ(texts.getValue(), nullptr);
    EXPECT_EQ(texts.get_oValueLength(), 0U);
    EXPECT_EQ(texts.getDesc(), nullptr);

    NameValuePair cut("abc", 3, "xyz", 2);
    char* array = nullptr;
    unsigned long length = 0;
    cut.getValue(&array, &length);
    EXPECT_STREQ(array, "xy");
    EXPECT_EQ(length, 3U);
    cut.getName(&array, &length);
    EXPECT_EQ(array, cut.get_oName());
    EXPECT_EQ(length, 4U);

    const NameValuePair noValue("abc", 3, nullptr, 0);
    EXPECT_EQ(noValue.getValue(), nullptr);
    EXPECT_EQ(noValue.get_oValueLength(), 1U);
}

TEST(NameValuePair, CopiesBytesBehindTheFirstZeroByteToo) {
    const NameValuePair source("n", 1, kTwoTexts.data(), kTwoTexts.size());
    const NameValuePair copy(source);
    NameValuePair assigned("other", "longer than the source's value");
    assigned = source;
    assigned = *&assigned;
    for (const NameValuePair* pair : {&copy, static_cast<const NameValuePair*>(&assigned)}) {
        EXPECT_EQ(wholeValue(*pair), kTwoTexts + '\0');
        EXPECT_NE(pair->get_oValue(), source.get_oValue());
        EXPECT_EQ(*pair == source, 1);
        EXPECT_EQ(*pair != source, 0);
    }
    EXPECT_EQ(NameValuePair("n", "10") == source, 0);
    EXPECT_EQ(NameValuePair("n", "") == NameValuePair("n", 1, nullptr, 0), 0);
    EXPECT_EQ(NameValuePair() == NameValuePair(nullptr, nullptr), 1);
    EXPECT_EQ(NameValuePair("n", "a") != NameValuePair("n", "b"), 1);
}

TEST(NameValuePair, OrdersByTheBytesOfTheName) {
    struct {
        const char* left;
        const char* right;
        int order;
    } const cases[] = {
        {"abc", "abc", 0}, {"ab", "abc", -1},     {"abc", "ab", 1},     {"Zeta", "alpha", -1},
        {"#x", "0", -1},   {"z", "\xe9", -1},     {"", "a", -1},        {nullptr, "", -1},
        {"", nullptr, 1},  {nullptr, nullptr, 0}, {"b", "abcdefgh", 1},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(testing::Message() << (row.left ? row.left : "null") << " and "
                                        << (row.right ? row.right : "null"));
        const NameValuePair left(row.left, "1");
        const NameValuePair right(row.right, "2");
        EXPECT_EQ(sign(left.compare(&right)), row.order);
        EXPECT_EQ(sign(left.compare(right)), row.order);
        if (row.left != nullptr && row.right != nullptr) {
            EXPECT_EQ(sign(left.compare(row.right)), row.order);
        }
    }
    // Whole arrays count, and nothing behind the shorter one is read.
    const NameValuePair longer("a\0b", 3, nullptr, 0);
    EXPECT_GT(longer.compare(&static_cast<const NameValuePair&>(NameValuePair("a", ""))), 0);
    EXPECT_EQ(longer.compare("a"), 0);
}

TEST(NameValuePair, TracesUnderItsOldNames) {
    NameValuePair pair("n", "v");
    takeTraceRecords();
    pair.getName();
    pair.getValue();
    pair.getDesc();
    pair.compare(pair);
    pair.compare(&pair);
    pair.compare("n");
    char* array = nullptr;
    unsigned long length = 0;
    pair.getName(&array, &length);
    pair.getValue(&array, &length);
    EXPECT_EQ(takeTraceRecords(),
              (Records{"{ConfigPart::getName", "}ConfigPart::getName 0", "{ConfigPart::getValue",
                       "}ConfigPart::getValue 0", "{ConfigPart::getDesc", "}ConfigPart::getDesc 0",
                       "{NameValuePair::compare(&NameValuePair)",
                       "}NameValuePair::compare(&NameValuePair) 0",
                       "{NameValuePair::compare(char*)", "}NameValuePair::compare(char*) 0",
                       "{NameValuePair::getName", "}NameValuePair::getName 0",
                       "{NameValuePair::getValue", "}NameValuePair::getValue 0"}));
}

TEST(NameValuePair, StoresFieldsAsTheyAre) {
    NameValuePair pair("n", "v");
    const std::unique_ptr<char[]> former(pair.get_oValue());
    pair.set_oValue(new char[3]{'a', 'b', '\0'});
    pair.set_oValueLength(3);
    EXPECT_STREQ(former.get(), "v");
    EXPECT_EQ(wholeValue(pair), "ab\0"s);
}

TEST(NameValuePair, DumpsEveryByte) {
    testing::internal::CaptureStdout();
    NameValuePair("n", 1, kTwoTexts.data(), kTwoTexts.size()).dump();
    NameValuePair(nullptr, 5, nullptr, 5).dump();
    EXPECT_EQ(printed(), "Name<n\0>\nValue<10\0#text\0>\nName<>\nValue<>\n"s);
}
