#include "services/inner/FailureReport.h"

#include <algorithm>
#include <cstdarg>
#include <ctime>
#include <string_view>
#include <utility>

#include "services/base/File.h"
#include "services/base/Path.h"
#include "services/base/ReturnCodes.h"
#include "services/base/Text.h"
#include "services/inner/BuildInformation.h"
#include "services/inner/ControlBlock.h"
#include "services/inner/FunctionStack.h"
#include "services/inner/OutputFiles.h"
#include "services/inner/TraceControl.h"
#include "services/inner/TraceRecords.h"

using namespace dnz;

std::FILE* fdcFile = nullptr;

namespace {

constexpr std::size_t kFirstRowText = 75;
constexpr std::size_t kSecondRowText = 70;
constexpr std::size_t kInnerWidth = 77;
constexpr char kBorder[] =
    "+-----------------------------------------------------------------------------+\n";

// One box row: the border, the indentation, the text, spaces up to the other border.
void appendRow(BoundedText& line, std::string_view indentation, std::string_view text) {
    const int rest = static_cast<int>(kInnerWidth - indentation.size());
    line.append("|").append(indentation);
    line.appendf("%-*.*s|\n", rest, static_cast<int>(text.size()), text.data());
}

void printRow(const char* row, std::FILE* stream) {
    std::fputs(row, stream);
    std::fflush(stream);
}

// The current time in the format of ctime, without its line feed. Borrowed from the C library,
// since a report may be about storage that can't be obtained.
std::string_view currentTime() {
    const std::time_t now = std::time(nullptr);
    const std::string_view text = viewOf(std::ctime(&now));
    return text.substr(0, text.find('\n'));
}

// What a report shows for a comment, which may be missing.
const char* commentOf(const char* text) {
    return text != nullptr ? text : " ";
}

// Writes one text of the box, formatted as by printf.
[[gnu::format(printf, 2, 3)]] void printText(std::FILE* stream, const char* format, ...) {
    FixedText<kReportLineSize> text;
    std::va_list arguments;
    va_start(arguments, format);
    text.vappendf(format, arguments);
    va_end(arguments);
    char line[kReportLineSize];
    PrintString(line, stream, text.c_str());
}

StreamHandle openReportFile() {
    const OutputFileName name("FDC");
    const char* directory = outputDirectory();
    const Path path(directory, name.view());
    StreamHandle file;
    if (directory != nullptr && path.fits()) {
        file = openPrivateStream(path.c_str(), "a");
    }
    return file != nullptr ? std::move(file) : openPrivateStream(name.c_str(), "a");
}

}  // namespace

std::int32_t xnz_xcsWYRD(const char* functionName, std::int32_t probe, xcsINSERTS inserts) {
    const ServiceTraceScope trace("xnz_xcsWYRD");
    if (xnzCSCtrl == nullptr || xnzCSCtrl->inFailureReport != 0) {
        return kServiceOk;
    }
    xnzCSCtrl->inFailureReport = 1;
    if (fdcFile == nullptr) {
        fdcFile = openReportFile().release();
    }
    CreateWYRD(functionName, probe, inserts);
    xnzCSCtrl->inFailureReport = 0;
    return kServiceOk;
}

std::int32_t CreateWYRD(const char* functionName, std::int32_t probe, xcsINSERTS inserts) {
    if (fdcFile == nullptr) {
        return kServiceOk;
    }
    const std::string_view time = currentTime();
    char line[kReportLineSize];
    char majorCode[kReturnCodeTextSize];
    char minorCode[kReturnCodeTextSize];
    xnz_xtrFormatRC(majorCode, inserts.number1);
    xnz_xtrFormatRC(minorCode, inserts.number2);
    PrintTop(line, fdcFile);
    PrintBlank(line, fdcFile);
    printText(fdcFile, "  HVL First Failure Symptom Report");
    printText(fdcFile, "====================================");
    PrintBlank(line, fdcFile);
    printText(fdcFile, "Date/Time         :- %.*s", static_cast<int>(time.size()), time.data());
    printText(fdcFile, "Code Level           :- %-63.63s", xnz_level);
    printText(fdcFile, "Function Name     :- %-63.63s", functionName);
    printText(fdcFile, "Probe Id          :- HVL%d", probe);
    printText(fdcFile, "Build Date        :- %s", kBuildDate);
    printText(fdcFile, "Major Errorcode   :- %s ", majorCode);
    printText(fdcFile, "Minor Errorcode   :- %s ", minorCode);
    printText(fdcFile, "Comment1          :- %-63.63s", commentOf(inserts.text1));
    printText(fdcFile, "Comment2          :- %-63.63s", commentOf(inserts.text2));
    printText(fdcFile, "Comment3          :- %-63.63s", commentOf(inserts.text3));
    PrintBlank(line, fdcFile);
    PrintBot(line, fdcFile);
    PrintFunctionStack(fdcFile);
    return kServiceOk;
}

void PrintTop(char* line, std::FILE* stream) {
    BoundedText(line, kReportLineSize).append(kBorder);
    printRow(line, stream);
}

void PrintBot(char* line, std::FILE* stream) {
    PrintTop(line, stream);
}

void PrintBlank(char* line, std::FILE* stream) {
    PrintString(line, stream, "");
}

void PrintString(char* line, std::FILE* stream, const char* text) {
    printRow(FormatString(line, text), stream);
}

char* FormatString(char* line, const char* text) {
    const std::string_view whole = text;
    BoundedText rows(line, kReportLineSize);
    appendRow(rows, " ", whole.substr(0, kFirstRowText));
    if (whole.size() > kFirstRowText) {
        appendRow(rows, "      ", whole.substr(kFirstRowText, kSecondRowText));
    }
    return line;
}

void PrintFunctionStack(std::FILE* stream) {
    std::fputs("\n", stream);
    if (pCtl == nullptr) {
        std::fputs("No Function Stack Stored\n", stream);
    } else if (pCtl->depth == 0) {
        std::fputs("No Entries in Function Stack\n", stream);
    } else {
        std::fputs("  Stored Function Stack\n  =====================\n\n", stream);
        const std::int32_t stored = std::min(pCtl->depth, kFunctionStackLimit);
        for (std::int32_t level = 0; level < stored; ++level) {
            std::fprintf(stream, "%s\n", pCtl->names[level]);
        }
    }
    std::fputs("\n", stream);
    std::fflush(stream);
}
