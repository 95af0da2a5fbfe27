#include "MessageRetrieval.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "../support/TemporaryDirectory.h"
#include "ControlBlock.h"
#include "ReturnCodes.h"
#include "TraceControl.h"

namespace {

constexpr char kNoText[] = "Velmora was unable to display an error message.";
constexpr char kNoCatalogue[] = "Velmora was unable to open a message catalog.";

class MessageRetrieval : public testing::Test {
protected:
    MessageRetrieval() {
        setVariable("NLSPATH", CATALOGUE_DIRECTORY "/%N.cat");
        setVariable("LANG", nullptr);
    }

    std::int32_t fetch(std::int32_t number, std::int32_t control, std::uint32_t size1) {
        xcsINSERTS inserts;
        inserts.text1 = "dnz.ini";
        std::memset(buffers_, '?', sizeof buffers_);
        return xnzGetMessage(number, control, inserts, kInsertCcsid, buffers_[0], size1, nullptr, 0,
                             nullptr, 0);
    }

    char buffers_[3][200];
};

}  // namespace

TEST_F(MessageRetrieval, FindsTextsByNumber) {
    struct {
        std::int32_t number;
        std::int32_t control;
        std::uint32_t size;
        const char* text;
        std::int32_t code;
    } const cases[] = {
        {0x40001000, 3, 200, "Plain text", 0},
        {0x00001000, 3, 11, "Plain text", 0},
        {0x40001000, 3, 10, "Plain tex", xecE_W_TEXT_TRUNCATED},
        {0x40001000, 3, 1, "", xecE_W_TEXT_TRUNCATED},
        {0x40001001, 3, 200, "File dnz.ini, then .", 0},
        {0x40001002, 3, 200, "one", 0},
        {0x7000FFFF, 3, 200, "Groups above nine count with their value.", 0},
        {0x40001000, 2, 200, "NZL1000: Plain text", 0},
        {0x4000FFFF, 2, 11, "NZL????: G", xecE_W_TEXT_TRUNCATED},
        {0x40001000, 2, 10, "NZL1000: ", xecE_W_TEXT_TRUNCATED},
        {0x40001000, 2, 5, "NZL1", xecE_W_TEXT_TRUNCATED},
        {0x40009999, 3, 200, "No text for 1073781145 with dnz.ini.",
         xecE_W_DEFAULT_TEXT_SUBSTITUTED},
        {0x40009999, 2, 30, "NZL6090: No text for 10737811", xecE_W_TEXT_TRUNCATED},
        {0x20806129, 3, 200, "No text for 545284393 with dnz.ini.",
         xecE_W_DEFAULT_TEXT_SUBSTITUTED},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(fetch(row.number, row.control, row.size), row.code) << row.text;
        EXPECT_STREQ(buffers_[0], row.text);
        EXPECT_EQ(buffers_[0][row.size - 1], '\0') << "the buffer is cleared whole";
        EXPECT_TRUE(row.size == 200 || buffers_[0][row.size] == '?');
    }
}

TEST_F(MessageRetrieval, SplitsSectionsIntoTheBuffersWanted) {
    struct {
        std::int32_t number;
        std::uint32_t sizes[3];
        const char* texts[3];
        std::int32_t code;
    } const cases[] = {
        {0x40001002, {200, 200, 200}, {"one", "two", "three\024rest"}, 0},
        {0x40001002, {0, 4, 0}, {nullptr, "two", nullptr}, 0},
        {0x40001002, {4, 3, 200}, {"one", "tw", "three\024rest"}, xecE_W_TEXT_TRUNCATED},
        {0x40001003, {200, 200, 200}, {"one", "", ""}, 0},
    };
    for (const auto& row : cases) {
        std::memset(buffers_, '?', sizeof buffers_);
        EXPECT_EQ(xnzGetMessage(row.number, kPlainMessage, {}, kInsertCcsid, buffers_[0],
                                row.sizes[0], buffers_[1], row.sizes[1], buffers_[2], row.sizes[2]),
                  row.code);
        for (int i = 0; i < 3; ++i) {
            if (row.texts[i] != nullptr) {
                EXPECT_STREQ(buffers_[i], row.texts[i]);
            } else {
                EXPECT_EQ(buffers_[i][0], '?');
            }
        }
    }
}

TEST_F(MessageRetrieval, FoldsLongFirstSections) {
    EXPECT_EQ(fetch(0x40001080, kPlainMessage + kFoldMessage, 200), 0);
    EXPECT_STREQ(buffers_[0],
                 "This line is folded at the last blank that stands within eighty columns, here\n"
                 "behind it.");
    EXPECT_EQ(fetch(0x40001081, kPlainMessage + kFoldMessage, 200), 0);
    EXPECT_EQ(std::string(buffers_[0]).substr(94), "\nb c");
    EXPECT_EQ(fetch(0x40001000, kPlainMessage + kFoldMessage, 200), 0);
    EXPECT_STREQ(buffers_[0], "Plain text");
}

TEST_F(MessageRetrieval, LeavesBuffersAloneOnFaultyArguments) {
    for (const std::int32_t control : {0, 1, 4, 12, -1}) {
        EXPECT_EQ(fetch(0x40001000, control, 200), xecE_E_INVALID_CONTROL) << control;
        EXPECT_EQ(buffers_[0][0], '?');
    }
    EXPECT_EQ(fetch(0x40001000, kPlainMessage, 0), xecE_E_INVALID_BUFFLEN);
    EXPECT_EQ(xnzGetMessage(0x40001000, kPlainMessage, {}, kInsertCcsid, buffers_[0], 200, nullptr,
                            1, nullptr, 0),
              xecE_E_INVALID_BUFFLEN);
    EXPECT_EQ(buffers_[0][0], '?');
}

TEST_F(MessageRetrieval, SpeaksWithoutACatalogue) {
    TemporaryDirectory directory;
    setVariable("NLSPATH", "./%N.cat");
    EXPECT_EQ(fetch(0x40001000, kPrefixedMessage, 200), xecE_E_MSG_FILE_NOT_LOADED);
    EXPECT_STREQ(buffers_[0], kNoCatalogue);
    EXPECT_EQ(fetch(0x40001000, kPlainMessage, 5), xecE_E_MSG_FILE_NOT_LOADED);
    EXPECT_STREQ(buffers_[0], "Velm");

    writeFile("dnz.msg", "$set 1\n1 x\n");
    ASSERT_EQ(std::system("gencat -o dnz.cat dnz.msg"), 0);
    EXPECT_EQ(fetch(0x40001000, kPlainMessage, 200), xecE_W_DEFAULT_TEXT_SUBSTITUTED);
    EXPECT_STREQ(buffers_[0], kNoText);
}

TEST_F(MessageRetrieval, TracesTheCataloguesItTries) {
    TemporaryDirectory directory;
    setVariable("NLSPATH", "./%N.cat");
    const auto tracedNames = [](const char* language) {
        CSCtrlBlock block{};
        std::strcpy(block.serviceName, "DNZ");
        xnzCSCtrl = &block;
        setVariable("LANG", language);
        xnz_xtrOpenTraceFile("trace");
        char buffer[10];
        xnzGetMessage(0x40001000, kPlainMessage, {}, kInsertCcsid, buffer, sizeof buffer, nullptr,
                      0, nullptr, 0);
        std::fclose(block.traceFile);
        xnzCSCtrl = nullptr;
        const std::string trace = contentsOf("trace");
        std::filesystem::remove("trace");
        const std::size_t start = trace.find("   ! ");
        return trace.substr(start, trace.rfind("...Message file not found\n") - start);
    };
    const std::string attempt = "   ! Attempting to open the message catalog:\n   ! ";
    const std::string further =
        "   ! DNZ\n   ! /usr/lib/locale/C/LC_MESSAGES/dnz.cat\n   ! dnz\n"
        "   ! /opt/nzm/bin/dnz.cat\n   ! ";
    EXPECT_EQ(tracedNames("C"), attempt + "/opt/nzm/bin/dnz.cat\n" + further);
    EXPECT_EQ(tracedNames("POSIX"), attempt + "/opt/nzm/bin/dnz.cat\n" + further);
    EXPECT_EQ(tracedNames("de_DE"), attempt + "/usr/lib/locale/C/LC_MESSAGES/dnz.cat\n" + further);
    EXPECT_EQ(tracedNames(nullptr), attempt + "/usr/lib/locale/C/LC_MESSAGES/dnz.cat\n" + further);
}
