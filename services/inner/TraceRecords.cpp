#include "services/inner/TraceRecords.h"

#include <sys/time.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <new>
#include <utility>

#include "services/base/ReturnCodes.h"
#include "services/base/Text.h"
#include "services/inner/ControlBlock.h"
#include "services/inner/FunctionStack.h"
#include "services/inner/ReturnCodeNames.h"

using namespace dnz;

FunctionStackBlock* pCtl = nullptr;

namespace {

// A trace must not change what its callers see, and some of them return results in errno.
class ErrnoKeeper {
public:
    ErrnoKeeper() : saved_(errno) {}
    ~ErrnoKeeper() { errno = saved_; }
    ErrnoKeeper(const ErrnoKeeper&) = delete;
    ErrnoKeeper& operator=(const ErrnoKeeper&) = delete;

private:
    int saved_;
};

constexpr std::int32_t kColumnsPerLevel = 2;

// The "hh:mm:ss" inside the text of ctime, asked for once a second, or when the zone changes: where
// the environment names no zone, ctime looks at the system's each time. Comparing the pointer
// to the zone is enough, since a new value is at another place.
const char* timeOfDay() {
    constexpr std::size_t kOffset = 11;
    static char text[] = "--:--:--";
    static std::time_t second = -1;
    static const char* zone = nullptr;
    timeval now{};
    gettimeofday(&now, nullptr);
    if (now.tv_sec != second || std::getenv("TZ") != zone) {
        const char* whole = std::ctime(&now.tv_sec);
        std::memcpy(text, whole != nullptr ? whole + kOffset : "--:--:--", sizeof text - 1);
        second = now.tv_sec;
        zone = std::getenv("TZ");
    }
    return text;
}

constexpr char kDashes[] = "------------------------------------------------------------";
constexpr std::int32_t kMostDashes = sizeof kDashes - 1;

constexpr std::size_t kBytesPerLine = 16;
constexpr std::size_t kChunkSize = 4000;

void writeDumpLine(std::size_t offset, const unsigned char* bytes, std::size_t count) {
    FixedText<64> digits;
    char characters[kBytesPerLine + 1];
    digits.appendf("%04zX  ", offset);
    for (std::size_t i = 0; i < count; ++i) {
        digits.appendf("%02X ", static_cast<unsigned>(bytes[i]));
        characters[i] = std::isprint(bytes[i]) != 0 ? static_cast<char>(bytes[i]) : '.';
    }
    characters[count] = '\0';
    std::fprintf(xnzCSCtrl->traceFile, "         %-54.54s : %-16.16s\n", digits.c_str(),
                 characters);
    std::fflush(xnzCSCtrl->traceFile);
}

void writeIdenticalLines(int count) {
    if (count > 0) {
        std::fprintf(xnzCSCtrl->traceFile, "         --- %d lines identical to above ---\n", count);
        std::fflush(xnzCSCtrl->traceFile);
    }
}

// Dumps one chunk. Runs of equal lines are written once and counted.
void writeDumpRecord(const unsigned char* bytes, std::size_t length) {
    const std::size_t end = std::min(length, kChunkSize);
    int identicalLines = 0;
    for (std::size_t offset = 0; offset < end; offset += kBytesPerLine) {
        const unsigned char* line = bytes + offset;
        const std::size_t count = std::min(kBytesPerLine, end - offset);
        if (offset > 0 && count == kBytesPerLine &&
            std::memcmp(line, line - kBytesPerLine, kBytesPerLine) == 0) {
            ++identicalLines;
        } else {
            writeIdenticalLines(std::exchange(identicalLines, 0));
            writeDumpLine(offset, line, count);
        }
    }
    writeIdenticalLines(identicalLines);
}

// Apart from enterFunction, whose other calls are too many to carry this along.
[[gnu::cold, gnu::noinline]] char* traceEntry(const char* functionName, std::int32_t depth,
                                              char* row) {
    xnz_trchkgt(functionName, kServiceOk, kColumnsPerLevel * depth, 1);
    return row;
}

// The first entry, and every one for which there is no storage.
[[gnu::cold, gnu::noinline]] char* createStackAndEnter(const char* functionName) {
    pCtl = new (std::nothrow) FunctionStackBlock;
    if (pCtl == nullptr) {
        return traceEntry(functionName, 0, nullptr);
    }
    pCtl->depth = 0;  // says how many of the names are in use, so they needn't be cleared
    return enterFunction(functionName);
}

}  // namespace

bool dnz::isTracing() {
    return xnzCSCtrl != nullptr && xnzCSCtrl->traceIsOn == 1 && xnzCSCtrl->traceFile != nullptr;
}

char* dnz::enterFunction(const char* functionName) {
    if (xnzCSCtrl == nullptr) {
        return nullptr;
    }
    if (pCtl == nullptr) {
        return createStackAndEnter(functionName);
    }
    const std::int32_t depth = pCtl->depth++;
    char* row = depth < kFunctionStackLimit ? pCtl->names[depth] : nullptr;
    return isTracing() ? traceEntry(functionName, depth, row) : row;
}

void xnztr_entry(const char* functionName) {
    if (char* row = enterFunction(functionName); row != nullptr) {
        BoundedText(row, kFunctionNameSize).append(functionName);
    }
}

void xnztr_exit(const char* functionName, std::int32_t returnCode) {
    if (xnzCSCtrl == nullptr) {
        return;
    }
    if (pCtl != nullptr && pCtl->depth > 0) {
        --pCtl->depth;
    }
    if (isTracing()) {
        const std::int32_t depth = pCtl != nullptr ? pCtl->depth : 0;
        xnz_trchkgt(functionName, returnCode, kColumnsPerLevel * depth, 0);
    }
}

void xnztr_text(const char* text) {
    if (text != nullptr && isTracing()) {
        xnz_trcgent(kTextRecord, 0, text);
    }
}

void xnztr_data(const void* data, std::uint16_t length) {
    if (!isTracing()) {
        return;
    }
    if (data == nullptr) {
        const ErrnoKeeper keeper;
        std::fputs("  has NULL pointer\n", xnzCSCtrl->traceFile);
        std::fflush(xnzCSCtrl->traceFile);
        return;
    }
    const auto* bytes = static_cast<const unsigned char*>(data);
    for (std::size_t done = 0; done < length; done += kChunkSize) {
        const std::size_t chunk = std::min<std::size_t>(kChunkSize, length - done);
        xnz_trcgent(kDumpRecord, static_cast<std::int32_t>(chunk), bytes + done);
    }
}

void xnz_xtrFormatRC(char* out, std::int32_t returnCode) {
    constexpr std::int32_t kLargestPlainNumber = 99;
    BoundedText text(out, kReturnCodeTextSize);
    if (returnCode == kServiceOk) {
        text.append("OK");
        return;
    }
    if (returnCode <= kLargestPlainNumber) {
        text.appendf("%" PRId32, returnCode);
        return;
    }
    const ReturnCodeName& row = findReturnCodeName(returnCode);
    text.append(row.name);
    if (row.code == kReturnCodeNamesEnd) {
        text.appendf(" (%" PRIX32 ") (%" PRId32 ")", static_cast<std::uint32_t>(returnCode),
                     returnCode);
    }
}

[[gnu::cold]] void xnz_trchkgt(const char* functionName, std::int32_t returnCode,
                               std::int32_t indentation, std::int32_t isEntry) {
    if (!isTracing()) {
        return;
    }
    const ErrnoKeeper keeper;
    const int dashes = std::min(indentation, kMostDashes - 2) + 2;
    const char* time = timeOfDay();
    if (isEntry == 1) {
        std::fprintf(xnzCSCtrl->traceFile, "%s\n   %.*s>%s\n", time, dashes, kDashes, functionName);
    } else {
        char codeText[kReturnCodeTextSize];
        xnz_xtrFormatRC(codeText, returnCode);
        std::fprintf(xnzCSCtrl->traceFile, "%s\n   <%.*s%s (rc= %s)\n", time, dashes, kDashes,
                     functionName, codeText);
    }
    std::fflush(xnzCSCtrl->traceFile);
}

[[gnu::cold]] void xnz_trcgent(std::int32_t kind, std::int32_t length, const void* data) {
    if (!isTracing() || data == nullptr) {
        return;
    }
    const ErrnoKeeper keeper;
    if (kind == kTextRecord) {
        std::fprintf(xnzCSCtrl->traceFile, "   ! %s\n", static_cast<const char*>(data));
        std::fflush(xnzCSCtrl->traceFile);
    } else if (kind == kDumpRecord && length > 0) {
        writeDumpRecord(static_cast<const unsigned char*>(data), static_cast<std::size_t>(length));
    }
}
