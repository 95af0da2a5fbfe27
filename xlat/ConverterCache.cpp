#include "xlat/ConverterCache.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "services/base/File.h"
#include "services/base/Path.h"
#include "services/base/Text.h"
#include "services/inner/TraceRecords.h"

using namespace dnz;

ConvSlot* iconv_list = nullptr;
std::int32_t iconv_list_size = 0;

namespace {

constexpr char kInUseTag[] = "ICNV";
constexpr char kGivenUpTag[] = "????";
constexpr std::int32_t kSlotsPerGrowth = 50;
constexpr std::int32_t kMostSlots = kUnchangedPart - 1;

constexpr std::size_t kSingleByteTableSize = 256;
constexpr std::size_t kDoubleByteHeadSize = 512;  // a table must have more than this
constexpr std::size_t kLargestTableSize = 0x20000;
// Rows 0 to 127, all that row numbers reach. Storage for all of them saves the engines a test of
// each row.
constexpr std::size_t kReachableTableSize = 0x10000;

constexpr char kNoPagesKey[] = "00000000";
constexpr std::size_t kTableNameLength = 12;  // a key and an extension

constexpr std::int32_t kNotLoaded = -1;

using TableBytes = std::unique_ptr<unsigned char[]>;

// How loading differs between the two kinds of tables.
struct TableKind {
    const char* openingText;
    int (*load)(const FileDescriptor& file, ConvSlot& slot);  // 0 or an errno
};

bool isInUse(const ConvSlot& slot) {
    return std::memcmp(slot.tag, kInUseTag, kTagSize) == 0;
}

// The part of the handle of a loaded table, or kNotLoaded.
std::int32_t findPart(std::string_view key) {
    for (std::int32_t number = 0; number < iconv_list_size; ++number) {
        if (isInUse(iconv_list[number]) && key == iconv_list[number].key) {
            return number + 1;
        }
    }
    return kNotLoaded;
}

bool enlargeList() {
    const std::int32_t size = iconv_list_size + kSlotsPerGrowth;
    auto* list = new (std::nothrow) ConvSlot[static_cast<std::size_t>(size)]{};
    if (list == nullptr) {
        return false;
    }
    std::copy_n(iconv_list, iconv_list_size, list);
    delete[] iconv_list;
    iconv_list = list;
    iconv_list_size = size;
    return true;
}

// A slot that may be filled, or null if there is no space for another.
ConvSlot* slotToFill() {
    std::int32_t number = 0;
    while (number < iconv_list_size && isInUse(iconv_list[number])) {
        ++number;
    }
    if (number == kMostSlots || (number == iconv_list_size && !enlargeList())) {
        return nullptr;
    }
    return &iconv_list[number];
}

// A file in a directory whose name was cut counts as missing.
FileDescriptor openTable(const BoundedText& directory, std::string_view key,
                         std::string_view extension) {
    FixedText<kPathSize + kTableNameLength> path(directory.view());
    path.append(key).append(extension);
    errno = 0;  // the error of an earlier call must not explain a failure here
    xnztr_text(path.c_str());
    return directory.truncated() ? FileDescriptor{} : openFile(path.c_str());
}

FileDescriptor openTableFile(std::string_view key, const TableKind& kind) {
    const char* named = tableDirectory();
    FixedText<kPathSize> directory;
    Path::appendDirectory(directory, named != nullptr ? named : ".");
    xnztr_text(kind.openingText);
    FileDescriptor file = openTable(directory, key, ".tbl");
    if (file.isOpen()) {
        return file;
    }
    xnztr_text("xxxOpenConv: retrying.........");
    xnztr_text("xxxOpenConv: About to try opening (UC) ....");
    std::string upperCaseKey(key);
    std::transform(key.begin(), key.end(), upperCaseKey.begin(), upperCase);
    return openTable(directory, upperCaseKey, ".TBL");
}

TableBytes allocateTable(std::size_t size) {
    return TableBytes(new (std::nothrow) unsigned char[size]{});
}

void setTable(ConvSlot& slot, TableBytes bytes, std::size_t size) {
    slot.table = bytes.release();
    slot.tableSize = static_cast<std::int32_t>(size);
}

int loadSingleByteTable(const FileDescriptor& file, ConvSlot& slot) {
    TableBytes bytes = allocateTable(kSingleByteTableSize);
    if (bytes == nullptr) {
        return ENOMEM;
    }
    const ssize_t count = read(file.number(), bytes.get(), kSingleByteTableSize);
    if (count != static_cast<ssize_t>(kSingleByteTableSize)) {
        return EINVAL;
    }
    setTable(slot, std::move(bytes), kSingleByteTableSize);
    return 0;
}

int loadDoubleByteTable(const FileDescriptor& file, ConvSlot& slot) {
    TableBytes largest = allocateTable(kLargestTableSize);
    if (largest == nullptr) {
        return ENOMEM;
    }
    const ssize_t count = read(file.number(), largest.get(), kLargestTableSize);
    if (count <= static_cast<ssize_t>(kDoubleByteHeadSize)) {
        return EINVAL;
    }
    const auto size = static_cast<std::size_t>(count);
    TableBytes fitting = allocateTable(std::max(size, kReachableTableSize));
    if (fitting == nullptr) {
        // The large array serves as well: it contains zeros after the bytes read.
        setTable(slot, std::move(largest), kLargestTableSize);
        return 0;
    }
    std::copy_n(largest.get(), size, fitting.get());
    setTable(slot, std::move(fitting), size);
    return 0;
}

constexpr TableKind kSingleByteKind = {"xxxOpenConv: About to try opening (LC) ....",
                                       loadSingleByteTable};
constexpr TableKind kDoubleByteKind = {"xxxOpenConv: About to try opening (LC)....",
                                       loadDoubleByteTable};

// 0 or an errno.
int fillSlot(ConvSlot& slot, const TableKind& kind) {
    const FileDescriptor file = openTableFile(slot.key, kind);
    if (!file.isOpen()) {
        xnztr_text("xxxOpenConv: Open failed.");
        return EINVAL;
    }
    xnztr_text("xxxOpenConv: Open was sucessful.");
    return kind.load(file, slot);
}

// Loads a table; returns its part of the handle, or kNotLoaded with errno set.
std::int32_t loadTable(std::string_view key, std::int32_t leadByteClass, const TableKind& kind) {
    ConvSlot* slot = slotToFill();
    if (slot == nullptr) {
        errno = ENOMEM;
        return kNotLoaded;
    }
    BoundedText(slot->key).append(key);
    slot->leadByteClass = leadByteClass;
    const int error = fillSlot(*slot, kind);
    std::memcpy(slot->tag, error == 0 ? kInUseTag : kGivenUpTag, kTagSize);
    if (error != 0) {
        errno = error;
        return kNotLoaded;
    }
    return static_cast<std::int32_t>(slot - iconv_list) + 1;
}

// The key of a table, which identifies both its file and its slot.
class ConverterKey {
public:
    ConverterKey(std::string_view source, std::string_view target)
        : text_(source), isUnchanged_(source == target) {
        text_.append(target);
    }

    // The part of the handle if no table has to be loaded for it, else kNotLoaded.
    [[nodiscard]] std::int32_t resolve() const {
        if (text() == kNoPagesKey) {
            return kNoPart;
        }
        return isUnchanged_ ? kUnchangedPart : findPart(text());
    }

    [[nodiscard]] std::string_view text() const { return text_.view(); }

private:
    FixedText<kConverterKeySize> text_;
    bool isUnchanged_;
};

}  // namespace

const char* dnz::tableDirectory() {
    return nonEmptyVariable("DNZ_XLAT_PATH");
}

std::int32_t xxxOpenConv(const char* targetSbcs, const char* targetDbcs, const char* sourceSbcs,
                         const char* sourceDbcs, std::int32_t leadByteClass) {
    ServiceTraceScope trace("xxxOpenConv");
    const ConverterKey singleByteKey(sourceSbcs, targetSbcs);
    const ConverterKey doubleByteKey(sourceDbcs, targetDbcs);
    std::int32_t singleBytePart = singleByteKey.resolve();
    std::int32_t doubleBytePart = doubleByteKey.resolve();
    if (singleBytePart == kNotLoaded) {
        singleBytePart = loadTable(singleByteKey.text(), 0, kSingleByteKind);
    }
    if (doubleBytePart == kNotLoaded && singleBytePart != kNotLoaded) {
        doubleBytePart = loadTable(doubleByteKey.text(), leadByteClass, kDoubleByteKind);
    }
    const bool hasBoth = singleBytePart != kNotLoaded && doubleBytePart != kNotLoaded;
    return trace.exitWith(hasBoth ? singleBytePart * kHandleBase + doubleBytePart : kNoHandle);
}

void dnz::freeConverters() {
    for (std::int32_t number = 0; number < iconv_list_size; ++number) {
        if (isInUse(iconv_list[number])) {
            delete[] iconv_list[number].table;
        }
    }
    delete[] iconv_list;
    iconv_list = nullptr;
    iconv_list_size = 0;
}
