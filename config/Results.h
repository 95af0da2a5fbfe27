// Results of the configuration code, whatever their integer type: 1 is success, 0 is failure.
// (In the services it is the other way round: 0 is success.)
#pragma once

namespace dnz {

constexpr int kDone = 1;
constexpr int kFailed = 0;

}  // namespace dnz
