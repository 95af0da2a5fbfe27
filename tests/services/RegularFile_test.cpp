#include "RegularFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "../support/TemporaryDirectory.h"

TEST(RegularFile, IsAllThatOpens) {
    const TemporaryDirectory directory;
    writeFile("file", "x");
    std::filesystem::create_directory("folder");
    std::filesystem::create_symlink("file", "link");
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    for (const char* name : {"folder", "pipe", "missing", "/dev/zero", ""}) {
        EXPECT_EQ(openRegularStream(name), nullptr) << name;
    }
    for (const char* name : {"folder", "pipe", "missing/file", "/dev/null", ""}) {
        EXPECT_EQ(openEmptiedStream(name), nullptr) << name;
    }
    for (const char* name : {"file", "link"}) {
        const StreamHandle stream = openRegularStream(name);
        ASSERT_NE(stream, nullptr) << name;
        EXPECT_EQ(std::fgetc(stream.get()), 'x');
    }
    for (const char* name : {"link", "new"}) {
        EXPECT_NE(openEmptiedStream(name), nullptr) << name;
    }
    EXPECT_EQ(contentsOf("file") + contentsOf("new"), "");
}
