// The engines of the text conversion: three loops over the bytes of a text. They allocate nothing,
// write no trace and keep no state between calls: each text starts outside a double-byte section.
//   TranSBCS  text with no double-byte part
//   HostPCMM  mixed text in host form: double-byte text lies between the bytes SO and SI
//   PCHostMM  mixed text in PC form: the first byte marks a double-byte character
// The engines know no invalid text and no substitute: they write what the table contains.
// A double-byte character whose row number is 0x80 or more gives two zero bytes. In ConvHostToPC
// the host's new line, 0x15, becomes what its line feed 0x25 becomes, if there is a table.
#pragma once

#include <cstdint>

// The direction of a conversion, by the encoding of its two sides.
enum ConvMode : std::int32_t {
    ConvHostToPC = 1,
    ConvPCToHost = 2,
    ConvPCToPC = 3,
    ConvHostToHost = 4,
};

// What an engine needs to know. The tables are borrowed, from the cache or from a caller, and have
// the layout of the table files. A single-byte table has 256 bytes. A double-byte table reaches to
// the end of the last row that its row numbers below 0x80 name: 512 bytes for row 0, 65536 bytes
// serve any table.
struct ConvContext {
    std::int32_t handle;             // which tables these are; the engines don't read it
    const unsigned char* dbcsTable;  // null: pairs pass unchanged
    const unsigned char* sbcsTable;  // null: single bytes pass unchanged
    std::int32_t leadByteClass;
};

// The loops convert `*sourceLength` bytes into at most `*targetLength` and advance `*source` and
// `*target` as far as they come. After a result of 0 `*targetLength` is the count of bytes
// written; a text that outgrows its target outside a double-byte section ends there with 0.
// Other results are the xxxRC_ codes of TextConversion.h and leave `*targetLength` as it was.
// In no mode does an engine read after the end of the source or write after that of the target.
std::int32_t TranSBCS(const unsigned char** source, const std::int32_t* sourceLength,
                      unsigned char** target, std::int32_t* targetLength,
                      const ConvContext* context, ConvMode mode);

// For ConvHostToHost, which keeps the shift bytes, and ConvHostToPC; no other mode keeps them.
std::int32_t HostPCMM(const unsigned char** source, const std::int32_t* sourceLength,
                      unsigned char** target, std::int32_t* targetLength,
                      const ConvContext* context, ConvMode mode);

// For ConvPCToHost, which adds shift bytes, and ConvPCToPC; no other mode adds any.
std::int32_t PCHostMM(const unsigned char** source, const std::int32_t* sourceLength,
                      unsigned char** target, std::int32_t* targetLength,
                      const ConvContext* context, ConvMode mode);

// One step of the loops each, for callers that walk a text themselves: translates a byte, or a
// pair of bytes, and advances pointers and positions. Neither tests for an end.
void XltSBCS(const unsigned char** source, unsigned char** target, std::int32_t* sourcePosition,
             std::int32_t* targetPosition, const ConvContext* context, ConvMode mode);
void XltDBCS(const unsigned char** source, unsigned char** target, std::int32_t* sourcePosition,
             std::int32_t* targetPosition, const ConvContext* context);

namespace dnz {

// The class that a conversion takes where nothing else is said.
constexpr std::int32_t kDefaultLeadByteClass = 1;

}  // namespace dnz

// Converts with the tables of `handle`, by the engine that fits its parts and `mode`; arguments
// and result are those of the engines. The class of lead bytes comes with the double-byte table;
// where pairs pass unchanged there is none, and `sourceLeadByteClass` counts.
[[nodiscard]] std::int32_t xxxCodeConv(
    const unsigned char** source, const std::int32_t* sourceLength, unsigned char** target,
    std::int32_t* targetLength, std::int32_t handle, ConvMode mode,
    std::int32_t sourceLeadByteClass = dnz::kDefaultLeadByteClass);
