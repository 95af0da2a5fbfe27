// The names of return codes, for traces and reports.
#pragma once

#include <cstddef>
#include <cstdint>

namespace dnz {

struct ReturnCodeName {
    std::int32_t code;
    char name[52];
};

constexpr std::size_t kReturnCodeNameCount = 209;
constexpr std::int32_t kReturnCodeNamesEnd = -1;  // the code of the last row

// The first row of `code`, or the end row.
const ReturnCodeName& findReturnCodeName(std::int32_t code);

}  // namespace dnz

// Not in numeric order. If a code occurs twice, the first row counts.
extern const dnz::ReturnCodeName xnzRetList[dnz::kReturnCodeNameCount];
