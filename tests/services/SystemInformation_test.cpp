#include "SystemInformation.h"

#include <ctime>

#include "ReturnCodes.h"
#include "ServicesTest.h"

using SystemInformation = ServicesTest;

TEST_F(SystemInformation, TakesTheCodePageFromTheLocale) {
    struct {
        const char* lang;
        const char* codeset;
        std::int32_t page;
    } const cases[] = {
        {nullptr, "88591", 819},       {"", "88591", 819},
        {"C", "88591", 819},           {"POSIX", "88591", 819},
        {"de_DE", "88591", 819},       {"pl_PL", "88592", 912},
        {"ru_RU", "88595", 915},       {"ar_AA", "88596", 1089},
        {"el_GR", "88597", 813},       {"iw_IL", "88598", 916},
        {"tr", "88599", 920},          {"roman8", "roman8", 1051},
        {"ja_JP", "eucJP", 819},       {"ko_KR", "eucKR", 819},
        {"zh_TW", "eucTW", 819},       {"zh", "eucCN", 819},
        {"xx_YY.UTF-8", "88591", 819}, {"ru_ru", "88591", 819},
    };
    setVariable("LC_ALL", nullptr);
    for (const auto& row : cases) {
        setVariable("LANG", row.lang);
        char codeset[kCodesetSize];
        EXPECT_EQ(ObtainSystemCP(), row.page) << (row.lang ? row.lang : "unset");
        xnzGetCodeset(codeset);
        EXPECT_STREQ(codeset, row.codeset) << (row.lang ? row.lang : "unset");
    }
    setVariable("LANG", nullptr);
}

TEST_F(SystemInformation, FormatsDateAndTimeIntoTheRoomGiven) {
    setVariable("TZ", "XXX-05:30");
    struct {
        std::int16_t option;
        std::int16_t dateSize;
        std::int16_t timeSize;
        std::int32_t code;
        bool date;
        bool time;
    } const cases[] = {
        {kLocalTime, 20, 20, 0, true, true},
        {kUniversalTime, 11, 10, 0, true, true},
        {kUniversalTime, 10, 10, xecU_E_TIME_ERROR, false, false},
        {kLocalTime, 20, 9, xecU_E_TIME_ERROR, true, false},
        {kLocalTime, 1, 20, xecU_E_TIME_ERROR, false, false},
        {kLocalTime, -1, 20, xecU_E_TIME_ERROR, false, false},
        {3, 20, 20, xecU_E_INVALID_OPTION, false, false},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(testing::Message()
                     << row.option << " " << row.dateSize << " " << row.timeSize);
        char date[32] = "?";
        char time[32] = "?";
        EXPECT_EQ(xnzQueryDateTime2(row.option, date, time, row.dateSize, row.timeSize), row.code);
        const std::regex dateForm("\\d\\d/\\d\\d/\\d\\d ");
        const std::regex timeForm("\\d\\d:\\d\\d:\\d\\d");
        EXPECT_EQ(std::regex_match(date, dateForm), row.date);
        EXPECT_EQ(std::regex_match(time, timeForm), row.time);
    }
    char date[32];
    char local[32];
    char universal[32];
    xnzQueryDateTime2(kLocalTime, date, local, sizeof date, sizeof local);
    xnzQueryDateTime2(kUniversalTime, date, universal, sizeof date, sizeof universal);
    EXPECT_NE(std::string(local).substr(0, 5), std::string(universal).substr(0, 5));
}

TEST(Sleep, GoesUpToTheNextSecond) {
    const std::time_t before = std::time(nullptr);
    xnzSleep(0);
    xnzSleep(1);
    EXPECT_GE(std::time(nullptr) - before, 1);
}
