// The speed of the text conversion beside a bare loop over a table of 256 bytes: 1 MiB each, in
// turns, the best of 200. The C library converts once, for the comparison of the results.
#include <iconv.h>
#include <stdlib.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

#include "services/inner/ControlBlock.h"
#include "xlat/TextConversion.h"

namespace {

constexpr std::size_t kTextSize = std::size_t{1} << 20U;
constexpr int kRounds = 200;

// A text has runs of up to `longestRun` double-byte characters, 0 for none, and between them
// single-byte runs of twice their bytes.
struct Subject {
    const char* name;
    std::int32_t from;
    std::int32_t to;
    const char* fromConverter;
    const char* toConverter;
    std::size_t longestRun;
};

constexpr Subject kSubjects[] = {
    {"850 to 819", 850, 819, "IBM850", "ISO-8859-1", 0},
    {"PC 943 to host 930, phrases", 943, 930, "IBM943", "IBM930", 60},
    {"PC 943 to host 930, words", 943, 930, "IBM943", "IBM930", 11},
    {"host 930 to PC 943, phrases", 930, 943, "IBM930", "IBM943", 60},
    {"host 930 to PC 943, words", 930, 943, "IBM930", "IBM943", 11},
};

void require(bool isDone, const char* what) {
    if (!isDone) {
        std::fprintf(stderr, "%s failed\n", what);
        std::exit(EXIT_FAILURE);
    }
}

std::string convertByLibrary(const char* from, const char* to, std::string source) {
    std::string target(2 * source.size(), '\0');
    const iconv_t converter = iconv_open(to, from);
    char* in = source.data();
    char* out = target.data();
    std::size_t inLeft = source.size();
    std::size_t outLeft = target.size();
    require(iconv(converter, &in, &inLeft, &out, &outLeft) == 0 &&
                iconv(converter, nullptr, nullptr, &out, &outLeft) == 0,
            "iconv");
    iconv_close(converter);
    target.resize(target.size() - outLeft);
    return target;
}

std::size_t convert(const Subject& subject, const std::string& source, std::string& target) {
    auto length = static_cast<std::int32_t>(target.size());
    require(xcsConvertString(subject.from, subject.to, source.data(),
                             static_cast<std::int32_t>(source.size()), target.data(), &length) == 0,
            subject.name);
    return static_cast<std::size_t>(length);
}

// The least work: its loop is aligned by an option of its target, which fits any result.
[[gnu::noinline]] void translate(const std::string& source, std::string& target,
                                 const std::string& table) {
    const auto* from = reinterpret_cast<const unsigned char*>(source.data());
    const char* entries = table.data();
    char* to = target.data();
    const std::size_t size = source.size();
    for (std::size_t i = 0; i < size; ++i) {
        to[i] = entries[from[i]];
    }
}

// PC text whose characters have counterparts in all the sets here: kanji of rows that are full.
std::string makePcText(std::size_t longestRun) {
    std::mt19937 random(930943);
    std::string text;
    const auto left = [&text] { return kTextSize - text.size(); };
    while (left() >= 2) {
        for (std::size_t run = longestRun > 0 ? 1 + random() % longestRun : 0;
             run > 0 && left() >= 2; --run) {
            text += static_cast<char>(0x89 + random() % 15);
            text += static_cast<char>(0x80 + random() % 0x7D);
        }
        for (std::size_t run = 1 + random() % (4 * longestRun + 3); run > 0 && left() > 0; --run) {
            text += "ABCDEFGHIJKLMNOPQRSTUVWXYZ 0123456789,.-"[random() % 40];
        }
    }
    return text;
}

template <typename Work>
double timeOf(const Work& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void measure(const Subject& subject) {
    const std::string source =
        convertByLibrary(subject.longestRun > 0 ? "IBM943" : "IBM850", subject.fromConverter,
                         makePcText(subject.longestRun));
    const auto byLibrary = [&] {
        return convertByLibrary(subject.fromConverter, subject.toConverter, source);
    };
    const std::string expected = byLibrary();
    const double library = timeOf(byLibrary);
    std::string target(2 * source.size(), '\0');
    require(target.substr(0, convert(subject, source, target)) == expected, "the comparison");
    const std::string table(expected, 0, 256);
    double bare = 1;
    double ours = 1;
    for (int round = 0; round < kRounds; ++round) {
        bare = std::min(bare, timeOf([&] { translate(source, target, table); }));
        ours = std::min(ours, timeOf([&] { convert(subject, source, target); }));
    }
    std::printf("%s|%.0f|%.3f|%.1f\n", subject.name,
                static_cast<double>(source.size()) / ours / (1 << 20), bare / ours, library / ours);
}

}  // namespace

int main() {
    static CSCtrlBlock block{};  // without the rest of the services, which would trace and report
    xnzCSCtrl = &block;
    setenv("DNZ_XLAT_PATH", TABLE_DIRECTORY, 1);
    require(xxxInitialize() == 0, "the search for tables");
    for (const Subject& subject : kSubjects) {
        measure(subject);
    }
}
