// mktables: makes a directory for DNZ_XLAT_PATH, the CCSID table and the translation tables, from
// the converters of the C library.
//     mktables PAGE-PAIRS-FILE DIRECTORY
// The file lists the CCSIDs and the pairs; page-pairs.txt beside this source explains it. The
// directory must exist. Characters that the formats can't express are reported on standard error.
// Exit value 0, or 1 if a file can't be read or written or the C library lacks a converter.
// Bytes without a counterpart become the substitute byte of the target, pairs two of them.
#include <iconv.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "services/base/File.h"
#include "services/base/Text.h"
#include "xlat/LeadBytes.h"

using namespace dnz;

namespace {

using Bytes = std::string;

constexpr char kShiftOut = 0x0E;
constexpr char kShiftIn = 0x0F;
constexpr char kHostSubstitute = 0x3F;
constexpr char kPcSubstitute = 0x1A;

constexpr int kByteValues = 256;
constexpr std::size_t kRowSize = 512;
// Row 0 overlaps the row numbers, and the first row after it contains only substitutes.
constexpr int kSubstituteRow = 1;
constexpr int kLastRow = 127;

[[noreturn]] void fail(const std::string& reason) {
    std::fprintf(stderr, "mktables: %s\n", reason.c_str());
    std::exit(EXIT_FAILURE);
}

struct Ccsid {
    int number;
    int dbcsPage;
    int sbcsPage;
    int widthClass;
    int encodingClass;
    int leadByteClass;
    std::string converter;

    [[nodiscard]] bool isHost() const { return encodingClass == 1; }
    [[nodiscard]] bool isMixed() const { return widthClass == 3; }
    [[nodiscard]] char substitute() const { return isHost() ? kHostSubstitute : kPcSubstitute; }
};

struct PagePairs {
    std::vector<int> order;  // of the lines in the CCSID table
    std::map<int, Ccsid> ccsids;
    std::vector<std::vector<int>> groups;
};

// Adds the contents of a line; an unknown line ends the program.
void addLine(PagePairs& pairs, char* line) {
    constexpr char kBlanks[] = " \t\r\n";
    const char* kind = std::strtok(line, kBlanks);
    if (kind == nullptr || *kind == '#') {
        return;
    }
    std::vector<int> numbers;
    std::string converter;
    for (char* word = nullptr; (word = std::strtok(nullptr, kBlanks)) != nullptr;) {
        numbers.push_back(leadingNumber(word));
        converter = word;
    }
    if (std::strcmp(kind, "group") == 0) {
        pairs.groups.push_back(numbers);
    } else if (std::strcmp(kind, "ccsid") == 0 && numbers.size() == 7) {
        pairs.order.push_back(numbers[0]);
        pairs.ccsids[numbers[0]] = {numbers[0], numbers[1], numbers[2], numbers[3],
                                    numbers[4], numbers[5], converter};
    } else {
        fail(std::string("unknown line: ") + kind);
    }
}

PagePairs readPagePairs(const char* path) {
    const StreamHandle file(std::fopen(path, "r"));
    if (file == nullptr) {
        fail(std::string("can't open ") + path);
    }
    PagePairs pairs;
    char line[256];
    while (std::fgets(line, sizeof line, file.get()) != nullptr) {
        addLine(pairs, line);
    }
    return pairs;
}

// A converter of the C library (iconv, POSIX).
class Converter {
public:
    Converter(const Ccsid& from, const Ccsid& to)
        : handle_(iconv_open(to.converter.c_str(), from.converter.c_str())) {
        if (reinterpret_cast<std::intptr_t>(handle_) == -1) {
            fail("the C library has no converter from " + from.converter + " to " + to.converter);
        }
    }
    ~Converter() { iconv_close(handle_); }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    // Converts a text on its own; nothing where a part of it has no counterpart.
    std::optional<Bytes> convert(Bytes text) {
        char out[16];
        char* in = text.data();
        char* place = out;
        std::size_t inLeft = text.size();
        std::size_t outLeft = sizeof out;
        iconv(handle_, nullptr, nullptr, nullptr, nullptr);
        constexpr auto kFailed = static_cast<std::size_t>(-1);
        if (iconv(handle_, &in, &inLeft, &place, &outLeft) == kFailed ||
            iconv(handle_, nullptr, nullptr, &place, &outLeft) == kFailed) {
            return std::nullopt;
        }
        return Bytes(out, place);
    }

private:
    iconv_t handle_;
};

// Both ends of a conversion with their converter.
class Translator {
public:
    Translator(const Ccsid& from, const Ccsid& to) : from_(from), to_(to), converter_(from, to) {}

    // The single byte that a single byte becomes.
    std::optional<char> byte(char byte) {
        const std::optional<Bytes> out = converter_.convert({byte});
        if (!out || out->size() != 1) {
            return std::nullopt;
        }
        const char result = out->front();
        const bool shifts = result == kShiftOut || result == kShiftIn;
        return shifts && to_.isMixed() && to_.isHost() ? std::nullopt : std::optional(result);
    }

    // The pair that a pair becomes.
    std::optional<Bytes> pair(char first, char second) {
        if (!from_.isHost() && converter_.convert({first})) {
            return std::nullopt;  // a single byte, followed by another one
        }
        const Bytes text =
            from_.isHost() ? Bytes{kShiftOut, first, second, kShiftIn} : Bytes{first, second};
        const std::optional<Bytes> out = converter_.convert(text);
        if (!out) {
            return std::nullopt;
        }
        if (!to_.isHost()) {
            return out->size() == 2 ? out : std::nullopt;
        }
        const bool isSection =
            out->size() == 4 && out->front() == kShiftOut && out->back() == kShiftIn;
        return isSection ? std::optional(out->substr(1, 2)) : std::nullopt;
    }

private:
    const Ccsid& from_;
    const Ccsid& to_;
    Converter converter_;
};

Bytes makeSingleByteTable(const Ccsid& from, const Ccsid& to) {
    Translator translator(from, to);
    Bytes table;
    for (int value = 0; value < kByteValues; ++value) {
        table += translator.byte(static_cast<char>(value)).value_or(to.substitute());
    }
    return table;
}

// The row of pairs for one first byte; nothing where no pair has a counterpart.
std::optional<Bytes> makeRow(Translator& translator, char first, char substitute) {
    Bytes row;
    bool isUsed = false;
    for (int second = 0; second < kByteValues; ++second) {
        const std::optional<Bytes> pair = translator.pair(first, static_cast<char>(second));
        isUsed = isUsed || pair.has_value();
        row += pair.value_or(Bytes(2, substitute));
    }
    return isUsed ? std::optional(row) : std::nullopt;
}

Bytes makeDoubleByteTable(const Ccsid& from, const Ccsid& to) {
    Translator translator(from, to);
    Bytes table(kRowSize, '\0');
    table.replace(0, kByteValues, kByteValues, static_cast<char>(kSubstituteRow));
    table.append(kRowSize, to.substitute());
    int number = kSubstituteRow;
    for (int first = 0; first < kByteValues; ++first) {
        const std::optional<Bytes> row =
            makeRow(translator, static_cast<char>(first), to.substitute());
        if (!row) {
            continue;
        }
        if (number == kLastRow) {
            std::fprintf(stderr, "mktables: %d to %d: no row is left for the first byte %02x\n",
                         from.number, to.number, static_cast<unsigned>(first));
            continue;
        }
        table[static_cast<std::size_t>(first)] = static_cast<char>(++number);
        table += *row;
    }
    return table;
}

// Reports which characters of a mixed PC set its class of lead bytes makes unreadable.
void tellLeadByteMisfits(const Ccsid& ccsid) {
    if (!ccsid.isMixed() || ccsid.isHost()) {
        return;
    }
    const LeadBytes& leadBytes = leadBytesOf(ccsid.leadByteClass);
    const Ccsid unicode{0, 0, 0, 1, 2, 0, "UTF-8"};
    Converter converter(ccsid, unicode);
    for (int value = 0; value < kByteValues; ++value) {
        const auto byte = static_cast<char>(value);
        int pairs = 0;
        for (int second = 0; second < kByteValues; ++second) {
            pairs +=
                !converter.convert({byte}) && converter.convert({byte, static_cast<char>(second)})
                    ? 1
                    : 0;
        }
        const bool isLead = leadBytes[static_cast<std::size_t>(value)] != 0;
        if (pairs > 0 && !isLead) {
            std::fprintf(stderr,
                         "mktables: %d: %d pairs with the first byte %02x are read as "
                         "single bytes\n",
                         ccsid.number, pairs, static_cast<unsigned>(value));
        } else if (isLead && converter.convert({byte})) {
            std::fprintf(stderr, "mktables: %d: the single byte %02x is read as a first byte\n",
                         ccsid.number, static_cast<unsigned>(value));
        }
    }
}

class Directory {
public:
    explicit Directory(std::string path) : path_(std::move(path)) {}

    void write(const std::string& name, const Bytes& contents) {
        const std::string path = path_ + "/" + name;
        StreamHandle file(std::fopen(path.c_str(), "wb"));
        const bool isWritten =
            file != nullptr &&
            std::fwrite(contents.data(), 1, contents.size(), file.get()) == contents.size() &&
            std::fclose(file.release()) == 0;
        if (!isWritten) {
            fail("can't write " + path);
        }
    }

    // Writes the table of two pages, unless another pair has written it or it isn't needed.
    template <typename Make>
    void writeTable(int fromPage, int toPage, const Make& make) {
        FixedText<16> name;
        name.appendf("%04x%04x.tbl", static_cast<unsigned>(fromPage),
                     static_cast<unsigned>(toPage));
        if (fromPage != toPage && written_.insert(name.c_str()).second) {
            write(name.c_str(), make());
        }
    }

private:
    std::string path_;
    std::set<std::string> written_;
};

void writeCcsidTable(const PagePairs& pairs, Directory& directory) {
    std::string table = "# ccsid dbcsPage sbcsPage widthClass encodingClass leadByteClass\n";
    for (const int number : pairs.order) {
        const Ccsid& ccsid = pairs.ccsids.at(number);
        FixedText<128> line;
        line.appendf("%5d %5d %5d %d %d %d\n", ccsid.number, ccsid.dbcsPage, ccsid.sbcsPage,
                     ccsid.widthClass, ccsid.encodingClass, ccsid.leadByteClass);
        table += line.view();
    }
    directory.write("ccsid.tbl", table);
}

void writeTables(const Ccsid& from, const Ccsid& to, Directory& directory) {
    directory.writeTable(from.sbcsPage, to.sbcsPage, [&] { return makeSingleByteTable(from, to); });
    if (from.isMixed() && to.isMixed()) {
        directory.writeTable(from.dbcsPage, to.dbcsPage,
                             [&] { return makeDoubleByteTable(from, to); });
    }
}

const Ccsid& ccsidOf(const PagePairs& pairs, int number) {
    const auto found = pairs.ccsids.find(number);
    if (found == pairs.ccsids.end()) {
        fail("a group names CCSID " + std::to_string(number) + ", which has no line");
    }
    return found->second;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        fail("the arguments are PAGE-PAIRS-FILE DIRECTORY");
    }
    const PagePairs pairs = readPagePairs(argv[1]);
    Directory directory(argv[2]);
    for (const int number : pairs.order) {
        tellLeadByteMisfits(pairs.ccsids.at(number));
    }
    for (const std::vector<int>& group : pairs.groups) {
        for (const int from : group) {
            for (const int to : group) {
                writeTables(ccsidOf(pairs, from), ccsidOf(pairs, to), directory);
            }
        }
    }
    writeCcsidTable(pairs, directory);
    return EXIT_SUCCESS;
}
