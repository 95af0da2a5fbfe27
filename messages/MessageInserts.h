// Message inserts: a message text is a template with markers, "%" and a digit. These operations
// replace the markers by the values of an insert record.
//   %1 %2     number1, number2 in decimal        %6     the message number in decimal
//   %3 %4 %5  text1, text2, text3, or nothing    %7 %8  number1, number2 in hexadecimal
// Nothing else is a marker, and inserted text is not expanded again.
// Results: 0 is success, else a return code of the services.
#pragma once

#include <cstdint>

#include "services/base/Inserts.h"

// Expands `messageTemplate` into a new array. After 0, `*text` is the finished text, which the
// caller releases with free(), and `*length` its length without the terminator. xecS_E_NONE, after
// a failure report, if memory runs out. `ccsid` has no effect.
[[nodiscard]] std::int32_t xnzConvertInserts(std::int32_t number, const char* messageTemplate,
                                             xcsINSERTS inserts, std::int32_t ccsid, char** text,
                                             std::uint32_t* length);

// For callers that format messages themselves: the values of all eight markers as texts, empty for
// a missing one. After 0, `*table` points to `*count` pointers; one free() of the table releases
// the texts too. xecS_E_NONE, after a failure report, if memory runs out. `ccsid` has no effect.
[[nodiscard]] std::int32_t xcsConvertInserts(std::int32_t number, xcsINSERTS inserts,
                                             std::int32_t ccsid, char*** table,
                                             std::int32_t* count);

// Expands `messageTemplate` into `buffer` of `size` bytes, cut to fit and terminated. Only %1 to %5
// are markers here; "Bad insert!" replaces any other. Returns `code`, or xecE_W_TEXT_TRUNCATED if
// the buffer was filled to its end.
std::int32_t AddInserts(const char* messageTemplate, char* buffer, std::uint32_t size,
                        xcsINSERTS inserts, std::int32_t code);
