#include "FailureReport.h"

#include <algorithm>
#include <ctime>
#include <string_view>

#include "BoundedText.h"
#include "BuildInformation.h"
#include "ControlBlock.h"
#include "FunctionStack.h"
#include "PrivateFile.h"
#include "ReturnCodes.h"
#include "ServiceNames.h"
#include "TraceControl.h"
#include "TraceRecords.h"

std::FILE* fdcFile = nullptr;

namespace {

constexpr std::size_t kFirstRowText = 75;
constexpr std::size_t kSecondRowText = 70;
constexpr std::size_t kInnerWidth = 77;

constexpr char kAppend[] = "a";

// One box row: the border, the indentation, the text, blanks up to the other border.
void appendRow(BoundedText& line, const char* indentation, std::string_view text) {
    const std::string_view indent = indentation;
    const int rest = static_cast<int>(kInnerWidth - indent.size());
    line.append("|").append(indent);
    line.appendf("%-*.*s", rest, static_cast<int>(text.size()), text.data());
    line.append("|\n");
}

void printRow(const char* row, std::FILE* stream) {
    std::fputs(row, stream);
    std::fflush(stream);
}

void printBorder(char* line, std::FILE* stream) {
    BoundedText text(line, kReportLineSize);
    text.append("+");
    for (std::size_t i = 0; i < kInnerWidth; ++i) {
        text.append("-");
    }
    text.append("+\n");
    printRow(line, stream);
}

// The present time as ctime gives it, without its line feed.
void appendNow(BoundedText& text) {
    const std::time_t now = std::time(nullptr);
    const char* date = std::ctime(&now);
    if (date != nullptr) {
        const std::string_view line = date;
        text.append(line.substr(0, line.find('\n')));
    }
}

// The labelled rows of one report, written one after the other.
class ReportRows {
public:
    explicit ReportRows(std::FILE* stream) : stream_(stream) {}

    void blank() { PrintBlank(line_, stream_); }
    void top() { PrintTop(line_, stream_); }
    void bottom() { PrintBot(line_, stream_); }
    void text(const char* text) { PrintString(line_, stream_, text); }

    void date() {
        BoundedText row(row_);
        row.append("Date/Time         :- ");
        appendNow(row);
        text(row_);
    }
    // A row whose text is cut or padded to 63 characters.
    void field(const char* label, const char* value) {
        BoundedText(row_).appendf("%s:- %-63.63s", label, value != nullptr ? value : " ");
        text(row_);
    }
    void probe(std::int32_t number) {
        BoundedText(row_).appendf("Probe Id          :- HVL%d", number);
        text(row_);
    }
    void buildDate() {
        BoundedText(row_).appendf("Build Date        :- %s", kBuildDate);
        text(row_);
    }
    void code(const char* label, std::int32_t code) {
        char codeText[kReturnCodeTextSize];
        xnz_xtrFormatRC(codeText, code);
        BoundedText(row_).appendf("%s:- %s ", label, codeText);
        text(row_);
    }

private:
    std::FILE* stream_;
    char line_[kReportLineSize];
    char row_[kReportLineSize];
};

std::FILE* openReportFile() {
    char nameBuffer[kPathSize];
    BoundedText name(nameBuffer);
    appendServiceFileName(name, "FDC");
    std::FILE* file = nullptr;
    if (const char* directory = serviceDirectory(); directory != nullptr) {
        char pathBuffer[kPathSize];
        BoundedText path(pathBuffer);
        appendDirectory(path, directory);
        path.append(nameBuffer);
        file = path.truncated() ? nullptr : openPrivateFile(pathBuffer, kAppend);
    }
    return file != nullptr ? file : openPrivateFile(nameBuffer, kAppend);
}

void writeReport(const char* functionName, std::int32_t probe, const xcsINSERTS& inserts) {
    xnzCSCtrl->inFailureReport = 1;
    if (fdcFile == nullptr) {
        fdcFile = openReportFile();
    }
    if (fdcFile != nullptr) {
        CreateWYRD(functionName, probe, inserts);
    }
    xnzCSCtrl->inFailureReport = 0;
}

}  // namespace

std::int32_t xnz_xcsWYRD(const char* functionName, std::int32_t probe, xcsINSERTS inserts) {
    const ServiceTraceScope trace("xnz_xcsWYRD");
    if (xnzCSCtrl != nullptr && xnzCSCtrl->inFailureReport == 0) {
        writeReport(functionName, probe, inserts);
    }
    return kServiceOk;
}

std::int32_t CreateWYRD(const char* functionName, std::int32_t probe, xcsINSERTS inserts) {
    if (fdcFile == nullptr) {
        return kServiceOk;
    }
    ReportRows rows(fdcFile);
    rows.top();
    rows.blank();
    rows.text("  HVL First Failure Symptom Report");
    rows.text("====================================");
    rows.blank();
    rows.date();
    rows.field("Code Level           ", xnz_level);
    rows.field("Function Name     ", functionName);
    rows.probe(probe);
    rows.buildDate();
    rows.code("Major Errorcode   ", inserts.number1);
    rows.code("Minor Errorcode   ", inserts.number2);
    rows.field("Comment1          ", inserts.text1);
    rows.field("Comment2          ", inserts.text2);
    rows.field("Comment3          ", inserts.text3);
    rows.blank();
    rows.bottom();
    PrintFunctionStack(fdcFile);
    return kServiceOk;
}

void PrintTop(char* line, std::FILE* stream) {
    printBorder(line, stream);
}

void PrintBot(char* line, std::FILE* stream) {
    printBorder(line, stream);
}

void PrintBlank(char* line, std::FILE* stream) {
    BoundedText text(line, kReportLineSize);
    appendRow(text, "", "");
    printRow(line, stream);
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
