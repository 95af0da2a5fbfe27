#include "messages/MessageInserts.h"

#include <array>
#include <cinttypes>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "services/base/ReturnCodes.h"
#include "services/base/Text.h"
#include "services/inner/ControlBlock.h"
#include "services/inner/FailureReport.h"
#include "services/inner/TraceRecords.h"

using namespace dnz;

namespace {

constexpr std::size_t kMarkerCount = 8;
constexpr std::size_t kMarkersOfAddInserts = 5;

constexpr std::size_t kNumberTexts = 5;
constexpr std::size_t kNumberTextSize = 12;  // "-2147483648" and a terminator

// The values of the markers as texts, in the order of the markers' digits.
class InsertValues {
public:
    InsertValues(std::int32_t number, const xcsINSERTS& inserts)
        : values_{decimal(0, inserts.number1),     decimal(1, inserts.number2),
                  viewOf(inserts.text1),           viewOf(inserts.text2),
                  viewOf(inserts.text3),           decimal(2, number),
                  hexadecimal(3, inserts.number1), hexadecimal(4, inserts.number2)} {}
    InsertValues(const InsertValues&) = delete;
    InsertValues& operator=(const InsertValues&) = delete;

    [[nodiscard]] std::string_view value(std::size_t index) const { return values_[index]; }

    // The value of `marker`, if it is one of the first `limit` markers; else `otherwise`.
    [[nodiscard]] std::string_view valueOf(std::string_view marker, std::size_t limit,
                                           std::string_view otherwise) const {
        if (marker.size() < 2 || marker[1] < '1') {
            return otherwise;
        }
        const auto index = static_cast<std::size_t>(marker[1] - '1');
        return index < limit ? values_[index] : otherwise;
    }

private:
    std::string_view decimal(std::size_t slot, std::int32_t number) {
        return BoundedText(numbers_[slot]).appendf("%" PRId32, number).view();
    }
    std::string_view hexadecimal(std::size_t slot, std::int32_t number) {
        const auto bits = static_cast<std::uint32_t>(number);
        return BoundedText(numbers_[slot]).appendf("%" PRIX32, bits).view();
    }

    // Declared before values_, whose initialisation writes here.
    char numbers_[kNumberTexts][kNumberTextSize];
    std::array<std::string_view, kMarkerCount> values_;
};

// Passes a template to `emit` in pieces: plain text, and for each "%" and its next character the
// text from `replacementOf`.
template <typename ReplacementOf, typename Emit>
void expand(std::string_view text, ReplacementOf replacementOf, Emit emit) {
    constexpr std::size_t kMarkerLength = 2;
    while (!text.empty()) {
        const std::string_view plain = text.substr(0, text.find('%'));
        emit(plain);
        text.remove_prefix(plain.size());
        const std::string_view marker = text.substr(0, kMarkerLength);
        if (!marker.empty()) {
            emit(replacementOf(marker));
        }
        text.remove_prefix(marker.size());
    }
}

// Not even called during a report: its trace records would come between those of the report.
void reportNoStorage(const char* functionName, std::int32_t probe, std::int32_t majorCode,
                     const char* comment) {
    if (xnzCSCtrl != nullptr && xnzCSCtrl->inFailureReport != 1) {
        xnz_xcsWYRD(functionName, probe,
                    {.number1 = majorCode, .text1 = comment, .text2 = " ", .text3 = " "});
    }
}

// Puts the table of pointers, and after it the texts, into one block.
void fillTable(char** table, const InsertValues& values) {
    char* place = reinterpret_cast<char*>(table + kMarkerCount);
    for (std::size_t i = 0; i < kMarkerCount; ++i) {
        const std::string_view value = values.value(i);
        table[i] = place;
        std::memcpy(place, value.data(), value.size());
        place[value.size()] = '\0';
        place += value.size() + 1;
    }
}

std::size_t tableSize(const InsertValues& values) {
    std::size_t size = kMarkerCount * sizeof(char*);
    for (std::size_t i = 0; i < kMarkerCount; ++i) {
        size += values.value(i).size() + 1;
    }
    return size;
}

}  // namespace

std::int32_t xnzConvertInserts(std::int32_t number, const char* messageTemplate, xcsINSERTS inserts,
                               std::int32_t /*ccsid*/, char** text, std::uint32_t* length) {
    ServiceTraceScope trace("xnzConvertInserts");
    const InsertValues values(number, inserts);
    const auto replacementOf = [&values](std::string_view marker) {
        return values.valueOf(marker, kMarkerCount, marker);
    };
    std::size_t finishedLength = 0;
    expand(messageTemplate, replacementOf,
           [&finishedLength](std::string_view piece) { finishedLength += piece.size(); });
    CTextHandle finished(static_cast<char*>(std::calloc(finishedLength + 1, 1)));
    if (finished == nullptr) {
        reportNoStorage("xnzConvertInserts", 1, kServiceOk, "Unable to obtain buffer storage");
        return trace.exitWith(xecS_E_NONE);
    }
    BoundedText out(finished.get(), finishedLength + 1);
    expand(messageTemplate, replacementOf, [&out](std::string_view piece) { out.append(piece); });
    *length = static_cast<std::uint32_t>(finishedLength);
    *text = finished.release();
    return trace.exitWith(kServiceOk);
}

std::int32_t xcsConvertInserts(std::int32_t number, xcsINSERTS inserts, std::int32_t /*ccsid*/,
                               char*** table, std::int32_t* count) {
    ServiceTraceScope trace("xcsConvertInserts");
    const InsertValues values(number, inserts);
    auto* block = static_cast<char**>(std::calloc(tableSize(values), 1));
    if (block == nullptr) {
        reportNoStorage("xcsConvertInserts", 2, xecS_E_NONE, " ");
        return trace.exitWith(xecS_E_NONE);
    }
    fillTable(block, values);
    *table = block;
    *count = static_cast<std::int32_t>(kMarkerCount);
    return trace.exitWith(kServiceOk);
}

std::int32_t AddInserts(const char* messageTemplate, char* buffer, std::uint32_t size,
                        xcsINSERTS inserts, std::int32_t code) {
    const InsertValues values(0, inserts);
    BoundedText out(buffer, size);
    expand(
        messageTemplate,
        [&values](std::string_view marker) {
            const bool isCut = marker.size() < 2;
            return isCut ? marker : values.valueOf(marker, kMarkersOfAddInserts, "Bad insert!\n");
        },
        [&out](std::string_view piece) { out.append(piece); });
    const bool isFull = out.view().size() + 1 >= size;
    return isFull ? xecE_W_TEXT_TRUNCATED : code;
}
