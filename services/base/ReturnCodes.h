// Return codes of the services: 0 is success, any other value says what went wrong.
// The top four bits of an xec code give its severity: 1 warning, 2 error, 4 severe.
#pragma once

#include <cstdint>

namespace dnz {

constexpr std::int32_t kServiceOk = 0;

}  // namespace dnz

constexpr std::int32_t xecS_E_NONE = 0x20006037;  // out of memory
constexpr std::int32_t xecX_E_SERVICE_UNAVAILABLE = 0x20806058;
constexpr std::int32_t xecX_S_NO_CCSID_TABLE = 0x40806106;
constexpr std::int32_t xecX_S_CCSID_NOT_FOUND = 0x40006107;

constexpr std::int32_t xecU_E_INVALID_OPTION = 0x20806081;
constexpr std::int32_t xecU_E_TIME_ERROR = 0x20806082;

constexpr std::int32_t xecE_E_INVALID_BUFFLEN = 0x20806127;
constexpr std::int32_t xecE_E_INVALID_CONTROL = 0x20806128;
constexpr std::int32_t xecE_E_MSG_FILE_CORRUPTED = 0x20806129;
constexpr std::int32_t xecE_E_MSG_FILE_NOT_LOADED = 0x20806130;
constexpr std::int32_t xecE_W_DEFAULT_TEXT_SUBSTITUTED = 0x10806132;
constexpr std::int32_t xecE_W_TEXT_TRUNCATED = 0x10806133;

constexpr std::int32_t NZRC_STORAGE_NOT_AVAILABLE = 2071;
constexpr std::int32_t NZRC_SOURCE_CCSID_ERROR = 2111;
constexpr std::int32_t NZRC_TARGET_CCSID_ERROR = 2115;
constexpr std::int32_t NZRC_NOT_CONVERTED = 2119;
constexpr std::int32_t NZRC_CONVERTED_MSG_TOO_BIG = 2120;
constexpr std::int32_t NZRC_SOURCE_LENGTH_ERROR = 2143;
constexpr std::int32_t NZRC_TARGET_LENGTH_ERROR = 2144;
