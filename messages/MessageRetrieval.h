// Messages: every text that the user reads and that no template page contains lies in a message
// catalogue under a number. The retrieval finds the text and fills in its inserts.
// Results: 0 done, else a code of the services. Texts are bytes; nothing is converted.
#pragma once

#include <cstdint>

#include "services/base/Inserts.h"

namespace dnz {

// How a message is laid out.
constexpr std::int32_t kPrefixedMessage = 2;  // "NZLnnnn: " stands before the first section
constexpr std::int32_t kPlainMessage = 3;
constexpr std::int32_t kFoldMessage = 8;  // added to either: lines of at most 80 columns

}  // namespace dnz

// Fetches message `number`, fills in `inserts` and copies the sections of the text to the
// buffers, cut to their sizes. A size counts the terminator; a section is wanted when its size
// isn't 0. `ccsid` is handed on and has no effect. Results besides 0:
//   xecE_W_DEFAULT_TEXT_SUBSTITUTED  another text stands in for an unknown number
//   xecE_W_TEXT_TRUNCATED            a section was cut
//   xecE_E_MSG_FILE_NOT_LOADED       there is no catalogue; the buffers hold a built-in text
//   xecE_E_INVALID_BUFFLEN, xecE_E_INVALID_CONTROL, or the result of xnzConvertInserts: the
//                                    buffers are untouched
std::int32_t xnzGetMessage(std::int32_t number, std::int32_t control, xcsINSERTS inserts,
                           std::int32_t ccsid, char* buffer1, std::uint32_t size1, char* buffer2,
                           std::uint32_t size2, char* buffer3, std::uint32_t size3);
