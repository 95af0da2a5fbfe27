#include "services/outer/MessageText.h"

#include "services/outer/ServiceCalls.h"

namespace dnz {

MessageText::MessageText(std::int32_t number, const char* insert1, const char* insert2) {
    text_[0] = '\0';
    const xcsINSERTS inserts{.ccsid1 = kInsertCcsid,
                             .text1 = insert1,
                             .ccsid2 = kInsertCcsid,
                             .text2 = insert2,
                             .ccsid3 = kInsertCcsid};
    dnzxGetMessage(number, 0, inserts, 0, text_, kMessageSize, nullptr, 0, nullptr, 0);
}

}  // namespace dnz
