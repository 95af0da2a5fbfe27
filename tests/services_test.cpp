#include "support/Services.h"

#include <sys/wait.h>

#include <cerrno>
#include <ctime>

#include "services/base/ReturnCodes.h"
#include "services/base/Text.h"
#include "services/inner/Codesets.h"
#include "services/inner/ControlBlock.h"
#include "services/inner/OutputFiles.h"
#include "services/inner/ReturnCodeNames.h"
#include "services/inner/SystemInformation.h"
#include "services/inner/TraceRecords.h"
#include "services/outer/Environment.h"
#include "services/outer/MessageText.h"
#include "services/outer/ServiceCalls.h"
#include "services/outer/StartStop.h"

using namespace dnz;

namespace {

std::string ownFile(const char* extension) {
    return contentsOf(OutputFileName(extension).c_str());
}

const char* valueOf(const std::string& text) {
    return text == "-" ? nullptr : text.c_str();
}

TEST_F(Services, ReadNumbersWithoutOverflow) {
    check(
        "=> 0 | x1 => 0 | -12x => -12 | 0078 => 78 | - 1 => 0 | 99999999999 => 2147483647 |"
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
    EXPECT_EQ(stack(), "\nNo Function Stack Stored\n\n");
    const std::string label(40, 'f');
    const std::string dashes(60, '-');
    std::string names = "\n  Stored Function Stack\n  =====================\n\n";
    const std::string records = traced([&] {
        errno = EINVAL;
        for (int depth = 0; depth < 31; ++depth) {
            xnztr_entry(label.c_str());
            names += depth < 20 ? label.substr(1) + "\n" : "";
        }
        xnztr_text(nullptr);
        EXPECT_EQ(stack(), names + "\n");
        for (int depth = 0; depth < 32; ++depth) {
            xnztr_exit("f", -1);
        }
        EXPECT_EQ(errno, EINVAL);
    });
    const std::string entry = dashes + ">" + label + "\nT   ";
    EXPECT_NE(records.find("T   " + entry.substr(2) + entry + entry + "<" + dashes + "f (rc"),
              records.npos);
    EXPECT_TRUE(records.ends_with("T   <--f (rc= -1)\nT   <--f (rc= -1)\n"));
    EXPECT_EQ(stack(), "\nNo Entries in Function Stack\n\n");
}

TEST_F(Services, NameReturnCodesOrSpellThem) {
    check(
        R"(0 => OK | 1 => 1 | 99 => 99 | -2147483648 => -2147483648 | 2294 => NZRC_UNKNOWN_REF_OBJECT
        100 => Not found in retcode translation table (64) (100) | 536895543 => xecS_E_NONE
        2147483647 => Not found in retcode translation table (7FFFFFFF) (2147483647)
        536895769 => xecF_E_UNEXPECTED_SYSTEM_RC | 2120 => NZRC_CONVERTED_MSG_TOO_BIG)",
        [](std::istream& in) {
            char text[kReturnCodeTextSize];
            xnz_xtrFormatRC(text, next<std::int32_t>(in));
            return std::string(text);
        });
}

TEST_F(Services, HaveTheTablesThatWereCompared) {
    std::ostringstream rows;
    for (const ReturnCodeName& row : xnzRetList) {
        rows << row.code << ' ' << row.name << '\n';
    }
    for (const LocaleCodeset* row = xxxCodesetInfo; row->locale != nullptr; ++row) {
        rows << row->locale << ' ' << row->codeset << '\n';
    }
    std::uint32_t hash = 2166136261;  // FNV-1a
    for (const char byte : rows.str()) {
        hash = (hash ^ static_cast<unsigned char>(byte)) * 16777619;
    }
    EXPECT_EQ(hash, 0x7793A29C);
}

TEST_F(Services, DumpLinesOfSixteenBytes) {
    const std::string zeros =
        "         0000  00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00  : ................\n";
    const std::string same = " lines identical to above ---\n";
    const std::string text = std::string(5009, '\0') + "Hello, world!\377";
    const std::string records = traced([&] {
        xnztr_data(text.data(), 5009);
        xnztr_data(nullptr, 5);
        xnztr_data(text.data() + 5007, 18);
        xnz_trcgent(kDumpRecord + 1, 3, "abc");
        xnz_trcgent(kDumpRecord, 0, "abc");
    });
    EXPECT_EQ(std::regex_replace(records, std::regex(" {14,}"), "~"),
              zeros + "         --- 249" + same + zeros + "         --- 62" + same +
                  "         03F0  00~: .~\n  has NULL pointer\n         0000  00 00 48 65 6C 6C 6F "
                  "2C 20 77 6F 72 6C 64 21 FF  : ..Hello, world!.\n         0010  00 00~: ..~\n");
}

TEST_F(Services, ReportInOneFileButNotIntoAReport) {
    dnzcsaInit = 1;
    const std::regex report("Name     :- first_function!!![^+]*Minor Errorcode   :- OK[^+]*[+]");
    for (const auto& [isInReport, reports] : {std::pair{0, 1}, {1, 1}, {0, 2}}) {
        block_.inFailureReport = isInReport;
        EXPECT_EQ(dnz_xcsWYRD(nullptr, 65535, 7, {}), 0);
        const std::string text = ownFile("FDC");
        EXPECT_EQ(std::distance(std::sregex_iterator(text.begin(), text.end(), report), {}),
                  reports);
    }
    EXPECT_EQ(block_.inFailureReport, 0);
}

TEST_F(Services, TakeTheCodePageFromTheLocale) {
    check(
        R"(- => 88591 819 | POSIX => 88591 819 | de_DE => 88591 819 | pl_PL => 88592 912 | => 88591 819
        ru_RU => 88595 915 | ar_AA => 88596 1089 | el_GR => 88597 813 | iw_IL => 88598 916
        tr => 88599 920 | roman8 => roman8 1051 | ja_JP => eucJP 819 | ko_KR => eucKR 819
        zh_TW => eucTW 819 | zh => eucCN 819 | xx_YY.UTF-8 => 88591 819 | ru_ru => 88591 819)",
        [](std::istringstream& in) {
            setVariable("LANG", valueOf(in.str()));
            char codeset[kCodesetSize];
            xnzGetCodeset(codeset);
            return std::string(codeset) + " " + std::to_string(ObtainSystemCP());
        });
}

TEST_F(Services, FormatDateAndTimeIntoTheSpaceGiven) {
    setVariable("TZ", "XXX-05:30");
    std::string minutes[2];
    // Option, space for the date and for the time => code, and what is written.
    check(
        "1 11 10 => 0 99/99/99 99:99:99 | 2 20 20 => 0 99/99/99 99:99:99 | 2 10 10 => 20806082 |"
        "1 20 9 => 20806082 | 1 -1 20 => 20806082 | 3 20 20 => 20806081",
        [&](std::istream& in) {
            const auto option = next<std::int16_t>(in);
            const auto dateSize = next<std::int16_t>(in);
            char date[32] = "";
            char time[32] = "";
            const std::int32_t code =
                xnzQueryDateTime2(option, date, time, dateSize, next<std::int16_t>(in));
            minutes[option % 2] = code == 0 ? std::string(time, 5) : minutes[option % 2];
            std::ostringstream result;
            const std::string both = code == 0 ? std::string(date) + time : "";
            result << std::hex << code << ' ' << std::regex_replace(both, std::regex("\\d"), "9");
            return result.str();
        });
    EXPECT_NE(minutes[0], minutes[1]);
    const std::time_t before = std::time(nullptr);
    xnzSleep(1);
    EXPECT_GE(std::time(nullptr) - before, 1);
}

TEST_F(Services, StartOnceUnderANameInAProcessAndStopForGood) {
    setVariable("DNZ_TRACE", "u");
    setVariable("DNZ_PATH", "./");
    dnzcsaInit = 0;
    dnzxtr_entry("first");
    EXPECT_EQ(xtrTraceIsOn + xtrUserTrace, 2);
    for (void (*call)() :
         {+[] { dnzxtr_text("text"); }, +[] { dnzxtr_exit("exit", 0); },
          +[] { TraceScope scope("scope"); }, +[] { static_cast<void>(startAndAskTracing()); },
          +[] { dnz_xcsWYRD(nullptr, 1, 1, {}); }, +[] { MessageText(1000); }}) {
        dnzcsaInit = 0;
        call();
        EXPECT_EQ(dnzcsaInit, 1);
    }
    const CSCtrlBlock* block = xnzCSCtrl;
    EXPECT_TRUE(dnzcsaInit == 1 && block != &block_);
    const std::string trace = ownFile("TRC");
    EXPECT_TRUE(InitCommonServices("DNZ") == 0 && xnzCSCtrl == block && ownFile("TRC") == trace);
    if (const pid_t child = fork(); child == 0) {
        InitCommonServices("DNZ");
        _exit(xnzCSCtrl != block && !ownFile("TRC").empty() ? 0 : 1);
    }
    int status = -1;
    wait(&status);
    EXPECT_EQ(status, 0);
    for (const char* name : {"LONGNAMES", "LONGNAMEX"}) {
        InitCommonServices(name);
    }
    EXPECT_TRUE(xnzCSCtrl->serviceName == std::string("LONGNAM") && ownFile("TRC").empty());
    xnz_xtrOpenTraceFile("stop");
    const std::size_t start = contentsOf("stop").size();
    EXPECT_EQ(xnzTermCommonServices() + xnzTermCommonServices(), 0);
    EXPECT_EQ(xnz_xtrInitialize() + xnz_xtrTerminate(), 0);
    EXPECT_EQ(xnz_xtrOpenTraceFile("none"), xecX_E_SERVICE_UNAVAILABLE);
    const std::string row = "   ! " + std::string(38, '!') + "\n";
    const std::string end = "T   ---->xnz_xtrTerminate\nT   <----xnz_xtrTerminate (rc= OK)\n";
    EXPECT_TRUE(withoutTimes(contentsOf("stop").substr(start))
                    .ends_with(end + row + "   ! Trace termination - closing trace file\n" + row));
    const std::int32_t depth = pCtl->depth;
    dnzxtr_entry("after the stop");
    xnztr_data("data", 4);
    EXPECT_TRUE(pCtl->depth == depth && xnzCSCtrl == nullptr);
}

TEST_F(Services, TakeTwoKeysFromTheEnvironmentFile) {
    const std::string x(245, 'x');
    check(
        "DNZ_TRACE=OFF; => - ON - | #DNZ_PATH;DNZ_TRACE; => DNZ_PATH= - /tmp |"
        "x;DNZ_TRACE;DNZ_PATH=/else; => DNZ_PATH= ON /tmp | DNZ_TRACE => - - - |"
        "a\rDNZ_TRACE; => - - - | " +
            x + "DNZ_TRACE; => - ON - | " + x + "xDNZ_TRACE; => - - -",
        [](std::istringstream& in) {
            const auto shown = [](const char* text) { return std::string(text ? text : "-"); };
            setVariable("DNZ_TRACE", nullptr);
            setVariable("DNZ_PATH", nullptr);
            writeFile("dnz.env", std::regex_replace(in.str(), std::regex(";"), "\n"));
            const std::string found = shown(initializeFromEnvironmentFile("dnz.env"));
            return found + " " + shown(getenv("DNZ_TRACE")) + " " + shown(getenv("DNZ_PATH"));
        });
    const std::string path = getenv("PATH");
    const std::string set = " /var/nzm ANZCLCHL.TAB /var/nzm/conv/table";
    check("- => /var/nzm:/opt/nzm/bin:" + set + " | /bin => /bin:/var/nzm:/opt/nzm/bin:" + set +
              "| /bin: => /bin:/var/nzm:/opt/nzm/bin:" + set + " | /x/var/nzm2 => /x/var/nzm2" +
              set,
          [](std::istringstream& in) {
              setVariable("PATH", valueOf(in.str()));
              initializeenv();
              return getenv("PATH") + std::string(" ") + getenv("NZCHLLIB") + " " +
                     getenv("NZCHLTAB") + " " + getenv("DNZ_XLAT_PATH");
          });
    setVariable("PATH", path.c_str());
}

}  // namespace
