// The cache of translation tables. A conversion uses up to two of them, one for the single-byte
// part of a text and one for the double-byte part; each belongs to an ordered pair of code pages
// and has a file of its own in the table directory. A table is read when it is first asked for
// and kept until the services stop; changes of its file have no effect on it.
//
// A file is named by its key, the page texts of source and target: 03520333.tbl, or 03520333.TBL
// if there is none; with letters, 012c01af.tbl or 012C01AF.TBL. Files hold nothing but bytes:
//   single-byte  256 bytes, the target byte for each source byte; more is ignored
//   double-byte  256 row numbers, one for each first byte, then rows of 256 pairs from offset 512
//                on. Row 0 lies over the row numbers. A file has 513 bytes at least, and at most
//                131072 are read; rows 1 to 127 can be reached, the first 65536 bytes.
// Limits: 998 tables. Not for more than one caller at a time.
#pragma once

#include <cstddef>
#include <cstdint>

constexpr std::size_t kTagSize = 4;
constexpr std::size_t kConverterKeySize = 9;

// One table. The list doesn't say of which kind it is: a page number belongs to one kind only.
struct ConvSlot {
    char tag[kTagSize];           // "ICNV" in use, "????" given up, anything else never used
    char key[kConverterKeySize];  // source page text, target page text, terminator
    unsigned char* table;         // owned by the slot
    std::int32_t tableSize;       // as read; a double-byte table has zeros after it, up to 65536
    std::int32_t leadByteClass;   // double-byte tables: that of the CCSID that came first
};

// The slots, in use or not, and their count: null and 0 until a table is first asked for. Owned by
// the cache.
extern ConvSlot* iconv_list;
extern std::int32_t iconv_list_size;

// A conversion handle is the single-byte part times kHandleBase plus the double-byte part. A
// part that is neither of the two special values is the number of a slot plus 1.
constexpr std::int32_t kHandleBase = 1000;
constexpr std::int32_t kNoPart = 0;           // neither side has this part
constexpr std::int32_t kUnchangedPart = 999;  // both pages are equal: no table, bytes are copied
constexpr std::int32_t kNoHandle = -1;

// Finds or loads the tables for a conversion; the first four arguments are page texts, "0000"
// for a part that isn't there. Returns the handle, valid until the services stop, or kNoHandle
// with errno (POSIX) set: ENOMEM for no storage or no room for another table, EINVAL for no usable
// table file. Tables that were loaded before a failure stay.
[[nodiscard]] std::int32_t xxxOpenConv(const char* targetSbcs, const char* targetDbcs,
                                       const char* sourceSbcs, const char* sourceDbcs,
                                       std::int32_t leadByteClass);

// Frees all tables and the list.
void freeConverters();
