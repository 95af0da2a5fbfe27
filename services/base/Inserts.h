// The insert record: what a caller adds to a message or a failure report.
#pragma once

#include <cstdint>

namespace dnz {

// The CCSID that message inserts are declared to have.
constexpr std::int32_t kInsertCcsid = 850;

}  // namespace dnz

// Two numbers and three texts. The texts are borrowed for the call; null means no text.
struct xcsINSERTS {
    std::int32_t number1 = 0;     // message: numeric insert 1; report: major code
    std::int32_t number2 = 0;     // message: numeric insert 2; report: minor code
    std::int32_t ccsid1 = 0;      // CCSID of text1; a report leaves all three at 0
    const char* text1 = nullptr;  // text insert 1, or comment 1
    std::int32_t ccsid2 = 0;
    const char* text2 = nullptr;
    std::int32_t ccsid3 = 0;
    const char* text3 = nullptr;
};
