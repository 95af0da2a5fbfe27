#include "URLDecoder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "CTextHandle.h"

TEST(URLDecoder, DecodesFormText) {
    struct {
        const char* encoded;
        const char* plain;
    } const cases[] = {{"", ""},         {"a+b%20c", "a b c"},   {"a%2Bb%2bc", "a+b+c"},
                       {"%2541", "%41"}, {"%e9%E9", "\xe9\xe9"}, {"100%25", "100%"},
                       {"%", "%"},       {"%4", "%4"},           {"a%zz", "a%zz"},
                       {"%4g1", "%4g1"}, {"%%41", "%A"},         {"%+41", "% 41"},
                       {"%4%41", "%4A"}, {"a%00b%41", "a\0bA"}};
    URLDecoder decoder;
    for (const auto& row : cases) {
        std::string text(row.encoded);
        std::string out(text.size() + 1, '?');
        EXPECT_STREQ(decoder.decode(text.c_str(), out.data()), row.plain) << row.encoded;
        EXPECT_STREQ(decoder.decodeInPlace(text.data()), row.plain) << row.encoded;
    }
}

TEST(URLDecoder, ReadsHexadecimalDigits) {
    URLDecoder decoder;
    EXPECT_EQ(decoder.HexCharToInt('g'), 0);
    NZBYTE bytes[24] = {};
    const char* const digits = "00fF10A90102030400fF10A90102030400fF10A901020304";
    EXPECT_EQ(decoder.hexStringToPNZBYTE24(digits, &bytes), &bytes);
    EXPECT_EQ(std::memcmp(bytes, "\x00\xff\x10\xa9\x01\x02\x03\x04\x00\xff", 10), 0);
    EXPECT_EQ(bytes[23], 4);
}

TEST(URLDecoder, EncodesAllButLettersAndDigits) {
    const char* const cases[][2] = {
        {"", ""},     {"a b&c", "a+b%26c"},     {"a-b_c.d", "a%2Db%5Fc%2Ed"},
        {szOK, szOK}, {"+%&=", "%2B%25%26%3D"}, {"\xe9\x01\n", "%E9%01%0A"}};
    for (const auto& [plain, expected] : cases) {
        const CTextHandle encoded(url_encode(plain));
        EXPECT_STREQ(encoded.get(), expected);
        EXPECT_STREQ(URLDecoder().decodeInPlace(encoded.get()), plain);
    }
}
