#include "CGIPartSet.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "CGIPart.h"

using namespace std::string_literals;

// Name and value of each field in the order of a walk; "-" stands for no value.
static std::string fieldsOf(const std::string& form) {
    // An exact copy, so that a read behind the text is a read behind the array.
    const std::vector<char> buffer(form.begin(), form.end());
    CGIPartSet set;
    EXPECT_EQ(set.Initialize(buffer.data(), buffer.size()), 1);
    std::string fields;
    for (const NameValuePair* part = set.getFirst(); part != nullptr; part = set.getNext()) {
        const std::string value = part->getValue() != nullptr ? part->getValue() : "";
        EXPECT_EQ(part->get_oValueLength(), value.size() + 1);
        EXPECT_NE(set.findPart(part->getName()), nullptr);
        fields.append("[").append(part->getName()).append("|");
        fields.append(part->getValue() != nullptr ? value : "-").append("]");
    }
    return fields;
}

TEST(CGIPartSet, SplitsFormsIntoDecodedFields) {
    struct {
        std::string form;
        const char* fields;
    } const cases[] = {{"c=x%20y+z&b=&a=1", "[a|1][b|-][c|x y z]"},
                       {"a=1=2", "[a|1=2]"},
                       {"a%3Db=%26%3D", "[a=b|&=]"},
                       {"=1", "[|1]"},
                       {"=", "[|-]"},
                       {"", ""},
                       {"a", "[a|-]"},
                       {"&a=1&&b&", "[a|1][b|-]"},
                       {"&&&", ""},
                       {"a%=%4&b=%", "[a%|%4][b|%]"},
                       {"a\0b=1%00c&d=2"s, "[a|1][d|2]"},
                       {"a%20b=1&a+=2&a=3", "[a|3][a |2][a b|1]"}};
    for (const auto& row : cases) {
        EXPECT_EQ(fieldsOf(row.form), row.fields) << row.form;
    }
}

TEST(CGIPartSet, CopiesValuesIntoABufferOfAnySize) {
    CGIPartSet set;
    set.Initialize("full=abc&none=", 14);
    struct {
        const char* name;
        unsigned long size;
        std::string buffer;
        unsigned long length;
        long result;
    } const cases[] = {{"full", 6, "abc\0\0?"s, 4, 1}, {"full", 4, "abc\0??"s, 3, 1},
                       {"full", 3, "ab\0???"s, 2, 0},  {"full", 1, "\0?????"s, 0, 0},
                       {"full", 0, "??????", 0, 0},    {"none", 6, "\0?????"s, 0, 1},
                       {"none", 0, "??????", 0, 1},    {"gone", 6, "\0?????"s, 0, 0}};
    for (const auto& row : cases) {
        SCOPED_TRACE(testing::Message() << row.name << " " << row.size);
        std::string buffer(6, '?');
        unsigned long length = row.size;
        EXPECT_EQ(set.getPartValue(row.name, buffer.data(), &length), row.result);
        EXPECT_EQ(buffer, row.buffer);
        EXPECT_EQ(length, row.length);
    }
}
