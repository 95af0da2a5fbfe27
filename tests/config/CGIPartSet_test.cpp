#include "CGIPartSet.h"

#include <gtest/gtest.h>

#include <string>

#include "CGIPart.h"
#include "TraceRecords.h"

namespace {

using namespace std::string_literals;

// Name and value of each field in the order of a walk; "-" stands for no value.
std::string fieldsOf(const std::string& form) {
    // An exact copy, so that a read behind the text is a read behind the array.
    const std::vector<char> buffer(form.begin(), form.end());
    CGIPartSet set;
    EXPECT_EQ(set.Initialize(buffer.data(), buffer.size()), 1);
    std::string fields;
    for (const NameValuePair* part = set.getFirst(); part != nullptr; part = set.getNext()) {
        const char* value = part->getValue();
        EXPECT_EQ(part->get_oNameLength(), std::string(part->getName()).size() + 1);
        EXPECT_EQ(part->get_oValueLength(), std::string(value != nullptr ? value : "").size() + 1);
        fields.append("[").append(part->getName()).append("|");
        fields.append(value != nullptr ? value : "-").append("]");
    }
    return fields;
}

}  // namespace

TEST(CGIPartSet, SplitsFormsIntoDecodedFields) {
    struct {
        std::string form;
        const char* fields;
    } const cases[] = {
        {"a=1&b=&c=x%20y+z", "[a|1][b|-][c|x y z]"},
        {"b=2&a=1", "[a|1][b|2]"},
        {"a=1=2", "[a|1=2]"},
        {"a%3Db=1", "[a=b|1]"},
        {"=1", "[|1]"},
        {"=", "[|-]"},
        {"a=%26%3D", "[a|&=]"},
        {"", ""},
        {"a", "[a|-]"},
        {"&a=1&&b&", "[a|1][b|-]"},
        {"&&&", ""},
        {"a=%", "[a|%]"},
        {"a%=%4", "[a%|%4]"},
        {"a=1%00b", "[a|1]"},
        {"a\0b=1\0c&d=2"s, "[a|1][d|2]"},
        // Decoded names are compared with decoded lengths.
        {"a%20b=1&a+=2&a=3", "[a|3][a |2][a b|1]"},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(fieldsOf(row.form), row.fields) << row.form;
    }
}

TEST(CGIPartSet, HoldsAnyNumberOfFields) {
    std::string form;
    for (int i = 0; i < 3000; ++i) {
        form.append("n").append(std::to_string(i)).append("=v&");
    }
    CGIPartSet set;
    set.Initialize(form.data(), form.size());
    EXPECT_EQ(set.scanForNumberOfParts(form.data(), form.size()), 3001U);
    for (int i = 0; i < 3000; ++i) {
        ASSERT_NE(set.findPart(("n" + std::to_string(i)).c_str()), nullptr) << i;
    }
}

TEST(CGIPartSet, CopiesValuesIntoABufferOfAnySize) {
    constexpr char kForm[] = "full=abc&none=";
    CGIPartSet set;
    set.Initialize(kForm, sizeof kForm - 1);
    struct {
        const char* name;
        unsigned long size;
        std::string buffer;
        unsigned long length;
        long result;
    } const cases[] = {
        {"full", 8, "abc\0\0???"s, 4, 1}, {"full", 5, "abc\0\0???"s, 4, 1},
        {"full", 4, "abc\0????"s, 3, 1},  {"full", 3, "ab\0?????"s, 2, 0},
        {"full", 1, "\0???????"s, 0, 0},  {"full", 0, "????????", 0, 0},
        {"none", 8, "\0???????"s, 0, 1},  {"none", 0, "????????", 0, 1},
        {"gone", 8, "\0???????"s, 0, 0},  {"gone", 0, "????????", 0, 0},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(testing::Message() << row.name << " " << row.size);
        std::string buffer(8, '?');
        unsigned long length = row.size;
        EXPECT_EQ(set.getPartValue(row.name, buffer.data(), &length), row.result);
        EXPECT_EQ(buffer, row.buffer);
        EXPECT_EQ(length, row.length);
    }
}

TEST(CGIPartSet, TracesWhatTheFormHolds) {
    CGIPartSet set;
    takeTraceRecords();
    set.scanForNumberOfParts("a=1&b", 5);
    set.scanForNumberOfParts("", 0);
    EXPECT_EQ(takeTraceRecords(),
              (std::vector<std::string>{"{CGIPartSet::scanForNumberOfParts l=5", "numberOfParts=2",
                                        "}CGIPartSet::scanForNumberOfParts 0",
                                        "{CGIPartSet::scanForNumberOfParts l=0", "No part data",
                                        "numberOfParts=0", "}CGIPartSet::scanForNumberOfParts 0"}));
    set.Initialize("a=1", 3);
    takeTraceRecords();
    set.findPart("a");
    set.findPart("b");
    EXPECT_EQ(takeTraceRecords(),
              (std::vector<std::string>{"{CGIPartSet::findPart", "{ConfigPart::getValue",
                                        "}ConfigPart::getValue 0", "1", "}CGIPartSet::findPart 0",
                                        "{CGIPartSet::findPart", "}CGIPartSet::findPart 0"}));
}

TEST(CGIPart, DecodesBehindTheReadsOfNameAndValue) {
    takeTraceRecords();
    const CGIPart part("n%41x", 4, nullptr, 0);
    const std::vector<std::string> records = takeTraceRecords();
    EXPECT_STREQ(part.getName(), "nA");
    EXPECT_EQ(records.front(), "{CGIPart::CGIPart(n,v)");
    EXPECT_EQ(records[3], "{ConfigPart::getName");
    EXPECT_EQ(records[records.size() - 3], "{URLDecoder::~URLDecoder");
    EXPECT_EQ(records.back(), "}CGIPart::CGIPart(n,v) 0");
    const CGIPart copy(part);
    EXPECT_EQ(copy == part, 1);
    EXPECT_EQ(copy != part, 0);
}
