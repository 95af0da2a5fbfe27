#include "support/Services.h"

#include <sys/wait.h>

#include <cerrno>
#include <ctime>

#include "services/base/ReturnCodes.h"
#include "services/base/Text.h"
#include "services/inner/ControlBlock.h"
#include "services/inner/SystemInformation.h"
#include "services/inner/TraceRecords.h"
#include "services/outer/Environment.h"
#include "services/outer/ServiceCalls.h"
#include "services/outer/StartStop.h"

using namespace dnz;

namespace {

std::string ownFile(const char* extension) {
    return contentsOf(ServiceFileName(extension).c_str());
}

TEST_F(Services, CutTextsAtTheirSize) {
    const char* table = "7 => abcdex / 1 0 | 6 => abcde / 1 1 | 5 => abcd / 1 1 | 1 => / 0 1";
    const auto fill = [](std::size_t size, auto append) {
        std::string buffer(9, '?');
        BoundedText text(buffer.data(), size);
        append(text.append("abcde"), "x");
        EXPECT_EQ(buffer.substr(size), std::string(9 - size, '?'));
        return std::string(text.view()) + (!text.view().empty() ? " / 1 " : "/ 0 ") +
               (text.truncated() ? "1" : "0");
    };
    check(table, [&](std::istream& in) {
        return fill(next<std::size_t>(in), [](auto& text, auto* more) { text.append(more); });
    });
}

TEST_F(Services, ReadNumbersAsTheLibraryDoesButWithoutOverflow) {
    check(
        "=> 0 | x1 => 0 | -12x => -12 | +7 => 7 | 0078 => 78 | - 1 => 0 | 0x10 => 0 |"
        "4294967297 => 2147483647 | 99999999999999999999 => 2147483647 |"
        "-99999999999 => -2147483648",
        [](std::istringstream& in) { return leadingNumber(in.str().c_str()); });
    check("99999 => 99999 | 100000 => 0 | 4194304 => 94304 | -17 => 17",
          [](std::istream& in) { return reduceProcessId(next<int>(in)); });
}

TEST_F(Services, NestDeeperThanDashesAndStack) {
    const auto stack = [] {
        std::FILE* file = std::fopen("stack", "w");
        PrintFunctionStack(file);
        std::fclose(file);
        return contentsOf("stack");
    };
    std::string entries;
    std::string exits = "T   <--unmatched (rc= -1)\n";
    std::string names = "\n  Stored Function Stack\n  =====================\n\n";
    std::vector<std::string> labels;
    for (std::size_t depth = 0; depth < 31; ++depth) {
        labels.emplace_back(35 + depth, 'f');
        const std::string dashes(std::min<std::size_t>(2 * depth + 2, 60), '-');
        entries += "T   " + dashes + ">" + labels[depth] + "\n";
        exits.insert(0, "T   <" + dashes + labels[depth] + " (rc= OK)\n");
        names += depth < 20 ? labels[depth].substr(0, 39) + "\n" : "";
    }
    EXPECT_EQ(stack(), "\nNo Function Stack Stored\n\n");
    const std::string records = traced([&] {
        errno = EINVAL;
        for (const std::string& label : labels) {
            xnztr_entry(label.c_str());
        }
        xnztr_text(nullptr);
        EXPECT_EQ(stack(), names + "\n");
        for (auto label = labels.rbegin(); label != labels.rend(); ++label) {
            xnztr_exit(label->c_str(), 0);
        }
        xnztr_exit("unmatched", -1);
        EXPECT_EQ(errno, EINVAL);
    });
    EXPECT_EQ(records, entries + exits);
    EXPECT_EQ(stack(), "\nNo Entries in Function Stack\n\n");
}

TEST_F(Services, NameReturnCodesOrSpellThem) {
    check(
        "0 => OK | 1 => 1 | 99 => 99 | -2147483648 => -2147483648 | 536895543 => xecS_E_NONE |"
        "100 => Not found in retcode translation table (64) (100) |"
        "2147483647 => Not found in retcode translation table (7FFFFFFF) (2147483647) |"
        "536895769 => xecF_E_UNEXPECTED_SYSTEM_RC | 2111 => NZRC_SOURCE_CCSID_ERROR |"
        "2294 => NZRC_UNKNOWN_REF_OBJECT",
        [](std::istream& in) {
            char text[kReturnCodeTextSize];
            xnz_xtrFormatRC(text, next<std::int32_t>(in));
            return std::string(text);
        });
}

TEST_F(Services, DumpLinesOfSixteenBytes) {
    const std::string zeros =
        "         0000  00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00  : ................\n";
    const auto identical = [](int count) {
        return "         --- " + std::to_string(count) + " lines identical to above ---\n";
    };
    const std::string text = std::string(32, '\0') + "Hello, world!" + std::string(3, '\0') + "AB";
    EXPECT_EQ(traced([&] { xnztr_data(text.data(), static_cast<std::uint16_t>(text.size())); }),
              zeros + identical(1) +
                  "         0020  48 65 6C 6C 6F 2C 20 77 6F 72 6C 64 21 00 00 00  : Hello, "
                  "world!...\n         0030  41 42" +
                  std::string(44, ' ') + ": AB" + std::string(14, ' ') + "\n");
    EXPECT_EQ(traced([] {
                  const std::string many(5009, '\0');
                  xnztr_data(many.data(), 5009);
                  xnztr_data(nullptr, 5);
                  xnz_trcgent(kDumpRecord + 1, 3, "abc");
                  xnz_trcgent(kDumpRecord, 0, "abc");
              }),
              zeros + identical(249) + zeros + identical(62) + "         03F0  00" +
                  std::string(47, ' ') + ": ." + std::string(15, ' ') + "\n" +
                  "  has NULL pointer\n");
}

TEST_F(Services, ReportInOneFileButNotIntoAReport) {
    check("0 => 1 1 0 | 75 => 1 1 0 | 76 => 2 1 1 | 146 => 2 1 70", [](std::istream& in) {
        char line[kReportLineSize];
        const std::string rows = FormatString(line, std::string(next<unsigned>(in), 'x').c_str());
        const std::size_t second = rows.find('\n') + 1;
        EXPECT_EQ(rows.substr(second, 8), second == rows.size() ? "" : "|      x");
        return std::to_string(rows.size() / 80) + " " + std::to_string(second / 80) + " " +
               std::to_string(
                   std::count(rows.begin() + static_cast<long>(second), rows.end(), 'x'));
    });
    dnzcsaInit = 1;
    xcsINSERTS inserts;
    inserts.text1 = inserts.text2 = "two";
    std::size_t size = 0;
    for (const auto& [isInReport, reports] : {std::pair{0, 1U}, {1, 1U}, {0, 2U}}) {
        block_.inFailureReport = isInReport;
        EXPECT_EQ(dnz_xcsWYRD(nullptr, 65535, 7, inserts), 0);
        size = size == 0 ? ownFile("FDC").size() : size;
        EXPECT_EQ(ownFile("FDC").size(), reports * size);
    }
    EXPECT_EQ(block_.inFailureReport, 0);
    EXPECT_NE(ownFile("FDC").find("Function Name     :- first_function!!!"), std::string::npos);
}

TEST_F(Services, TakeTheCodePageFromTheLocale) {
    check(
        "- => 88591 819 | POSIX => 88591 819 | de_DE => 88591 819 | pl_PL => 88592 912 |"
        "ru_RU => 88595 915 | ar_AA => 88596 1089 | el_GR => 88597 813 | iw_IL => 88598 916 |"
        "tr => 88599 920 | roman8 => roman8 1051 | ja_JP => eucJP 819 | ko_KR => eucKR 819 |"
        "zh_TW => eucTW 819 | zh => eucCN 819 | xx_YY.UTF-8 => 88591 819 | ru_ru => 88591 819 |"
        "=> 88591 819",
        [](std::istringstream& in) {
            setVariable("LANG", in.str() == "-" ? nullptr : in.str().c_str());
            char codeset[kCodesetSize];
            xnzGetCodeset(codeset);
            return std::string(codeset) + " " + std::to_string(ObtainSystemCP());
        });
}

TEST_F(Services, FormatDateAndTimeIntoTheSpaceGiven) {
    setVariable("TZ", "XXX-05:30");
    std::string minutes[2];
    check(
        "1 11 10 => 0 1 1 | 2 20 20 => 0 1 1 | 2 10 10 => 545284226 0 0 |"
        "1 20 9 => 545284226 1 0 | 1 -1 20 => 545284226 0 0 | 3 20 20 => 545284225 0 0",
        [&](std::istream& in) {
            const auto option = next<std::int16_t>(in);
            const auto dateSize = next<std::int16_t>(in);
            char date[32] = "";
            char time[32] = "";
            const std::int32_t code =
                xnzQueryDateTime2(option, date, time, dateSize, next<std::int16_t>(in));
            minutes[option % 2] = code == 0 ? std::string(time, 5) : minutes[option % 2];
            return std::to_string(code) +
                   (std::regex_match(date, std::regex("../../.. ")) ? " 1" : " 0") +
                   (std::regex_match(time, std::regex("..:..:..")) ? " 1" : " 0");
        });
    EXPECT_NE(minutes[0], minutes[1]);
    const std::time_t before = std::time(nullptr);
    xnzSleep(0);
    xnzSleep(1);
    EXPECT_GE(std::time(nullptr) - before, 1);
}

TEST_F(Services, StartOnceUnderANameInAProcess) {
    setVariable("DNZ_TRACE", "");
    dnzcsaInit = 0;
    dnzxtr_entry("first");
    const CSCtrlBlock* block = xnzCSCtrl;
    EXPECT_TRUE(dnzcsaInit == 1 && block != &block_);
    const std::string trace = ownFile("TRC");
    EXPECT_EQ(InitCommonServices("DNZ"), 0);
    EXPECT_EQ(ownFile("TRC"), trace);
    EXPECT_NE(trace.find("BuildDate"), std::string::npos);
    if (const pid_t child = fork(); child == 0) {
        InitCommonServices("DNZ");
        _exit(xnzCSCtrl != block && !ownFile("TRC").empty() ? 0 : 1);
    }
    int status = -1;
    wait(&status);
    EXPECT_EQ(status, 0);
    for (const char* name : {"DNZ", "LONGNAMES", "LONGNAMEX"}) {
        InitCommonServices(name);
    }
    EXPECT_STREQ(xnzCSCtrl->serviceName, "LONGNAM");
    EXPECT_EQ(ownFile("TRC"), "");
    xnzTermCommonServices();
}

TEST_F(Services, StopForGood) {
    setVariable("DNZ_TRACE", "");
    dnz_InitCommonServices("DNZ");
    const std::size_t start = ownFile("TRC").size();
    const std::string row = "   ! " + std::string(38, '!') + "\n";
    xnz_xtrTerminate();
    EXPECT_EQ(withoutTimes(ownFile("TRC").substr(start)),
              "T   -->xnz_xtrTerminate\nT   <--xnz_xtrTerminate (rc= OK)\n" + row +
                  "   ! Trace termination - closing trace file\n" + row);
    EXPECT_EQ(xnzTermCommonServices(), 0);
    EXPECT_EQ(xnzTermCommonServices(), 0);
    const std::int32_t depth = pCtl->depth;
    dnzxtr_entry("after the stop");
    xnztr_data("data", 4);
    EXPECT_EQ(pCtl->depth, depth);
    EXPECT_EQ(xnzCSCtrl, nullptr);
}

TEST_F(Services, TakeTwoKeysFromTheEnvironmentFile) {
    const std::string x(250, 'x');
    check(
        "DNZ_TRACE=OFF; => - ON - | #DNZ_PATH;DNZ_TRACE; => DNZ_PATH= - /tmp |"
        "x;DNZ_TRACE;DNZ_PATH=/else; => DNZ_PATH= ON /tmp | DNZ_PATHDNZ_TRACE; => DNZ_PATH= ON "
        "/tmp |"
        "a\rDNZ_TRACE; => - - - | DNZ_TRACE => - - - | " +
            x + "1234567890DNZ_TRACE; => - ON - | " + x + "DNZ_TRACE; => - - -",
        [](std::istringstream& in) {
            const auto shown = [](const char* text) { return std::string(text ? text : "-"); };
            setVariable("DNZ_TRACE", nullptr);
            setVariable("DNZ_PATH", nullptr);
            writeFile("dnz.env", std::regex_replace(in.str(), std::regex(";"), "\n"));
            const std::string found = shown(initializeFromEnvironmentFile("dnz.env"));
            return found + " " + shown(std::getenv("DNZ_TRACE")) + " " +
                   shown(std::getenv("DNZ_PATH"));
        });
    const std::string path = std::getenv("PATH");
    check(
        "- => /var/nzm:/opt/nzm/bin: | /bin => /bin:/var/nzm:/opt/nzm/bin: |"
        "/bin: => /bin:/var/nzm:/opt/nzm/bin: | /x/var/nzm2 => /x/var/nzm2",
        [](std::istringstream& in) {
            setVariable("PATH", in.str() == "-" ? nullptr : in.str().c_str());
            initializeenv();
            return std::string(std::getenv("PATH"));
        });
    setVariable("PATH", path.c_str());
    EXPECT_STREQ(std::getenv("NZCHLLIB"), "/var/nzm");
    EXPECT_STREQ(std::getenv("NZCHLTAB"), "ANZCLCHL.TAB");
    EXPECT_STREQ(std::getenv("DNZ_XLAT_PATH"), "/var/nzm/conv/table");
}

}  // namespace
