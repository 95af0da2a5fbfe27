// The text conversion beside its measures: the converter of the C library on the same text, and
// the least work that could be done, a bare loop over a table of 256 bytes and memcpy.
// Before anything is measured the results are compared with those of the C library.
#include <benchmark/benchmark.h>
#include <iconv.h>
#include <stdlib.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <random>
#include <string>
#include <utility>

#include "services/inner/ControlBlock.h"
#include "xlat/ConversionLifecycle.h"
#include "xlat/TextConversion.h"

namespace {

constexpr std::size_t kTextSize = std::size_t{64} << 20U;
constexpr std::size_t kShortTextSize = 60;
constexpr std::size_t kSampleSize = std::size_t{1} << 20U;

// What a text is made of: double-byte runs of up to `longestRun` characters and between them
// single-byte runs twice as long in bytes on average, so that a third of the text is double-byte;
// or one kind only.
enum class Mixture { kSingleBytes, kAThirdDoubleBytes, kDoubleBytes };
constexpr std::size_t kWord = 11;
constexpr std::size_t kPhrase = 60;

struct Subject {
    const char* name;
    std::int32_t from;
    std::int32_t to;
    const char* fromConverter;
    const char* toConverter;
    Mixture mixture;
    std::size_t longestRun;
};

constexpr Subject kSubjects[] = {
    {"850 to 819", 850, 819, "IBM850", "ISO-8859-1", Mixture::kSingleBytes, kWord},
    {"37 to 819", 37, 819, "IBM037", "ISO-8859-1", Mixture::kSingleBytes, kWord},
    {"PC 943 to host 930, a third double-byte, phrases", 943, 930, "IBM943", "IBM930",
     Mixture::kAThirdDoubleBytes, kPhrase},
    {"PC 943 to host 930, a third double-byte, words", 943, 930, "IBM943", "IBM930",
     Mixture::kAThirdDoubleBytes, kWord},
    {"PC 943 to host 930, all double-byte", 943, 930, "IBM943", "IBM930", Mixture::kDoubleBytes,
     kWord},
    {"host 930 to PC 943, a third double-byte, phrases", 930, 943, "IBM930", "IBM943",
     Mixture::kAThirdDoubleBytes, kPhrase},
    {"host 930 to PC 943, a third double-byte, words", 930, 943, "IBM930", "IBM943",
     Mixture::kAThirdDoubleBytes, kWord},
    {"host 930 to PC 943, all double-byte", 930, 943, "IBM930", "IBM943", Mixture::kDoubleBytes,
     kWord},
};

class Iconv {
public:
    Iconv(const char* from, const char* to) : handle_(iconv_open(to, from)) {
        if (reinterpret_cast<std::intptr_t>(handle_) == -1) {
            std::perror("iconv_open");
            std::exit(EXIT_FAILURE);
        }
    }
    ~Iconv() { iconv_close(handle_); }
    Iconv(const Iconv&) = delete;
    Iconv& operator=(const Iconv&) = delete;

    // The count of bytes written to `target`, which has room for any result.
    std::size_t convert(const std::string& source, std::string& target) {
        char* in = const_cast<char*>(source.data());
        char* out = target.data();
        std::size_t inLeft = source.size();
        std::size_t outLeft = target.size();
        if (iconv(handle_, &in, &inLeft, &out, &outLeft) != 0 ||
            iconv(handle_, nullptr, nullptr, &out, &outLeft) != 0) {
            std::perror("iconv");
            std::exit(EXIT_FAILURE);
        }
        return target.size() - outLeft;
    }

private:
    iconv_t handle_;
};

// PC text, all of whose characters have counterparts in all the sets here.
std::string makePcText(const Subject& subject, std::size_t size) {
    std::mt19937 random(930943);
    std::string text;
    const auto fits = [&](std::size_t count) { return text.size() + count <= size; };
    while (fits(2)) {
        if (subject.mixture != Mixture::kSingleBytes) {
            // Kanji of the rows that are full.
            for (std::size_t left = 1 + random() % subject.longestRun; left > 0 && fits(2);
                 --left) {
                const auto second = static_cast<char>(0x80 + random() % 0x7D);
                text += {static_cast<char>(0x89 + random() % 15), second};
            }
        }
        if (subject.mixture != Mixture::kDoubleBytes) {
            const std::size_t longest = 4 * (subject.longestRun + 1) - 1;
            for (std::size_t left = 1 + random() % longest; left > 0 && fits(1); --left) {
                text += "ABCDEFGHIJKLMNOPQRSTUVWXYZ 0123456789,.-"[random() % 40];
            }
        }
    }
    return text;
}

const std::string& textOf(const Subject& subject, std::size_t size) {
    static std::map<std::pair<const Subject*, std::size_t>, std::string> texts;
    std::string& text = texts[{&subject, size}];
    if (text.empty()) {
        const bool isMixed = subject.mixture != Mixture::kSingleBytes;
        const std::string pcText = makePcText(subject, size);
        text.resize(2 * pcText.size() + 2);
        text.resize(
            Iconv(isMixed ? "IBM943" : "IBM850", subject.fromConverter).convert(pcText, text));
    }
    return text;
}

std::string roomFor(const std::string& text) {
    return std::string(2 * text.size() + 2, '\0');
}

std::int32_t convert(const Subject& subject, const std::string& source, std::string& target) {
    auto length = static_cast<std::int32_t>(target.size());
    const std::int32_t code =
        xcsConvertString(subject.from, subject.to, source.data(),
                         static_cast<std::int32_t>(source.size()), target.data(), &length);
    return code == 0 ? length : -1;
}

void requireAgreement(const Subject& subject) {
    const std::string& source = textOf(subject, kSampleSize);
    std::string ours = roomFor(source);
    std::string theirs = roomFor(source);
    const auto length = static_cast<std::size_t>(convert(subject, source, ours));
    if (length != Iconv(subject.fromConverter, subject.toConverter).convert(source, theirs) ||
        std::memcmp(ours.data(), theirs.data(), length) != 0) {
        std::fprintf(stderr, "%s: the results differ\n", subject.name);
        std::exit(EXIT_FAILURE);
    }
}

void countBytes(benchmark::State& state, const std::string& source) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(source.size()));
}

void measureConversion(benchmark::State& state, const Subject& subject, std::size_t size) {
    const std::string& source = textOf(subject, size);
    std::string target = roomFor(source);
    for ([[maybe_unused]] auto turn : state) {
        benchmark::DoNotOptimize(convert(subject, source, target));
        benchmark::ClobberMemory();
    }
    countBytes(state, source);
}

void measureIconv(benchmark::State& state, const Subject& subject, std::size_t size) {
    const std::string& source = textOf(subject, size);
    Iconv converter(subject.fromConverter, subject.toConverter);
    std::string target = roomFor(source);
    for ([[maybe_unused]] auto turn : state) {
        benchmark::DoNotOptimize(converter.convert(source, target));
        benchmark::ClobberMemory();
    }
    countBytes(state, source);
}

void measureBareLoop(benchmark::State& state) {
    const std::string& source = textOf(kSubjects[0], kTextSize);
    unsigned char table[256];
    for (std::size_t byte = 0; byte < sizeof table; ++byte) {
        table[byte] = static_cast<unsigned char>(byte ^ 0x80U);
    }
    std::string target(source.size(), '\0');
    benchmark::DoNotOptimize(table);
    for ([[maybe_unused]] auto turn : state) {
        const auto* from = reinterpret_cast<const unsigned char*>(source.data());
        auto* to = reinterpret_cast<unsigned char*>(target.data());
        for (std::size_t i = 0; i < source.size(); ++i) {
            to[i] = table[from[i]];
        }
        benchmark::ClobberMemory();
    }
    countBytes(state, source);
}

void measureMemcpy(benchmark::State& state) {
    const std::string& source = textOf(kSubjects[0], kTextSize);
    std::string target(source.size(), '\0');
    for ([[maybe_unused]] auto turn : state) {
        std::memcpy(target.data(), source.data(), source.size());
        benchmark::ClobberMemory();
    }
    countBytes(state, source);
}

void registerAll() {
    benchmark::RegisterBenchmark("floor/memcpy", measureMemcpy)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("floor/bare loop", measureBareLoop)->Unit(benchmark::kMillisecond);
    for (const Subject& subject : kSubjects) {
        requireAgreement(subject);
        const std::string name = subject.name;
        for (const std::size_t size : {kTextSize, kShortTextSize}) {
            const std::string suffix = size == kTextSize ? "/64 MiB" : "/60 bytes";
            benchmark::RegisterBenchmark(
                ("dnzcnf/" + name + suffix).c_str(),
                [&, size](auto& state) { measureConversion(state, subject, size); });
            benchmark::RegisterBenchmark(
                ("iconv/" + name + suffix).c_str(),
                [&, size](auto& state) { measureIconv(state, subject, size); });
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    static CSCtrlBlock block{};  // without the rest of the services, which would trace and report
    xnzCSCtrl = &block;
    setenv("DNZ_XLAT_PATH", TABLE_DIRECTORY, 1);
    if (xxxInitialize() != 0) {
        std::fprintf(stderr, "no tables in %s\n", TABLE_DIRECTORY);
        return EXIT_FAILURE;
    }
    registerAll();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    xxxTerminate();
    return EXIT_SUCCESS;
}
