#include <iconv.h>

#include <algorithm>
#include <optional>
#include <random>
#include <vector>

#include "ConversionTest.h"

namespace {

struct CharacterSet {
    std::int32_t ccsid;
    const char* converter;
    bool isHost;
    bool isMixed;
};

// A character of a set: one byte, or two without the shift bytes.
using Character = std::string;

class Iconv {
public:
    Iconv(const CharacterSet& from, const CharacterSet& to)
        : handle_(iconv_open(to.converter, from.converter)) {}
    ~Iconv() { iconv_close(handle_); }
    Iconv(const Iconv&) = delete;
    Iconv& operator=(const Iconv&) = delete;

    std::optional<std::string> convert(std::string text) {
        std::string target(2 * text.size() + 8, '\0');
        char* in = text.data();
        char* out = target.data();
        std::size_t inLeft = text.size();
        std::size_t outLeft = target.size();
        iconv(handle_, nullptr, nullptr, nullptr, nullptr);
        constexpr auto kFailed = static_cast<std::size_t>(-1);
        if (iconv(handle_, &in, &inLeft, &out, &outLeft) == kFailed ||
            iconv(handle_, nullptr, nullptr, &out, &outLeft) == kFailed) {
            return std::nullopt;
        }
        target.resize(target.size() - outLeft);
        return target;
    }

private:
    iconv_t handle_;
};

std::string textOf(const CharacterSet& set, const std::vector<Character>& characters) {
    std::string text;
    bool isShifted = false;
    for (const Character& character : characters) {
        if (set.isHost && isShifted != (character.size() == 2)) {
            isShifted = !isShifted;
            text += isShifted ? '\x0E' : '\x0F';
        }
        text += character;
    }
    return isShifted ? text + '\x0F' : text;
}

// Whether the engines can tell the character, as the classes of the made CCSID table have it.
bool isReadable(const CharacterSet& set, const std::string& text) {
    const auto first = static_cast<unsigned char>(text.front());
    if (set.isHost) {
        return first != 0x15 &&
               (!set.isMixed || text.size() != 1 || (first != 0x0E && first != 0x0F));
    }
    const bool isLead = (first >= 0x81 && first <= 0x9E) || (first >= 0xE0 && first <= 0xFE);
    return !set.isMixed || isLead == (text.size() == 2);
}

// All characters of a set that have a counterpart in the other one, and back again.
std::vector<Character> commonCharacters(const CharacterSet& from, const CharacterSet& to) {
    Iconv there(from, to);
    Iconv back(to, from);
    std::vector<Character> common;
    const auto addIfCommon = [&](const Character& character) {
        const std::optional<std::string> text = there.convert(textOf(from, {character}));
        if (text && !text->empty() && isReadable(from, character) && isReadable(to, *text) &&
            (character.size() == 2) == (text->size() > 1) && back.convert(*text)) {
            common.push_back(character);
        }
    };
    for (int first = 0; first < 256; ++first) {
        addIfCommon({static_cast<char>(first)});
        for (int second = 0; from.isMixed && to.isMixed && second < 256; ++second) {
            addIfCommon({static_cast<char>(first), static_cast<char>(second)});
        }
    }
    return common;
}

std::string convert(const CharacterSet& from, const CharacterSet& to, const std::string& source) {
    std::string target(2 * source.size() + 8, '\0');
    auto length = static_cast<std::int32_t>(target.size());
    EXPECT_EQ(xcsConvertString(from.ccsid, to.ccsid, source.data(),
                               static_cast<std::int32_t>(source.size()), target.data(), &length),
              0);
    return target.substr(0, static_cast<std::size_t>(length));
}

class RealTablesTest : public ConversionTest {
protected:
    RealTablesTest() { setVariable("DNZ_XLAT_PATH", TABLE_DIRECTORY); }
};

TEST_F(RealTablesTest, RandomTextAgreesWithTheCLibraryThereAndBack) {
    constexpr CharacterSet kHostLatin{37, "IBM037", true, false};
    constexpr CharacterSet kHostGerman{273, "IBM273", true, false};
    constexpr CharacterSet kHostOpen{1047, "IBM1047", true, false};
    constexpr CharacterSet kPc{850, "IBM850", false, false};
    constexpr CharacterSet kPcAmerican{437, "IBM437", false, false};
    constexpr CharacterSet kIso{819, "ISO-8859-1", false, false};
    constexpr CharacterSet kCyrillic{866, "IBM866", false, false};
    constexpr CharacterSet kIsoCyrillic{915, "ISO-8859-5", false, false};
    constexpr CharacterSet kHostKatakana{930, "IBM930", true, true};
    constexpr CharacterSet kHostJapanese{939, "IBM939", true, true};
    constexpr CharacterSet kPcJapanese{932, "IBM932", false, true};
    constexpr CharacterSet kPcJapaneseOpen{943, "IBM943", false, true};
    const struct {
        CharacterSet from;
        CharacterSet to;
        std::size_t leastInCommon;
    } kPairs[] = {
        {kPc, kIso, 200},
        {kHostLatin, kIso, 250},
        {kHostGerman, kHostOpen, 250},
        {kPcAmerican, kHostLatin, 150},
        {kCyrillic, kIsoCyrillic, 180},
        {kPcJapanese, kIso, 120},
        {kHostKatakana, kPcJapanese, 8000},
        {kHostKatakana, kPcJapaneseOpen, 8000},
        {kHostJapanese, kPcJapaneseOpen, 8000},
        {kHostKatakana, kHostJapanese, 8000},
        {kPcJapanese, kPcJapaneseOpen, 8000},
    };
    ASSERT_EQ(xxxInitialize(), 0);
    std::mt19937 random(850819);
    for (const auto& pair : kPairs) {
        SCOPED_TRACE(pair.from.converter + std::string(" and ") + pair.to.converter);
        const std::vector<Character> common = commonCharacters(pair.from, pair.to);
        EXPECT_GE(common.size(), pair.leastInCommon);
        std::vector<Character> singles;
        std::copy_if(common.begin(), common.end(), std::back_inserter(singles),
                     [](const Character& character) { return character.size() == 1; });
        std::vector<Character> characters(50000);
        for (Character& character : characters) {
            const auto& all = random() % 2 == 0 ? common : singles;
            character = all[random() % all.size()];
        }
        const std::string text = textOf(pair.from, characters);
        const std::string there = convert(pair.from, pair.to, text);
        EXPECT_TRUE(there == Iconv(pair.from, pair.to).convert(text));
        EXPECT_TRUE(convert(pair.to, pair.from, there) == Iconv(pair.to, pair.from).convert(there));
    }
}

TEST_F(RealTablesTest, WhatHasNoCounterpartBecomesTheSubstitute) {
    ASSERT_EQ(xxxInitialize(), 0);
    constexpr CharacterSet kPc{850, nullptr, false, false};
    constexpr CharacterSet kIso{819, nullptr, false, false};
    constexpr CharacterSet kHost{37, nullptr, true, false};
    constexpr CharacterSet kHostJapanese{930, nullptr, true, true};
    constexpr CharacterSet kPcJapanese{943, nullptr, false, true};
    EXPECT_EQ(convert(kPc, kIso, "\xC9"), "\x1A");  // a box corner
    EXPECT_EQ(convert(kPc, kHost, "\xC9"), "\x3F");
    EXPECT_EQ(convert(kHostJapanese, kPcJapanese, "\x0E\xFF\xFF\x0F"), "\x1A\x1A");
    EXPECT_EQ(convert(kPcJapanese, kHostJapanese, "\x85\x40"), "\x0E\x3F\x3F\x0F");
}

}  // namespace
