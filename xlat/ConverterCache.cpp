#include "ConverterCache.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

#include "BoundedText.h"
#include "FileDescriptor.h"
#include "RegularFile.h"
#include "ServiceNames.h"
#include "TableDirectory.h"
#include "TraceRecords.h"

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
// Rows 0 to 127, which is as far as row numbers reach. Storage for all of them spares the engines a
// test of each row.
constexpr std::size_t kReachableTableSize = 0x10000;

constexpr char kNoPagesKey[] = "00000000";
constexpr std::size_t kTableNameLength = 12;  // a key and an extension

constexpr std::int32_t kNotFound = -1;

using TableBytes = std::unique_ptr<unsigned char[]>;

// What distinguishes the two kinds of tables while one is loaded.
struct TableKind {
    const char* openingText;
    int (*load)(const FileDescriptor& file, ConvSlot& slot);  // 0 or an errno
};

bool hasTag(const ConvSlot& slot, const char* tag) {
    return std::memcmp(slot.tag, tag, kTagSize) == 0;
}

void setTag(ConvSlot& slot, const char* tag) {
    std::memcpy(slot.tag, tag, kTagSize);
}

std::int32_t findSlot(std::string_view key) {
    for (std::int32_t number = 0; number < iconv_list_size; ++number) {
        if (hasTag(iconv_list[number], kInUseTag) && key == iconv_list[number].key) {
            return number;
        }
    }
    return kNotFound;
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

// The number of a slot that may be filled, or kNotFound when there is no room for another table.
std::int32_t slotToFill() {
    std::int32_t number = 0;
    while (number < iconv_list_size && hasTag(iconv_list[number], kInUseTag)) {
        ++number;
    }
    if (number == kMostSlots || (number == iconv_list_size && !enlargeList())) {
        return kNotFound;
    }
    return number;
}

void appendUpperCase(BoundedText& text, std::string_view key) {
    constexpr std::string_view kLowerDigits = "abcdef";
    constexpr std::string_view kUpperDigits = "ABCDEF";
    for (const char digit : key) {
        const std::size_t place = kLowerDigits.find(digit);
        const char written = place != std::string_view::npos ? kUpperDigits[place] : digit;
        text.append({&written, 1});
    }
}

// A file in a directory whose name was cut counts as missing.
FileDescriptor openTable(const BoundedText& directory, std::string_view key,
                         std::string_view extension) {
    char path[kPathSize + kTableNameLength];
    BoundedText(path).append(directory.view()).append(key).append(extension);
    errno = 0;  // what is left of an earlier call is no reason for a failure here
    xnztr_text(path);
    return directory.truncated() ? FileDescriptor{} : openFile(path);
}

FileDescriptor openTableFile(std::string_view key, const TableKind& kind) {
    char directoryText[kPathSize];
    BoundedText directory(directoryText);
    const char* named = tableDirectory();
    appendDirectory(directory, named != nullptr ? named : ".");
    xnztr_text(kind.openingText);
    FileDescriptor file = openTable(directory, key, ".tbl");
    if (file.isOpen()) {
        return file;
    }
    xnztr_text("xxxOpenConv: retrying.........");
    xnztr_text("xxxOpenConv: About to try opening (UC) ....");
    char upperCaseKey[kConverterKeySize];
    BoundedText upperCase(upperCaseKey);
    appendUpperCase(upperCase, key);
    return openTable(directory, upperCase.view(), ".TBL");
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
        // The large one serves as well: after what was read it contains zeros.
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

// Loads a table; returns its part of the handle, or kNotFound with errno set.
std::int32_t loadTable(std::string_view key, std::int32_t leadByteClass, const TableKind& kind) {
    const std::int32_t number = slotToFill();
    if (number == kNotFound) {
        errno = ENOMEM;
        return kNotFound;
    }
    ConvSlot& slot = iconv_list[number];
    BoundedText(slot.key).append(key);
    slot.leadByteClass = leadByteClass;
    const int error = fillSlot(slot, kind);
    setTag(slot, error == 0 ? kInUseTag : kGivenUpTag);
    if (error != 0) {
        errno = error;
        return kNotFound;
    }
    return number + 1;
}

// The key of a table, which both file name and slot go by.
class ConverterKey {
public:
    ConverterKey(std::string_view source, std::string_view target) {
        BoundedText(text_).append(source).append(target);
        isUnchanged_ = source == target;
    }

    // The part of the handle as far as no table must be loaded for it, or kNotFound.
    [[nodiscard]] std::int32_t resolve() const {
        if (text() == kNoPagesKey) {
            return kNoPart;
        }
        if (isUnchanged_) {
            return kUnchangedPart;
        }
        const std::int32_t number = findSlot(text());
        return number != kNotFound ? number + 1 : kNotFound;
    }

    [[nodiscard]] std::string_view text() const { return text_; }

private:
    char text_[kConverterKeySize];
    bool isUnchanged_;
};

}  // namespace

std::int32_t xxxOpenConv(const char* targetSbcs, const char* targetDbcs, const char* sourceSbcs,
                         const char* sourceDbcs, std::int32_t leadByteClass) {
    ServiceTraceScope trace("xxxOpenConv");
    const ConverterKey singleByteKey(sourceSbcs, targetSbcs);
    const ConverterKey doubleByteKey(sourceDbcs, targetDbcs);
    std::int32_t singleBytePart = singleByteKey.resolve();
    std::int32_t doubleBytePart = doubleByteKey.resolve();
    if (singleBytePart == kNotFound) {
        singleBytePart = loadTable(singleByteKey.text(), 0, kSingleByteKind);
    }
    if (singleBytePart == kNotFound) {
        return trace.exitWith(kNoHandle);
    }
    if (doubleBytePart == kNotFound) {
        doubleBytePart = loadTable(doubleByteKey.text(), leadByteClass, kDoubleByteKind);
    }
    if (doubleBytePart == kNotFound) {
        return trace.exitWith(kNoHandle);
    }
    return trace.exitWith(singleBytePart * kHandleBase + doubleBytePart);
}

void freeConverters() {
    for (std::int32_t number = 0; number < iconv_list_size; ++number) {
        if (hasTag(iconv_list[number], kInUseTag)) {
            delete[] iconv_list[number].table;
        }
    }
    delete[] iconv_list;
    iconv_list = nullptr;
    iconv_list_size = 0;
}
