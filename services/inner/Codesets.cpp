#include "services/inner/Codesets.h"

using namespace dnz;

namespace {

constexpr char ISO1[] = "88591";
constexpr char ISO2[] = "88592";
constexpr char ISO5[] = "88595";
constexpr char ISO6[] = "88596";
constexpr char ISO7[] = "88597";
constexpr char ISO8[] = "88598";
constexpr char ISO9[] = "88599";
constexpr char KOREAN[] = "eucKR";
constexpr char JAPANESE[] = "eucJP";
constexpr char TCHINESE[] = "eucTW";
constexpr char SCHINESE[] = "eucCN";
constexpr char ROMAN8[] = "roman8";

}  // namespace

// clang-format off
constexpr LocaleCodeset xxxCodesetInfo[kLocaleCount + 1] = {
    {"C", ISO1},
    {"co", ISO1},
    {"ca", ISO1},
    {"cy", ISO1},
    {"da", ISO1},
    {"da_DK", ISO1},
    {"de", ISO1},
    {"de_DE", ISO1},
    {"de_AT", ISO1},
    {"de_CH", ISO1},
    {"en", ISO1},
    {"en_GB", ISO1},
    {"en_UK", ISO1},
    {"en_AU", ISO1},
    {"en_CA", ISO1},
    {"en_US", ISO1},
    {"eo", ISO1},
    {"es", ISO1},
    {"es_ES", ISO1},
    {"eu", ISO1},
    {"fi", ISO1},
    {"fi_FI", ISO1},
    {"fr", ISO1},
    {"fr_FR", ISO1},
    {"fr_BE", ISO1},
    {"fr_CA", ISO1},
    {"fr_CH", ISO1},
    {"fy", ISO1},
    {"ga", ISO1},
    {"gd", ISO1},
    {"is", ISO1},
    {"is_IS", ISO1},
    {"iso88591", ISO1},
    {"it", ISO1},
    {"it_IT", ISO1},
    {"it_CH", ISO1},
    {"kl", ISO1},
    {"nl", ISO1},
    {"nl_NL", ISO1},
    {"nl_BE", ISO1},
    {"no", ISO1},
    {"no_NO", ISO1},
    {"POSIX", ISO1},
    {"pt", ISO1},
    {"pt_PT", ISO1},
    {"sv", ISO1},
    {"sv_SE", ISO1},
    {"cs", ISO2},
    {"cs_CZ", ISO2},
    {"hr", ISO2},
    {"hr_HR", ISO2},
    {"hu", ISO2},
    {"hu_HU", ISO2},
    {"iso88592", ISO2},
    {"lv", ISO2},
    {"sl_SL", ISO2},
    {"pl", ISO2},
    {"pl_PL", ISO2},
    {"ro", ISO2},
    {"ro_RO", ISO2},
    {"sh", ISO2},
    {"sh_SP", ISO2},
    {"sh_YU", ISO2},
    {"sl", ISO2},
    {"sl_SL", ISO2},
    {"sk", ISO2},
    {"sk_SK", ISO2},
    {"bu", ISO5},
    {"bu_BG", ISO5},
    {"iso88595", ISO5},
    {"mk", ISO5},
    {"mk_MK", ISO5},
    {"ru", ISO5},
    {"ru_SU", ISO5},
    {"ru_RU", ISO5},
    {"sr", ISO5},
    {"sr_SP", ISO5},
    {"ar", ISO6},
    {"ar_AA", ISO6},
    {"iso88596", ISO6},
    {"el", ISO7},
    {"el_GR", ISO7},
    {"iso88597", ISO7},
    {"iso88598", ISO8},
    {"iw", ISO8},
    {"iw_IL", ISO8},
    {"ji", ISO8},
    {"iso88599", ISO9},
    {"tr", ISO9},
    {"tr_TR", ISO9},
    {"ko", KOREAN},
    {"ko_KR", KOREAN},
    {"ja", JAPANESE},
    {"ja_JP", JAPANESE},
    {"zh_TW", TCHINESE},
    {"zh", SCHINESE},
    {"roman8", ROMAN8},
    {nullptr, nullptr},
};
// clang-format on

static_assert(xxxCodesetInfo[kLocaleCount - 1].codeset == ROMAN8);
