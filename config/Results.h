// The results of config/ and frontend/, whatever their integer type: 1 is success, 0 is failure.
// (In the services 0 is success.)
#pragma once

namespace dnz {

constexpr int kDone = 1;
constexpr int kFailed = 0;

}  // namespace dnz
