#include "TraceRecords.h"

#include <cerrno>

#include "ServicesTest.h"

using TraceRecords = ServicesTest;

TEST(ReturnCodeText, NamesCodesOrSpellsThem) {
    struct {
        std::int32_t code;
        const char* text;
    } const cases[] = {
        {0, "OK"},
        {1, "1"},
        {99, "99"},
        {-12, "-12"},
        {INT32_MIN, "-2147483648"},
        {100, "Not found in retcode translation table (64) (100)"},
        {0x20806058, "Not found in retcode translation table (20806058) (545284184)"},
        {INT32_MAX, "Not found in retcode translation table (7FFFFFFF) (2147483647)"},
        {0x20006037, "xecS_E_NONE"},
        {0x20006119, "xecF_E_UNEXPECTED_SYSTEM_RC"},
        {2033, "NZRC_NO_MSG_AVAILABLE"},
        {2111, "NZRC_SOURCE_CCSID_ERROR"},
        {2120, "NZRC_CONVERTED_MSG_TOO_BIG"},
        {2294, "NZRC_UNKNOWN_REF_OBJECT"},
    };
    for (const auto& row : cases) {
        char text[kReturnCodeTextSize];
        xnz_xtrFormatRC(text, row.code);
        EXPECT_STREQ(text, row.text);
    }
}

TEST_F(TraceRecords, NestAndNameTheirCodes) {
    startTrace();
    {
        ServiceTraceScope outer("outer");
        xnztr_text("free text");
        ServiceTraceScope inner("inner");
        outer.exitWith(2033);
        inner.exitWith(-1);
    }
    xnztr_exit("unmatched", 0);
    EXPECT_EQ(records(),
              "T\n   -->outer\n   ! free text\nT\n   ---->inner\n"
              "T\n   <----inner (rc= -1)\nT\n   <--outer (rc= NZRC_NO_MSG_AVAILABLE)\n"
              "T\n   <--unmatched (rc= OK)\n");
}

TEST_F(TraceRecords, WriteSixtyDashesAtMost) {
    startTrace();
    for (int depth = 0; depth < 32; ++depth) {
        xnztr_entry("f");
    }
    const std::string text = records();
    EXPECT_EQ(text.find(std::string(61, '-')), std::string::npos);
    EXPECT_NE(text.find("   " + std::string(58, '-') + ">f\nT\n   " + std::string(60, '-') +
                        ">f\nT\n   " + std::string(60, '-') + ">f\n"),
              std::string::npos);
}

TEST_F(TraceRecords, KeepTwentyNamesAndTheWholeDepth) {
    const std::string fits(39, 'a');
    const std::string tooLong(40, 'b');
    xnztr_entry(fits.c_str());
    xnztr_entry(tooLong.c_str());
    for (int depth = 2; depth < 25; ++depth) {
        xnztr_entry(depth < kFunctionStackLimit ? "stored" : "dropped");
    }
    EXPECT_EQ(pCtl->depth, 25);
    EXPECT_STREQ(pCtl->names[0], fits.c_str());
    EXPECT_STREQ(pCtl->names[1], std::string(39, 'b').c_str());
    EXPECT_STREQ(pCtl->names[19], "stored");
    for (int exits = 0; exits < 26; ++exits) {
        xnztr_exit("any", 0);
    }
    EXPECT_EQ(pCtl->depth, 0);
    EXPECT_FALSE(std::filesystem::exists(fileName("TRC")));
}

TEST_F(TraceRecords, DumpLinesOfSixteenBytes) {
    const std::string example =
        std::string(32, '\0') + "Hello, world!" + std::string(3, '\0') + "ABCD";
    const std::string zeros =
        "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00  : ................\n";
    const auto identical = [](int count) {
        return "         --- " + std::to_string(count) + " lines identical to above ---\n";
    };
    struct {
        std::string data;
        std::string dump;
    } const cases[] = {
        {example,
         "         0000  " + zeros + identical(1) +
             "         0020  48 65 6C 6C 6F 2C 20 77 6F 72 6C 64 21 00 00 00  : Hello, world!...\n"
             "         0030  41 42 43 44                                      : ABCD            "
             "\n"},
        {"", ""},
        {std::string(16, '\0'), "         0000  " + zeros},
        {std::string(64, '\0'), "         0000  " + zeros + identical(3)},
        {std::string(5008, '\0'),
         "         0000  " + zeros + identical(249) + "         0000  " + zeros + identical(62)},
        {std::string(17, '\0'), "         0000  " + zeros + "         0010  00 " +
                                    std::string(46, ' ') + ": ." + std::string(15, ' ') + "\n"},
    };
    startTrace();
    for (const auto& row : cases) {
        SCOPED_TRACE(row.data.size());
        const std::size_t before = records().size();
        xnztr_data(row.data.data(), static_cast<std::uint16_t>(row.data.size()));
        EXPECT_EQ(records().substr(before), row.dump);
    }
    const std::size_t before = records().size();
    xnztr_data(nullptr, 5);
    xnz_trcgent(kDumpRecord + 1, 3, "abc");
    EXPECT_EQ(records().substr(before), "  has NULL pointer\n");
}

TEST_F(TraceRecords, LeaveErrnoAndNullTextsAlone) {
    startTrace();
    errno = EINVAL;
    xnztr_entry("f");
    xnztr_text(nullptr);
    xnztr_exit("f", 0);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(records(), "T\n   -->f\nT\n   <--f (rc= OK)\n");
}

TEST_F(TraceRecords, DoNothingBeforeTheStart) {
    xnzCSCtrl = nullptr;
    xnztr_entry("f");
    xnztr_text("text");
    xnztr_data("data", 4);
    xnztr_exit("f", 0);
    EXPECT_EQ(pCtl, nullptr);
}
