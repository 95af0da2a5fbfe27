// Converts the text on standard input from one CCSID to another and prints the speed in MiB/s, and
// its ratios to a bare loop over a table of 256 bytes and to the C library:
//     conversion FROM TO
// Conversion and loop fill the same target in turns, the best of 200 counts. The C library converts
// once, which also gives the result that is expected.
#include <iconv.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <iterator>
#include <string>

#include "services/inner/ControlBlock.h"
#include "xlat/TextConversion.h"

namespace {

template <typename Work>
double timeOf(const Work& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

std::string convertByLibrary(int from, int to, std::string source) {
    std::string target(2 * source.size(), '\0');
    const iconv_t converter =
        iconv_open(("IBM" + std::to_string(to)).c_str(), ("IBM" + std::to_string(from)).c_str());
    char* in = source.data();
    char* out = target.data();
    std::size_t inLeft = source.size();
    std::size_t outLeft = target.size();
    iconv(converter, &in, &inLeft, &out, &outLeft);
    iconv(converter, nullptr, nullptr, &out, &outLeft);
    iconv_close(converter);
    target.resize(target.size() - outLeft);
    return target;
}

}  // namespace

int main(int, char** arguments) {
    static CSCtrlBlock block{};  // without the rest of the services, which would trace and report
    xnzCSCtrl = &block;
    xxxInitialize();

    const int from = std::atoi(arguments[1]);
    const int to = std::atoi(arguments[2]);
    const std::string source(std::istreambuf_iterator<char>(std::cin), {});
    const std::string expected = convertByLibrary(from, to, source);
    const double library = timeOf([&] { convertByLibrary(from, to, source); });
    std::string target(2 * source.size(), '\0');
    std::int32_t length = 0;
    const auto convert = [&] {
        length = static_cast<std::int32_t>(target.size());
        return xcsConvertString(from, to, source.data(), static_cast<std::int32_t>(source.size()),
                                target.data(), &length);
    };
    if (convert() != 0 || target.substr(0, static_cast<std::size_t>(length)) != expected) {
        std::fputs("The result isn't that of the C library.\n", stderr);
        return EXIT_FAILURE;
    }

    // The least work: its loop is aligned by an option of its target, which fits any result.
    const auto translate = [&source, out = target.data(), table = expected.data()] {
        std::transform(source.begin(), source.end(), out,
                       [table](unsigned char byte) { return table[byte]; });
    };
    double bare = 1;
    double ours = 1;
    for (int round = 0; round < 200; ++round) {
        bare = std::min(bare, timeOf(translate));
        ours = std::min(ours, timeOf(convert));
    }
    std::printf("%.0f %.3f %.1f\n", static_cast<double>(source.size()) / ours / (1 << 20),
                bare / ours, library / ours);
}
