#include "URLDecoder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "StreamHandle.h"
#include "TraceRecords.h"

TEST(URLDecoder, DecodesFormText) {
    struct {
        const char* encoded;
        const char* plain;
    } const cases[] = {
        {"", ""},         {"a+b%20c", "a b c"},   {"100%25", "100%"},   {"a%2Bb%2bc", "a+b+c"},
        {"%2541", "%41"}, {"%e9%E9", "\xe9\xe9"}, {"%41%4a%6F", "AJo"}, {"++", "  "},
        {"%", "%"},       {"%4", "%4"},           {"a%zz", "a%zz"},     {"%4g1", "%4g1"},
        {"%%41", "%A"},   {"%+41", "% 41"},       {"%4%41", "%4A"},     {"a%00b%41", "a"},
    };
    URLDecoder decoder;
    for (const auto& row : cases) {
        SCOPED_TRACE(row.encoded);
        std::string inPlace(row.encoded);
        EXPECT_STREQ(decoder.decodeInPlace(inPlace.data()), row.plain);
        std::string out(inPlace.size() + 1, '?');
        EXPECT_STREQ(decoder.decode(row.encoded, out.data()), row.plain);
        EXPECT_EQ(out.data(), decoder.decode(row.encoded, out.data()));
    }
    // What follows an escaped zero byte is decoded as well.
    std::string text("a%00b%41");
    decoder.unescape(text.data());
    EXPECT_EQ(text.substr(0, 5), std::string("a\0bA\0", 5));
}

TEST(URLDecoder, ReadsHexadecimalDigits) {
    URLDecoder decoder;
    const std::string digits = "0123456789abcdef";
    for (std::size_t value = 0; value < digits.size(); ++value) {
        EXPECT_EQ(decoder.HexCharToInt(digits[value]), value);
    }
    EXPECT_EQ(decoder.HexCharToInt('F'), 15);
    EXPECT_EQ(decoder.HexCharToInt('g'), 0);
    EXPECT_EQ(decoder.hexStringToChar("fF"), 255);

    NZBYTE bytes[24] = {};
    const std::string half =
        "00fF10A9"
        "01020304";
    EXPECT_EQ(decoder.hexStringToPNZBYTE24((half + half + half).c_str(), &bytes), &bytes);
    EXPECT_TRUE(std::equal(bytes, bytes + 8, "\x00\xff\x10\xa9\x01\x02\x03\x04",
                           [](int a, char b) { return a == static_cast<unsigned char>(b); }));
    EXPECT_TRUE(std::equal(bytes, bytes + 16, bytes + 8));
}

TEST(URLDecoder, EncodesAllButLettersAndDigits) {
    struct {
        const char* plain;
        const char* encoded;
    } const cases[] = {{"", ""},
                       {"a b&c", "a+b%26c"},
                       {"a-b_c.d", "a%2Db%5Fc%2Ed"},
                       {"+%&=", "%2B%25%26%3D"},
                       {"\xe9\x01\n", "%E9%01%0A"},
                       {szOK, szOK}};
    URLDecoder decoder;
    for (const auto& row : cases) {
        const CTextHandle encoded(url_encode(row.plain));
        EXPECT_STREQ(encoded.get(), row.encoded);
        EXPECT_STREQ(decoder.decodeInPlace(encoded.get()), row.plain);
    }
    EXPECT_EQ(url_encode(nullptr), nullptr);
}

TEST(URLDecoder, TracesEachStepInOrder) {
    takeTraceRecords();
    {
        const URLDecoder decoder;
        char text[] = "%41";
        decoder.decodeInPlace(text);
        EXPECT_EQ(decoder == decoder, 1);
    }
    std::string order;
    for (const std::string& record : takeTraceRecords()) {
        order += record.substr(0, 1) + record.substr(record.find("::") + 2) + "\n";
    }
    EXPECT_EQ(order,
              "{URLDecoder\n}URLDecoder 0\n{decodeInPlace\n}decodeInPlace 0\n{decode\n"
              "{plusToSpace(char*,char*)\n{plusToSpace\n}plusToSpace 0\n"
              "}plusToSpace(char*,char*) 0\n"
              "{unescape\n{unescape(char*,char*)\n{hexStringToChar\n"
              "{hexCharToInt\n}hexCharToInt 0\n{hexCharToInt\n}hexCharToInt 0\n"
              "}hexStringToInt 0\n}unescape(char*,char*) 0\n}unescape 0\n}decode 0\n"
              "{operator==\n}operator== 0\n{~URLDecoder\n}~URLDecoder 0\n");
}
