#include "HTMLPage.h"

#include <gtest/gtest.h>

#include <cstring>

#include "CGIInterface.h"
#include "Request.h"

namespace {

std::string pageOf(const std::string& contents, long result) {
    Request request("a=b");
    if (!contents.empty()) {
        writeFile("page.htm", contents);
    }
    setVariable("PATH", "");
    CGIInterface transport;
    testing::internal::CaptureStdout();
    EXPECT_EQ(HTMLPage("page.htm").writeToStdout(), result);
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

}  // namespace

TEST(HTMLPage, CopiesTheFileByteForByte) {
    for (const std::size_t length : {1U, 99U, 100U, 101U, 250U}) {
        const std::string contents = std::string(length - 1, '\0') + "x";
        EXPECT_EQ(pageOf(contents, 1), "\n" + contents + "\n");
    }
    const std::string missing = pageOf("", 0);
    EXPECT_EQ(missing.substr(0, 7), "\n<HTML>");
    EXPECT_EQ(missing.substr(missing.size() - 7), "</HTML>");
}

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
