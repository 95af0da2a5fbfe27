#include "ConverterCache.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>

#include "ConversionTest.h"

namespace {

using ConverterCacheTest = ConversionTest;

constexpr char kNone[] = "0000";

std::string someBytes(std::size_t count) {
    std::string text(count, '\0');
    for (std::size_t i = 0; i < count; ++i) {
        text[i] = static_cast<char>(i * 7 + i / 256);
    }
    return text;
}

std::int32_t openSingle(const char* source, const char* target) {
    return xxxOpenConv(target, kNone, source, kNone, 1);
}

std::int32_t openDouble(const char* source, const char* target, std::int32_t leadByteClass = 1) {
    return xxxOpenConv(kNone, target, kNone, source, leadByteClass);
}

TEST_F(ConverterCacheTest, PartsOfTheHandle) {
    writeFile("03520333.tbl", someBytes(256));
    writeFile("012c01af.tbl", someBytes(1024));
    EXPECT_EQ(xxxOpenConv("0001", "0002", "0001", "0002", 1), 999999);
    EXPECT_EQ(iconv_list_size, 0);
    EXPECT_EQ(xxxOpenConv("0333", kNone, "0352", kNone, 1), 1000);
    EXPECT_EQ(xxxOpenConv("0333", "01af", "0352", "012c", 1), 1002);
    EXPECT_EQ(xxxOpenConv("0001", "01af", "0001", "012c", 1), 999002);
    EXPECT_EQ(iconv_list_size, 50);
}

TEST_F(ConverterCacheTest, SizesOfTables) {
    const struct {
        bool isDouble;
        std::size_t size;
        std::int32_t tableSize;  // 0: refused
    } kCases[] = {
        {false, 0, 0},          {false, 255, 0},        {false, 256, 256}, {false, 300, 256},
        {true, 511, 0},         {true, 512, 0},         {true, 513, 513},  {true, 1024, 1024},
        {true, 131072, 131072}, {true, 200000, 131072},
    };
    for (const auto& row : kCases) {
        SCOPED_TRACE(row.size);
        const std::string contents = someBytes(row.size);
        writeFile("00a100b2.tbl", contents);
        errno = 0;
        const std::int32_t handle =
            row.isDouble ? openDouble("00a1", "00b2", 6) : openSingle("00a1", "00b2");
        if (row.tableSize == 0) {
            EXPECT_EQ(handle, kNoHandle);
            EXPECT_EQ(errno, EINVAL);
            EXPECT_EQ(std::memcmp(iconv_list[0].tag, "????", 4), 0);
            continue;
        }
        EXPECT_EQ(handle, row.isDouble ? 1 : 1000);
        const ConvSlot& slot = iconv_list[0];
        EXPECT_EQ(std::memcmp(slot.tag, "ICNV", 4), 0);
        EXPECT_STREQ(slot.key, "00a100b2");
        EXPECT_EQ(slot.tableSize, row.tableSize);
        EXPECT_EQ(
            std::memcmp(slot.table, contents.data(), static_cast<std::size_t>(slot.tableSize)), 0);
        EXPECT_EQ(slot.leadByteClass, row.isDouble ? 6 : 0);
        freeConverters();
        EXPECT_EQ(iconv_list, nullptr);
        EXPECT_EQ(iconv_list_size, 0);
    }
}

TEST_F(ConverterCacheTest, TheLowerCaseNameGoesFirst) {
    const std::string name = directory_.path() + "/";
    const std::string lower = name + "012c01af.tbl\n";
    const std::string upper =
        "xxxOpenConv: retrying.........\n"
        "xxxOpenConv: About to try opening (UC) ....\n" +
        name + "012C01AF.TBL\n";
    const std::string single = "xxxOpenConv: About to try opening (LC) ....\n" + lower;
    const std::string opened = "xxxOpenConv: Open was sucessful.\n";
    const struct {
        const char* name;
        const char* file;
        std::int32_t handle;
        std::string trace;
    } kCases[] = {
        {"lower", "012c01af.tbl", 1000, single + opened},
        {"upper", "012C01AF.TBL", 1000, single + upper + opened},
        {"mixed", "012C01AF.tbl", kNoHandle, single + upper + "xxxOpenConv: Open failed.\n"},
    };
    for (const auto& row : kCases) {
        SCOPED_TRACE(row.name);
        writeFile(row.file, someBytes(256));
        startTrace();
        EXPECT_EQ(openSingle("012c", "01af"), row.handle);
        closeTrace();
        EXPECT_EQ(traceTexts(), row.trace);
        std::filesystem::remove(row.file);
        std::filesystem::remove(fileName("TRC"));
        freeConverters();
    }
    startTrace();
    EXPECT_EQ(openDouble("012c", "01af"), kNoHandle);
    closeTrace();
    EXPECT_EQ(traceTexts().find("xxxOpenConv: About to try opening (LC)....\n"), 0U);
}

TEST_F(ConverterCacheTest, WhatOpensFirstIsReadAndItsDirectoryFits) {
    std::filesystem::create_directory("00010002.tbl");
    writeFile("00010002.TBL", someBytes(256));
    EXPECT_EQ(openSingle("0001", "0002"), kNoHandle);
    EXPECT_EQ(errno, EINVAL);

    writeFile("00030004.tbl", someBytes(256));
    for (const std::size_t length : {254U, 255U, 600U}) {
        SCOPED_TRACE(length);
        const std::string slashes(length - directory_.path().size(), '/');
        setVariable("DNZ_XLAT_PATH", (directory_.path() + slashes).c_str());
        EXPECT_EQ(openSingle("0003", "0004"), length == 254 ? 1000 : kNoHandle);
        freeConverters();
    }
    for (const char* directory : {static_cast<const char*>(nullptr), ""}) {
        setVariable("DNZ_XLAT_PATH", directory);
        EXPECT_EQ(openSingle("0003", "0004"), 1000);
        freeConverters();
    }
}

TEST_F(ConverterCacheTest, SlotsGivenUpAreTakenFirst) {
    writeFile("00010002.tbl", someBytes(256));
    writeFile("00030004.tbl", someBytes(1024));
    EXPECT_EQ(openSingle("0009", "0008"), kNoHandle);
    EXPECT_EQ(xxxOpenConv("0002", "0008", "0001", "0009", 1), kNoHandle);  // the first part stays
    EXPECT_EQ(openDouble("0003", "0004"), 2);
    EXPECT_EQ(openSingle("0001", "0002"), 1000);
    EXPECT_EQ(iconv_list_size, 50);
}

TEST_F(ConverterCacheTest, TheListGrowsUpToTheLastNumberOfAHandle) {
    for (int number = 1; number <= 999; ++number) {
        char page[5];
        std::snprintf(page, sizeof page, "%04x", static_cast<unsigned>(number));
        writeFile(page + std::string("ffff.tbl"), someBytes(256));
        const std::int32_t handle = openSingle(page, "ffff");
        if (number == 999) {
            EXPECT_EQ(handle, kNoHandle);
            EXPECT_EQ(errno, ENOMEM);
        } else {
            ASSERT_EQ(handle, number * 1000);
            ASSERT_EQ(iconv_list_size, (number + 49) / 50 * 50);
        }
    }
    EXPECT_EQ(openSingle("0001", "ffff"), 1000);
}

}  // namespace
