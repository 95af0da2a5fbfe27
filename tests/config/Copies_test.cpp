// Copies, assignments and comparisons of all classes: parts go by their bytes, no two sets are
// equal, and decoders have nothing to differ in.
#include <gtest/gtest.h>

#include "CGIPart.h"
#include "CGIPartSet.h"
#include "IniFilePart.h"
#include "IniFileSet.h"
#include "URLDecoder.h"

namespace {

template <typename Part>
void expectOwnEqualCopies(const Part& part, const Part& other) {
    const Part copy(part);
    Part assigned(other);
    EXPECT_TRUE(assigned != part);
    assigned = copy;
    const Part& itself = assigned;
    assigned = itself;
    EXPECT_TRUE(copy == part && assigned == part);
    EXPECT_FALSE(copy == other || copy != part);
    EXPECT_NE(copy.get_oValue(), part.get_oValue());
    EXPECT_STREQ(assigned.getName(), part.getName());
    EXPECT_STREQ(assigned.getValue(), part.getValue());
    EXPECT_STREQ(assigned.getDesc(), part.getDesc());
}

TEST(Copies, PartsAreEqualAndHaveArraysOfTheirOwn) {
    expectOwnEqualCopies(NameValuePair("name", "value"), NameValuePair("name", "another"));
    // Decoding it a second time would give "A".
    expectOwnEqualCopies(CGIPart("name", 4, "%2541", 5), CGIPart("name", 4, "A", 1));
    // The description stands behind the end of the value.
    IniFilePart entry("name", "value #description");
    IniFilePart other("name", "value #another one");
    entry.get_oValue()[5] = other.get_oValue()[5] = '\0';
    expectOwnEqualCopies(entry, other);
    EXPECT_STREQ(entry.getDesc(), "description");
    EXPECT_TRUE(IniFilePart() == IniFilePart());
    EXPECT_TRUE(CGIPart() != CGIPart("name", 4, nullptr, 0));
}

template <typename Set>
void expectUnequalCopies(const Set& set) {
    const Set copy(set);
    EXPECT_FALSE(copy == set || set == set);
    EXPECT_TRUE(copy != set);
}

TEST(Copies, SetsShareTheirPartsAndAreNeverEqual) {
    CGIPartSet form;
    form.Initialize("a=1&b=2", 7);
    CGIPartSet formCopy;
    formCopy = form;
    EXPECT_NE(form.findPart("b"), nullptr);
    EXPECT_EQ(formCopy.findPart("b"), form.findPart("b"));

    IniFileSet file;
    file.setIniFileName("not there");
    file.addNewIniPart("name", "value", nullptr);
    IniFileSet fileCopy;
    fileCopy = file;
    EXPECT_EQ(fileCopy.findPart("name"), file.findPart("name"));
    EXPECT_STREQ(fileCopy.getIniFileName(), "not there");

    expectUnequalCopies(form);
    expectUnequalCopies(file);

    URLDecoder decoder;
    decoder = URLDecoder(decoder);
    EXPECT_TRUE(decoder == URLDecoder());
    EXPECT_FALSE(decoder != URLDecoder());
}

TEST(Copies, ArraysAreLentAndHandedOver) {
    NameValuePair pair("name", nullptr);
    char* text = nullptr;
    unsigned long size = 0;
    pair.getName(&text, &size);
    EXPECT_EQ(text, pair.get_oName());
    EXPECT_EQ(size, sizeof "name");
    auto* value = new char[2]{'v', '\0'};
    pair.set_oValue(value);
    pair.set_oValueLength(2);
    pair.getValue(&text, &size);
    EXPECT_EQ(text, value);
    EXPECT_TRUE(pair == NameValuePair("name", "v"));
    delete[] pair.get_oName();
    pair.set_oName(nullptr);
    pair.set_oNameLength(0);
    EXPECT_TRUE(pair == NameValuePair(nullptr, "v"));
}

}  // namespace
