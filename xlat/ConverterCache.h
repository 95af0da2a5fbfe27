// The cache of translation tables. A conversion uses up to two tables, one for the single-byte part
// of a text and one for the double-byte part. Each belongs to an ordered pair of code pages and has
// a file of its own in the table directory. A table is read at its first use and kept until the
// services stop; later changes of its file have no effect.
//
// The name of a file is its key, the page texts of source and target: 03520333.tbl, else
// 03520333.TBL; with letters, 012c01af.tbl, else 012C01AF.TBL. Files contain nothing but table
// bytes:
//   single-byte  256 bytes, the target byte for each source byte; more are ignored
//   double-byte  256 row numbers, one for each first byte, then rows of 256 pairs from offset 512
//                on. Row 0 overlaps the row numbers. A file has at least 513 bytes, of which at
//                most 131072 are read. Rows 1 to 127 can be reached, in the first 65536 bytes.
// Limits: 998 tables. Not for more than one caller at a time.
#pragma once

#include <cstddef>
#include <cstdint>

namespace dnz {

constexpr std::size_t kTagSize = 4;
constexpr std::size_t kConverterKeySize = 9;

// A conversion handle is the single-byte part times kHandleBase plus the double-byte part. A
// part that is neither of the two special values is the number of a slot plus 1.
constexpr std::int32_t kHandleBase = 1000;
constexpr std::int32_t kNoPart = 0;           // neither side has this part
constexpr std::int32_t kUnchangedPart = 999;  // equal pages: no table, bytes are copied
constexpr std::int32_t kNoHandle = -1;

// The directory of the translation tables and the CCSID table, which DNZ_XLAT_PATH names. Null for
// the working directory. Borrowed from the environment.
const char* tableDirectory();

// Frees all tables and the list.
void freeConverters();

}  // namespace dnz

// One table. Its kind needs no field: a page number belongs to one kind only.
struct ConvSlot {
    char tag[dnz::kTagSize];           // "ICNV" in use, "????" given up, anything else never used
    char key[dnz::kConverterKeySize];  // source page text, target page text, terminator
    unsigned char* table;              // owned by the slot
    std::int32_t tableSize;      // as read; a double-byte table has zeros after it, up to 65536
    std::int32_t leadByteClass;  // double-byte tables: that of the CCSID that came first
};

// The slots, used or not, and their count: null and 0 until the first use of a table. Owned by the
// cache.
extern ConvSlot* iconv_list;
extern std::int32_t iconv_list_size;

// Finds or loads the tables for a conversion. The first four arguments are page texts, "0000" for a
// missing part. Returns the handle, valid until the services stop, or kNoHandle with errno (POSIX)
// set: ENOMEM if memory runs out or the cache is full, EINVAL without a usable table file. Tables
// that were loaded before a failure stay.
[[nodiscard]] std::int32_t xxxOpenConv(const char* targetSbcs, const char* targetDbcs,
                                       const char* sourceSbcs, const char* sourceDbcs,
                                       std::int32_t leadByteClass);
