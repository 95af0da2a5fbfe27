#include "TraceControl.h"

#include <sys/stat.h>

#include "BuildInformation.h"
#include "ServicesTest.h"

using TraceControl = ServicesTest;

TEST_F(TraceControl, FollowsTheTwoVariables) {
    const std::string there = directory_.path() + "/there";
    std::filesystem::create_directory(there);
    const std::string thereWithSlash = there + "/";
    const char* const kHere = ".";
    struct {
        const char* trace;
        const char* path;
        const char* where;  // null for no file
        bool banner;
    } const cases[] = {
        {nullptr, there.c_str(), nullptr, false},
        {"", nullptr, kHere, false},
        {"OFF", nullptr, kHere, false},
        {"U", nullptr, kHere, false},
        {"user", "", kHere, true},
        {"ON", there.c_str(), "there", false},
        {"U", there.c_str(), "there", true},
        {"u", thereWithSlash.c_str(), "there", true},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(testing::Message() << (row.trace ? row.trace : "unset") << " "
                                        << (row.path ? row.path : "unset"));
        setVariable("DNZ_TRACE", row.trace);
        setVariable("DNZ_PATH", row.path);
        block_.traceIsOn = block_.userTrace = block_.traceRequested = 0;
        EXPECT_EQ(xnz_xtrInitialize(), 0);
        closeTrace();
        const std::string file = std::string(row.where ? row.where : kHere) + "/" + fileName("TRC");
        EXPECT_EQ(std::filesystem::exists(file), row.where != nullptr);
        const std::string text = contentsOf(file);
        EXPECT_EQ(text.find("\n  !!! User Tracing is activated !!!\n") != std::string::npos,
                  row.banner);
        std::filesystem::remove(file);
    }
}

TEST_F(TraceControl, BeginsAndEndsAFileForItsOwnerOnly) {
    umask(0);
    setVariable("DNZ_TRACE", "U");
    setVariable("DNZ_PATH", directory_.path().c_str());
    xnz_xtrInitialize();
    xnz_xtrTerminate();
    struct stat status {};
    ASSERT_EQ(stat(fileName("TRC").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    const std::string text =
        std::regex_replace(contentsOf(fileName("TRC")),
                           std::regex("[A-Z][a-z]{2} [A-Z][a-z]{2} [ \\d]\\d "
                                      "\\d\\d:\\d\\d:\\d\\d \\d{4}|\\d\\d:\\d\\d:\\d\\d"),
                           "T");
    const std::string row(38, '!');
    EXPECT_EQ(text, "\nTrace for program  ---- Brellin Zentrik ----  started at T\n\r\n\r\n" +
                        std::string(xnz_level) +
                        "\n\n  !!! User Tracing is activated !!!\n   ! BuildDate " + kBuildDate +
                        "\nT\n   -->xnz_xtrTerminate\nT\n   <--xnz_xtrTerminate (rc= OK)\n   ! " +
                        row + "\n   ! Trace termination - closing trace file\n   ! " + row + "\n");
    EXPECT_TRUE(std::regex_match(kBuildDate, std::regex("[A-Z][a-z]{2} [ \\d]\\d \\d{4}")));
    EXPECT_TRUE(std::regex_match(
        xnz_level, std::regex("@\\(!\\)      \\*{5} Code Level is \\d+\\.\\d+\\.\\d+ \\*{5}")));
}

TEST(ReducedProcessId, FitsFiveDigits) {
    static_assert(reduceProcessId(4711) == 4711);
    static_assert(reduceProcessId(99999) == 99999);
    static_assert(reduceProcessId(100000) == 0);
    static_assert(reduceProcessId(4194304) == 94304);
    static_assert(reduceProcessId(-17) == 17);
    EXPECT_EQ(reducedProcessId(), getpid() % 100000);
}
