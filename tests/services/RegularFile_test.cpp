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
        EXPECT_FALSE(openRegularFile(name).isOpen()) << name;
    }
    for (const char* name : {"folder", "pipe", "missing/file", "/dev/null", ""}) {
        EXPECT_EQ(openEmptiedStream(name), nullptr) << name;
    }
    for (const char* name : {"file", "link"}) {
        char byte = 0;
        EXPECT_EQ(FileReader(openRegularFile(name)).read(&byte, 1), 1U) << name;
        EXPECT_EQ(byte, 'x');
    }
    for (const char* name : {"link", "new"}) {
        EXPECT_NE(openEmptiedStream(name), nullptr) << name;
    }
    EXPECT_EQ(contentsOf("file") + contentsOf("new"), "");
}

// Lines and pieces of all lengths, on both sides of the reader's own buffer and of the caller's.
TEST(FileReader, ReadsAsAStreamDoes) {
    const TemporaryDirectory directory;
    std::string text;
    for (std::size_t length = 0; length < 300; ++length) {
        text.append(length, static_cast<char>('a' + length % 26)).append("\n");
    }
    for (const std::string& contents :
         {text, text + "no line feed", std::string(), std::string("\n"), std::string("a\0b\n", 4),
          std::string(4096, 'x')}) {
        writeFile("file", contents);
        const StreamHandle stream(std::fopen("file", "r"));
        FileReader lines(openRegularFile("file"));
        char expected[256];
        char line[256];
        while (std::fgets(expected, sizeof expected, stream.get()) != nullptr) {
            ASSERT_TRUE(lines.readLine(line, sizeof line));
            ASSERT_STREQ(line, expected);
        }
        EXPECT_FALSE(lines.readLine(line, sizeof line));
        FileReader pieces(openRegularFile("file"));
        std::string pieced;
        for (std::size_t count = 0; (count = pieces.read(line, 100)) > 0;) {
            pieced.append(line, count);
        }
        EXPECT_EQ(pieced, contents);
        EXPECT_FALSE(pieces.failed());
    }
}
