// The tests that every entry of a form passes before it is saved.
#include <algorithm>
#include <iterator>
#include <string_view>

#include "config/NameValuePair.h"
#include "config/Results.h"
#include "frontend/ConfigInterface.h"
#include "frontend/MessageNumbers.h"
#include "services/base/Text.h"
#include "services/outer/ServiceCalls.h"

using namespace dnz;

namespace {

constexpr char dnzNZVars[][49] = {"NZIGwQueueManager", "NZIGwQueue", "NZIGwReplyQueue"};
constexpr std::string_view dnzNZValid =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ1234567890%/._";
constexpr std::string_view dnzNum = "0123456789-";

constexpr std::string_view kWaitInterval = "NZIGwWaitInterval";
constexpr std::string_view kContext = "NZIGwContext";
constexpr std::string_view kContextNone = "None";
constexpr std::string_view kContextAll = "All";

constexpr std::size_t kLongestEntry = 255;
constexpr std::size_t kLongestQueueValue = 48;
// What a saved line adds to its three parts: two spaces and the "#".
constexpr std::size_t kEntryFrame = 3;

// An entry as its tests see it. A missing value or description is empty. The views show the texts
// of the pair itself, so a change of its value shows here.
struct Entry {
    NameValuePair& pair;
    const char* nameText = pair.getName();
    const char* valueText = pair.getValue();
    std::string_view name = viewOf(nameText);
    std::string_view value = viewOf(valueText);
    std::string_view description = viewOf(pair.getDesc());
};

// Reports the faults of the entries; the first report begins the page.
class FaultReports {
public:
    explicit FaultReports(ConfigInterface& controller) : controller_(controller) {}

    void report(int message, const Entry& entry) {
        controller_.OutputMessage(message, isEmpty_ ? 1 : 0, nullptr, nullptr);
        isEmpty_ = false;
        controller_.OutputMessage(kFaultyEntry, 0, entry.nameText, entry.valueText);
    }
    // Whether nothing was reported.
    [[nodiscard]] bool isEmpty() const { return isEmpty_; }

private:
    ConfigInterface& controller_;
    bool isEmpty_ = true;
};

bool isQueueEntry(std::string_view name) {
    return std::any_of(std::begin(dnzNZVars), std::end(dnzNZVars),
                       [name](const char* queueName) { return name == queueName; });
}

bool holdsOnly(std::string_view value, std::string_view characters) {
    return value.find_first_not_of(characters) == std::string_view::npos;
}

void checkLength(const Entry& entry, FaultReports& reports) {
    const std::size_t length =
        entry.name.size() + entry.value.size() + entry.description.size() + kEntryFrame;
    if (length > kLongestEntry) {
        reports.report(kEntryLength, entry);
    }
}

void checkQueueValue(const Entry& entry, FaultReports& reports) {
    if (entry.value.empty()) {
        return;
    }
    if (entry.value.size() > kLongestQueueValue) {
        reports.report(kQueueValueLength, entry);
    }
    if (!holdsOnly(entry.value, dnzNZValid)) {
        reports.report(kQueueValueCharacter, entry);
    }
    if (entry.value.front() == '_' || entry.value.back() == '_') {
        reports.report(kQueueValueUnderscore, entry);
    }
}

// Gives the letters of the two words the case in which they are saved; in a faulty value of the
// same length too, where they are in their places.
void normaliseContext(NameValuePair& pair, std::size_t valueSize) {
    char* value = pair.get_oValue();
    for (const std::string_view word : {kContextNone, kContextAll}) {
        if (valueSize != word.size()) {
            continue;
        }
        std::transform(word.begin(), word.end(), value, value, [](char wanted, char current) {
            return upperCase(current) == upperCase(wanted) ? wanted : current;
        });
    }
}

// An entry with no value leaves the context to the gateway and passes.
void checkContext(const Entry& entry, FaultReports& reports) {
    if (entry.valueText != nullptr && entry.value != kContextNone && entry.value != kContextAll) {
        reports.report(kContextWord, entry);
    }
}

void checkOtherValue(const Entry& entry, FaultReports& reports) {
    // A value ends at its first space after other text, so a space here is a leading one.
    if (entry.value.find(' ') != std::string_view::npos) {
        reports.report(kValueBlank, entry);
    }
    if (entry.value.find('#') != std::string_view::npos) {
        reports.report(kValueNumberSign, entry);
    }
    if (entry.name == kWaitInterval && !holdsOnly(entry.value, dnzNum)) {
        reports.report(kWaitIntervalCharacter, entry);
    }
    // After the other tests, whose reports show the value as it was.
    if (entry.name == kContext) {
        normaliseContext(entry.pair, entry.value.size());
        checkContext(entry, reports);
    }
}

}  // namespace

int ConfigInterface::Validate() {
    TraceScope trace("ConfigInterface::Validate");
    FaultReports reports(*this);
    for (NameValuePair* pair = iniParts.getFirst(); pair != nullptr; pair = iniParts.getNext()) {
        const Entry entry{*pair};
        checkLength(entry, reports);
        if (isQueueEntry(entry.name)) {
            checkQueueValue(entry, reports);
        } else {
            checkOtherValue(entry, reports);
        }
    }
    if (reports.isEmpty()) {
        return trace.exitWith(kDone);
    }
    OutputMessage(kFailureEnd, 0, nullptr, nullptr);
    return trace.exitWith(kFailed);
}
