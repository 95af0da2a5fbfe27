// Message retrieval: finds the text of a numbered message and fills in its inserts. Every text for
// users, except the template pages, is in the message catalogue.
// Results: 0 is success, else a return code of the services. Texts are bytes; nothing is converted.
#pragma once

#include <cstdint>

#include "services/base/Inserts.h"

namespace dnz {

// How a message is laid out.
constexpr std::int32_t kPrefixedMessage = 2;  // begins with "NZLnnnn: "
constexpr std::int32_t kPlainMessage = 3;
// Added to either: folds the first section at 80 columns, if it is longer without the prefix.
constexpr std::int32_t kFoldMessage = 8;

}  // namespace dnz

// Fetches message `number`, fills in `inserts` and copies the sections of the text to the buffers,
// cut to their sizes. A size counts the terminator; size 0 omits a section. `control` is a layout,
// with or without kFoldMessage. `ccsid` has no effect. Results besides 0:
//   xecE_W_DEFAULT_TEXT_SUBSTITUTED  another text replaces that of an unknown number
//   xecE_W_TEXT_TRUNCATED            a section was cut
//   xecE_E_MSG_FILE_NOT_LOADED       there is no catalogue; the buffers get a built-in text
//   xecE_E_INVALID_BUFFLEN, xecE_E_INVALID_CONTROL, or the result of xnzConvertInserts: the
//                                    buffers are untouched
std::int32_t xnzGetMessage(std::int32_t number, std::int32_t control, xcsINSERTS inserts,
                           std::int32_t ccsid, char* buffer1, std::uint32_t size1, char* buffer2,
                           std::uint32_t size2, char* buffer3, std::uint32_t size3);
