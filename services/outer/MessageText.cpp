#include "services/outer/MessageText.h"

#include "services/outer/ServiceCalls.h"

namespace dnz {

MessageText::MessageText(std::int32_t number, const char* insert1, const char* insert2) {
    text_[0] = '\0';
    xcsINSERTS inserts;
    inserts.ccsid1 = kInsertCcsid;
    inserts.ccsid2 = kInsertCcsid;
    inserts.ccsid3 = kInsertCcsid;
    inserts.text1 = insert1;
    inserts.text2 = insert2;
    dnzxGetMessage(number, 0, inserts, 0, text_, kMessageSize, nullptr, 0, nullptr, 0);
}

}  // namespace dnz
