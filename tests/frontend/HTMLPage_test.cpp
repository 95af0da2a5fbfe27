#include "HTMLPage.h"

#include <gtest/gtest.h>

#include <cstring>

TEST(HTMLPage, OwnsItsName) {
    HTMLPage page;
    EXPECT_EQ(page.get_HTMLSourceFile(), nullptr);
    page.setHTMLSourceFileName("a.htm");
    HTMLPage copy(page);
    EXPECT_NE(copy.get_HTMLSourceFile(), page.get_HTMLSourceFile());
    EXPECT_TRUE(copy == page);
    char* taken = new char[6];
    std::memcpy(taken, "b.htm", 6);
    copy.set_HTMLSourceFile(taken);
    EXPECT_EQ(copy.get_HTMLSourceFile(), taken);
    EXPECT_TRUE(copy != page);
    EXPECT_TRUE(copy != HTMLPage());
    copy = page;
    EXPECT_STREQ(copy.get_HTMLSourceFile(), "a.htm");
}
