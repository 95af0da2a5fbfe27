#include "StartStop.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include "../support/TemporaryDirectory.h"
#include "ControlBlock.h"
#include "Environment.h"
#include "FailureReport.h"
#include "ServiceCalls.h"
#include "ServiceNames.h"

namespace {

class StartStop : public testing::Test {
protected:
    StartStop() {
        for (const char* name : {"DNZ_TRACE", "DNZ_PATH", "DNZ_XLAT_PATH"}) {
            setVariable(name, nullptr);
        }
    }
    ~StartStop() override { xnzTermCommonServices(); }

    TemporaryDirectory directory_;
};

std::string ownFile(const char* extension) {
    char name[32];
    std::snprintf(name, sizeof name, "DNZ%05d.%s", reducedProcessId(), extension);
    return name;
}

}  // namespace

TEST_F(StartStop, StartsOnceUnderOneName) {
    setVariable("DNZ_TRACE", "");
    InitCommonServices("DNZ");
    const CSCtrlBlock* block = xnzCSCtrl;
    const std::string trace = contentsOf(ownFile("TRC"));
    EXPECT_EQ(InitCommonServices("DNZ"), 0);
    EXPECT_EQ(xnzCSCtrl, block);
    EXPECT_EQ(contentsOf(ownFile("TRC")), trace);
    EXPECT_NE(trace.find("BuildDate"), std::string::npos);
}

TEST_F(StartStop, StartsAgainUnderAnotherNameCutToSevenCharacters) {
    InitCommonServices("DNZ");
    InitCommonServices("LONGNAMES");
    EXPECT_STREQ(xnzCSCtrl->serviceName, "LONGNAM");
    const CSCtrlBlock* block = xnzCSCtrl;
    InitCommonServices("LONGNAMEX");
    EXPECT_EQ(xnzCSCtrl, block);
    char name[kPathSize];
    BoundedText text(name);
    appendServiceFileName(text, "TRC");
    EXPECT_EQ(std::string(name).substr(0, 4), "LONG");
    EXPECT_EQ(std::string(name).size(), 12U);
}

TEST_F(StartStop, StartsAgainInAForkedChild) {
    setVariable("DNZ_TRACE", "");
    InitCommonServices("DNZ");
    const CSCtrlBlock* block = xnzCSCtrl;
    const pid_t child = fork();
    if (child == 0) {
        InitCommonServices("DNZ");
        const bool isNew = xnzCSCtrl != block && std::filesystem::exists(ownFile("TRC"));
        _exit(isNew ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}

TEST_F(StartStop, StopsInReverseOrderAndForGood) {
    setVariable("DNZ_TRACE", "");
    dnz_InitCommonServices("DNZ");
    EXPECT_EQ(xnzTermCommonServices(), 0);
    EXPECT_EQ(xnzCSCtrl, nullptr);
    const std::string trace = contentsOf(ownFile("TRC"));
    const std::size_t stop = trace.find("-->xnzTermCommonServices");
    const std::size_t table = trace.find("---->xxxTerminate");
    const std::size_t end = trace.find("---->xnz_xtrTerminate");
    EXPECT_TRUE(stop < table && table < end && end != std::string::npos) << trace;
    EXPECT_EQ(trace.find("<--xnzTermCommonServices"), std::string::npos);
    EXPECT_EQ(xnzTermCommonServices(), 0);
    dnzxtr_entry("after the stop");
    EXPECT_EQ(xnzCSCtrl, nullptr);
}

TEST_F(StartStop, HappensWithTheFirstCall) {
    dnzcsaInit = 0;
    dnzxtr_entry("first");
    ASSERT_NE(xnzCSCtrl, nullptr);
    EXPECT_STREQ(xnzCSCtrl->serviceName, "DNZ");
    EXPECT_EQ(dnzcsaInit, 1);
    dnzxtr_exit("first", 0);
}

TEST_F(StartStop, ReportsUnderAFunctionIndex) {
    dnz_InitCommonServices("DNZ");
    xcsINSERTS inserts;
    inserts.text1 = inserts.text2 = inserts.text3 = " ";
    EXPECT_EQ(dnz_xcsWYRD(nullptr, 65535, 3, inserts), 0);
    EXPECT_NE(contentsOf(ownFile("FDC")).find("Function Name     :- first_function!!!"),
              std::string::npos);
    std::fclose(fdcFile);
    fdcFile = nullptr;
}

TEST_F(StartStop, ReadsOnlyTwoKeysFromTheEnvironmentFile) {
    const std::string longLine(260, 'x');
    struct {
        std::string contents;
        const char* trace;
        const char* path;
    } const cases[] = {
        {"", nullptr, nullptr},
        {"DNZ_TRACE=OFF\n", "ON", nullptr},
        {"# DNZ_PATH\r\nDNZ_TRACE\n", nullptr, "/tmp"},
        {"x\nDNZ_TRACE\nDNZ_PATH=/elsewhere\n", "ON", "/tmp"},
        {"DNZ_PATH DNZ_TRACE\n", "ON", "/tmp"},
        {"a\rDNZ_TRACE\n", nullptr, nullptr},
        {"DNZ_TRACE", nullptr, nullptr},
        {longLine + "DNZ_TRACE\n", "ON", nullptr},
        {std::string(250, 'x') + "DNZ_TRACE\n", nullptr, nullptr},
    };
    for (const auto& row : cases) {
        setVariable("DNZ_TRACE", nullptr);
        setVariable("DNZ_PATH", nullptr);
        writeFile("dnz.env", row.contents);
        EXPECT_STREQ(initializeFromEnvironmentFile("dnz.env"), row.path ? "DNZ_PATH=" : nullptr);
        EXPECT_STREQ(std::getenv("DNZ_TRACE"), row.trace) << row.contents;
        EXPECT_STREQ(std::getenv("DNZ_PATH"), row.path) << row.contents;
    }
    EXPECT_EQ(initializeFromEnvironmentFile("missing"), nullptr);
}

TEST_F(StartStop, ExtendsThePathOnce) {
    struct {
        const char* before;
        const char* after;
    } const cases[] = {
        {nullptr, "/var/nzm:/opt/nzm/bin:"},
        {"/bin", "/bin:/var/nzm:/opt/nzm/bin:"},
        {"/bin:", "/bin:/var/nzm:/opt/nzm/bin:"},
        {"/x/var/nzm2", "/x/var/nzm2"},
    };
    const std::string path = std::getenv("PATH");
    for (const auto& row : cases) {
        setVariable("PATH", row.before);
        initializeenv();
        EXPECT_STREQ(std::getenv("PATH"), row.after);
        EXPECT_STREQ(std::getenv("NZCHLLIB"), "/var/nzm");
        EXPECT_STREQ(std::getenv("NZCHLTAB"), "ANZCLCHL.TAB");
        EXPECT_STREQ(std::getenv("DNZ_XLAT_PATH"), "/var/nzm/conv/table");
    }
    setVariable("PATH", path.c_str());
}
