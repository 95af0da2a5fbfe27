#include "messages/MessageRetrieval.h"

#include <array>
#include <clocale>
#include <cstring>
#include <string_view>

#include "messages/MessageCatalogue.h"
#include "messages/MessageInserts.h"
#include "services/base/ReturnCodes.h"
#include "services/base/Text.h"
#include "services/inner/TraceRecords.h"

using namespace dnz;

namespace {

constexpr std::uint32_t kNotLookedUp = 0x00800000;
constexpr std::int32_t kReplacementNumber = 0x6090;
constexpr char kSectionEnd = '\x14';
constexpr std::size_t kSectionCount = 3;
constexpr std::size_t kFoldColumns = 80;

struct Destination {
    char* buffer;
    std::uint32_t size;
};
using Destinations = std::array<Destination, kSectionCount>;

// A missing section is empty.
using Sections = std::array<std::string_view, kSectionCount>;

// The message category of the locale follows the environment, during the retrieval and after it,
// even if opening a catalogue changes it.
class MessageLocale {
public:
    MessageLocale() {
        const char* name = std::setlocale(LC_MESSAGES, "");
        name_.reset(name != nullptr ? strdup(name) : nullptr);
    }
    ~MessageLocale() {
        if (name_ != nullptr) {
            std::setlocale(LC_MESSAGES, name_.get());
        }
    }
    MessageLocale(const MessageLocale&) = delete;
    MessageLocale& operator=(const MessageLocale&) = delete;

private:
    CTextHandle name_;
};

// The four groups of a message number, the highest first.
std::array<int, 4> groupsOf(std::int32_t number) {
    const auto bits = static_cast<std::uint32_t>(number);
    const auto group = [bits](unsigned shift) { return static_cast<int>(bits >> shift & 0xF); };
    return {group(12), group(8), group(4), group(0)};
}

// A group above nine counts with its value: 0xFFFF gives 16665.
int catalogueIdOf(std::int32_t number) {
    constexpr int kBase = 10;
    int id = 0;
    for (const int group : groupsOf(number)) {
        id = id * kBase + group;
    }
    return id;
}

std::int32_t layoutOf(std::int32_t control) {
    return control & ~kFoldMessage;
}

std::int32_t checkArguments(std::int32_t control, const Destinations& destinations) {
    const std::int32_t layout = layoutOf(control);
    if (layout != kPrefixedMessage && layout != kPlainMessage) {
        return xecE_E_INVALID_CONTROL;
    }
    bool anyWanted = false;
    for (const Destination& destination : destinations) {
        if (destination.size != 0 && destination.buffer == nullptr) {
            return xecE_E_INVALID_BUFFLEN;
        }
        anyWanted = anyWanted || destination.size != 0;
    }
    return anyWanted ? kServiceOk : xecE_E_INVALID_BUFFLEN;
}

Sections splitSections(std::string_view text) {
    const std::string_view first = takeField(text, kSectionEnd);
    const std::string_view second = takeField(text, kSectionEnd);
    return {first, second, text};
}

// Folds the text at spaces into lines of at most 80 columns; a longer word stays whole.
void fold(char* text) {
    // The last space of this line, or the next one if it has none yet.
    char* breakAt = std::strchr(text, ' ');
    std::size_t column = 0;
    for (char* place = text; breakAt != nullptr && *place != '\0'; ++place, ++column) {
        if (column == kFoldColumns) {
            *breakAt = '\n';
            place = breakAt + 1;
            column = 0;
            breakAt = std::strchr(place, ' ');
        }
        if (*place == ' ') {
            breakAt = place;
        }
    }
}

// One retrieval: the state that its steps share.
class Retrieval {
public:
    Retrieval(std::int32_t number, std::int32_t control)
        : number_(number), numberInUse_(number), control_(control) {
        if ((static_cast<std::uint32_t>(number) & kNotLookedUp) != 0) {
            substitute();
        }
    }

    // Finds the text and fills in the inserts.
    std::int32_t fetch(const xcsINSERTS& inserts, std::int32_t ccsid) {
        if (!catalogue_.open()) {
            finished_ = "Velmora was unable to open a message catalog.";
            xnztr_text("...Message file not found");
            return kServiceOk;
        }
        xnztr_text("...Message file now open");
        char* text = nullptr;
        std::uint32_t length = 0;
        const std::int32_t code =
            xnzConvertInserts(number_, findTemplate(), inserts, ccsid, &text, &length);
        if (code == kServiceOk) {
            storage_.reset(text);
            finished_ = {text, length};
        }
        return code;
    }

    // Copies the sections to the given buffers and returns the result code.
    std::int32_t deliver(const Destinations& destinations) {
        const Sections sections = splitSections(finished_);
        for (std::size_t i = 0; i < kSectionCount; ++i) {
            const auto [buffer, size] = destinations[i];
            if (size == 0) {
                continue;
            }
            std::memset(buffer, 0, size);
            BoundedText out(buffer, size);
            if (i == 0) {
                writeFirst(out, buffer, sections[i]);
            } else {
                out.append(sections[i]);
            }
            isTruncated_ = isTruncated_ || out.truncated();
        }
        return resultCode();
    }

private:
    void substitute() {
        isSubstituted_ = true;
        numberInUse_ = kReplacementNumber;
    }

    const char* findTemplate() {
        const int id = catalogueIdOf(numberInUse_);
        if (isTracing()) {
            FixedText<32> record;
            record.appendf("Extract message x'%4.4Xx'", static_cast<unsigned>(id));
            xnztr_text(record.c_str());
        }
        const char* text = catalogue_.text(id);
        if (*text == '\0') {
            substitute();
            text = catalogue_.text(catalogueIdOf(numberInUse_));
        }
        return *text != '\0' ? text : "Velmora was unable to display an error message.";
    }

    // "NZLnnnn: ", for a prefixed message whose text comes from a catalogue.
    void appendPrefix(BoundedText& out) const {
        if (!catalogue_.isOpen() || layoutOf(control_) != kPrefixedMessage) {
            return;
        }
        out.append("NZL");
        for (const int group : groupsOf(numberInUse_)) {
            out.appendf("%c", '0' + group);
        }
        out.append(": ");
    }

    void writeFirst(BoundedText& out, char* buffer, std::string_view section) const {
        appendPrefix(out);
        if (out.truncated()) {
            return;
        }
        out.append(section);
        // The prefix doesn't count: after it a section of 80 bytes isn't folded.
        if ((control_ & kFoldMessage) != 0 && section.size() > kFoldColumns) {
            fold(buffer);
        }
    }

    // A missing catalogue outranks a cut text, which outranks a substitute.
    [[nodiscard]] std::int32_t resultCode() const {
        if (!catalogue_.isOpen()) {
            return xecE_E_MSG_FILE_NOT_LOADED;
        }
        if (isTruncated_) {
            return xecE_W_TEXT_TRUNCATED;
        }
        return isSubstituted_ ? xecE_W_DEFAULT_TEXT_SUBSTITUTED : kServiceOk;
    }

    std::int32_t number_;       // as the caller gave it
    std::int32_t numberInUse_;  // the replacement, if there was one
    std::int32_t control_;
    MessageCatalogue catalogue_;
    CTextHandle storage_;
    std::string_view finished_;
    bool isSubstituted_ = false;
    bool isTruncated_ = false;
};

}  // namespace

std::int32_t xnzGetMessage(std::int32_t number, std::int32_t control, xcsINSERTS inserts,
                           std::int32_t ccsid, char* buffer1, std::uint32_t size1, char* buffer2,
                           std::uint32_t size2, char* buffer3, std::uint32_t size3) {
    ServiceTraceScope trace("xnzGetMessage");
    const MessageLocale locale;
    const Destinations destinations = {{{buffer1, size1}, {buffer2, size2}, {buffer3, size3}}};
    std::int32_t code = checkArguments(control, destinations);
    xnztr_text("Attempting to open the message catalog:");  // for faulty arguments too
    if (code == kServiceOk) {
        Retrieval retrieval(number, control);
        code = retrieval.fetch(inserts, ccsid);
        if (code == kServiceOk) {
            code = retrieval.deliver(destinations);
        }
    }
    return trace.exitWith(code);
}
