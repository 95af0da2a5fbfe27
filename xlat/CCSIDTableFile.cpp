#include "xlat/CCSIDTableFile.h"

#include <cstdint>
#include <limits>

#include "services/base/Path.h"
#include "services/base/Text.h"
#include "services/inner/TraceRecords.h"
#include "xlat/ConverterCache.h"

namespace dnz {

namespace {

constexpr char kUpperCaseName[] = "DNZCCSID.TBL";
constexpr char kLowerCaseName[] = "ccsid.tbl";

constexpr std::size_t kTableLineSize = 256;
constexpr char kCommentMark = '#';

enum Column { kCcsid, kDbcsPage, kSbcsPage, kWidthClass, kEncodingClass, kLeadByteClass, kColumns };

bool openTable(FileReader& file, const Path& path) {
    return path.fits() && file.use(openFile(path.c_str()));
}

bool isSeparator(char character) {
    return character == ' ' || (character >= '\t' && character <= '\r');
}

// Cuts the line into its first six columns, each terminated in place; returns how many it has.
int splitColumns(char* line, const char* (&columns)[kColumns]) {
    int count = 0;
    while (*line != '\0' && count < kColumns) {
        if (isSeparator(*line)) {
            ++line;
            continue;
        }
        columns[count++] = line;
        while (*line != '\0' && !isSeparator(*line)) {
            ++line;
        }
        if (*line != '\0') {
            *line++ = '\0';
        }
    }
    return count;
}

bool isPage(std::int32_t number) {
    return number >= 0 && number <= kLargestPage;
}

void formatPage(char (&text)[kPageTextSize], std::int32_t page) {
    BoundedText(text).appendf("%04lx", static_cast<unsigned long>(page));
}

// Fills the entry from its columns; returns why they can't be used, or null if they can.
const char* parseColumns(const char* const (&columns)[kColumns], CCSIDEntry& entry) {
    entry.ccsid = leadingNumber(columns[kCcsid]);
    entry.dbcsPage = leadingNumber(columns[kDbcsPage]);
    entry.sbcsPage = leadingNumber(columns[kSbcsPage]);
    entry.widthClass = leadingNumber(columns[kWidthClass]);
    entry.encodingClass = leadingNumber(columns[kEncodingClass]);
    entry.leadByteClass = leadingNumber(columns[kLeadByteClass]);
    if (!isPage(entry.dbcsPage) || !isPage(entry.sbcsPage)) {
        return "a page number outside 0 to 65535";
    }
    formatPage(entry.sbcsPageHex, entry.sbcsPage);
    formatPage(entry.dbcsPageHex, entry.dbcsPage);
    return nullptr;
}

// The tree while it grows. A search begins at the last place if the CCSID belongs below it. So a
// sorted file, which gives a chain, is read in linear time.
class GrowingTree {
public:
    void setEntry(const CCSIDEntry& entry) {
        moveTo(entry.ccsid);
        if (*place_ != nullptr) {
            copyEntry(entry, **place_);
        } else {
            xxxInsertNode(place_, &entry);
        }
    }

    [[nodiscard]] CCSIDNode* root() const { return root_; }

private:
    static constexpr std::int64_t kBelowAll = std::numeric_limits<std::int64_t>::min();
    static constexpr std::int64_t kAboveAll = std::numeric_limits<std::int64_t>::max();

    // Goes to the place where the CCSID is or belongs.
    void moveTo(std::int32_t ccsid) {
        if (ccsid <= above_ || ccsid >= below_) {
            place_ = &root_;
            above_ = kBelowAll;
            below_ = kAboveAll;
        }
        while (*place_ != nullptr && (*place_)->ccsid != ccsid) {
            CCSIDNode* node = *place_;
            if (ccsid < node->ccsid) {
                below_ = node->ccsid;
                place_ = &node->left;
            } else {
                above_ = node->ccsid;
                place_ = &node->right;
            }
        }
    }

    CCSIDNode* root_ = nullptr;
    CCSIDNode** place_ = &root_;
    // Only CCSIDs between these two belong to the place or below it.
    std::int64_t above_ = kBelowAll;
    std::int64_t below_ = kAboveAll;
};

void traceSkippedLine(int lineNumber, const char* reason) {
    FixedText<96> text;
    text.appendf("Line %d of the CCSID table skipped: %s", lineNumber, reason);
    xnztr_text(text.c_str());
}

}  // namespace

bool openCcsidTable(FileReader& file) {
    const char* directory = tableDirectory();
    if (openTable(file, Path(directory, kUpperCaseName))) {
        return true;
    }
    if (directory != nullptr) {
        xnztr_text("Failed to open DNZCCSID.TBL");
    }
    const Path lowerCase(directory, kLowerCaseName);
    if (openTable(file, lowerCase)) {
        return true;
    }
    xnztr_text("Failed to open ccsid.tbl");
    xnztr_text("Failed to open DNZCCSID.TBL or dnzccsid.tbl ....");
    xnztr_text(lowerCase.c_str());
    return false;
}

CCSIDNode* readCcsidTable(FileReader& file) {
    GrowingTree tree;
    char line[kTableLineSize];
    for (int lineNumber = 1; file.readLine(line, sizeof line); ++lineNumber) {
        if (line[0] == kCommentMark) {
            continue;
        }
        const char* columns[kColumns];
        const int count = splitColumns(line, columns);
        if (count == 0) {
            continue;
        }
        CCSIDEntry entry{};
        const char* reason =
            count < kColumns ? "fewer than six columns" : parseColumns(columns, entry);
        if (reason != nullptr) {
            traceSkippedLine(lineNumber, reason);
        } else {
            tree.setEntry(entry);
        }
    }
    return tree.root();
}

}  // namespace dnz
