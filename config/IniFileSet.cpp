#include "config/IniFileSet.h"

#include <cstdio>
#include <cstring>
#include <string_view>
#include <vector>

#include "config/FileSearch.h"
#include "config/IniFilePart.h"
#include "config/Results.h"
#include "services/base/Path.h"
#include "services/base/Text.h"
#include "services/outer/ServiceCalls.h"

using namespace dnz;

namespace {

constexpr int kReadSize = 256;  // 255 bytes of a line and a terminator
constexpr std::size_t kUsualEntries = 128;
constexpr std::size_t kWrittenLine = 259;  // a line of 255 bytes may grow by ` # ` when saved

constexpr char kBlank = ' ';
constexpr char kNoDescription[] = " ";      // what a missing description is saved as
constexpr char kEmptyDescription[] = " #";  // what a value without a description is read as

char* skipBlanks(char* text) {
    while (*text == kBlank) {
        ++text;
    }
    return text;
}

char* endOfWord(char* text) {
    char* end = std::strchr(text, kBlank);
    return end != nullptr ? end : text + std::strlen(text);
}

// Ends the first word of the text in place and returns the text after its spaces.
char* splitAfterWord(char* text) {
    char* end = endOfWord(text);
    char* rest = skipBlanks(end);
    *end = '\0';
    return rest;
}

// Completes the text after a name, in place, to what an entry stores: null for no text, else one
// that always contains the mark of a description. Without a mark, text after the first word is
// lost. There must be space for two more bytes.
const char* completeText(char* rest) {
    if (*rest == '\0') {
        return nullptr;
    }
    if (std::strchr(rest, kDescriptionMark) == nullptr) {
        std::memcpy(endOfWord(rest), kEmptyDescription, sizeof kEmptyDescription);
    }
    return rest;
}

// The text that an entry of the form stores; empty when there is neither value nor description.
std::string composedText(const char* value, const char* desc) {
    std::string text;
    if (isNullOrEmpty(value) && isNullOrEmpty(desc)) {
        return text;
    }
    if (value != nullptr) {
        text.append(value).append(1, kBlank);
    }
    text.append(1, kDescriptionMark).append(desc != nullptr ? desc : kNoDescription);
    return text;
}

// Ends the value of a part after its first word. Leading spaces stay: the validation reports them.
void cutValue(char* stored) {
    *endOfWord(skipBlanks(stored)) = '\0';
}

NameValuePair* newPart(const char* name, const char* text) {
    auto* part = new IniFilePart(name, text);
    dnzxtr_text(name);
    dnzxtr_text(text);
    // The test of getValue, without its trace record.
    if (text != nullptr && *text != kDescriptionMark) {
        cutValue(part->get_oValue());
    }
    return part;
}

// Opens the file as the search finds it and notes the directory, if the path has one.
void openBySearch(FileReader& file, const std::string& name,
                  std::optional<std::string>& directory) {
    char path[kPathSize];
    if (BoundedText(path).append(name).truncated() ||
        findfileinpath("PATH", name.c_str(), path, static_cast<int>(kPathSize)) != kDone) {
        return;
    }
    const std::size_t directoryLength = std::string_view(path).rfind('/') + 1;
    if (file.use(openRegularFile(path)) && directoryLength > 0) {
        directory.emplace(path, directoryLength);
        dnzxtr_text("Path is ");
        dnzxtr_text(directory->c_str());
    }
}

void buildLine(BoundedText& line, const NameValuePair& part) {
    line.append(part.getName());
    const char* value = part.getValue();
    const char* desc = part.getDesc();
    if (value != nullptr) {
        line.appendf(" %s #%s", value, desc != nullptr ? desc : "");
    } else if (desc != nullptr) {
        line.appendf("  #%s", desc);
    }
}

}  // namespace

IniFileSet::IniFileSet() {
    const TraceScope trace("IniFileSet::IniFileSet");
}

IniFileSet::IniFileSet(const IniFileSet& other)
    : NameValuePairSet(other), oIniFileName(other.oIniFileName) {
    const TraceScope trace("IniFileSet::IniFileSet(copy)");
}

IniFileSet& IniFileSet::operator=(const IniFileSet& other) {
    const TraceScope trace("IniFileSet::operator=");
    oIniFileName = other.oIniFileName;
    oIniFilePath.reset();
    readFailed_ = false;
    NameValuePairSet::operator=(other);
    return *this;
}

IniFileSet::~IniFileSet() {
    const TraceScope trace("IniFileSet::~IniFileSet");
}

int IniFileSet::operator==(const IniFileSet& other) const {
    const TraceScope trace("IniFileSet::operator==");
    return NameValuePairSet::operator==(other);
}

int IniFileSet::operator!=(const IniFileSet& other) const {
    const TraceScope trace("IniFileSet::operator!=");
    return NameValuePairSet::operator!=(other);
}

void IniFileSet::setIniFileName(const char* name) {
    const TraceScope trace("IniFileSet::setIniFileName");
    oIniFileName = name != nullptr ? std::optional<std::string>(name) : std::nullopt;
    oIniFilePath.reset();
    readFailed_ = false;
    populate();
}

const char* IniFileSet::getIniFileName() const {
    return oIniFileName ? oIniFileName->c_str() : nullptr;
}

const char* IniFileSet::getIniFilePath() const {
    return oIniFilePath ? oIniFilePath->c_str() : nullptr;
}

unsigned long IniFileSet::populate() {
    TraceScope trace("IniFileSet::populate");
    if (!oIniFileName) {
        return trace.exitWith(Populated());
    }
    FileReader file(openRegularFile(oIniFileName->c_str()));
    if (!file.isOpen()) {
        openBySearch(file, *oIniFileName, oIniFilePath);
    }
    if (file.isOpen()) {
        readEntries(file);
    }
    return trace.exitWith(Populated());
}

unsigned long IniFileSet::Populated() const {
    return oPopulated;
}

NameValuePair* IniFileSet::findPart(const char* name) {
    const TraceScope trace("IniFileSet::findPart");
    return find(name);
}

void IniFileSet::addNewIniPart(const char* name, const char* value, const char* desc) {
    const TraceScope trace("IniFileSet::addNewIniPart");
    const std::string text = composedText(value, desc);
    auto* part = new IniFilePart(name, text.empty() ? nullptr : text.c_str());
    push(part);
    if (part->getValue() != nullptr) {
        cutValue(part->get_oValue());
    }
}

int IniFileSet::saveIniFile(const char* path) {
    TraceScope trace("IniFileSet::saveIniFile");
    dnzxtr_text("Save to file");
    dnzxtr_text(path);
    const StreamHandle file = openEmptiedStream(path);
    if (file == nullptr) {
        return trace.exitWith(kFailed);
    }
    for (const NameValuePair* part = getFirst(); part != nullptr; part = getNext()) {
        FixedText<kWrittenLine> line;
        buildLine(line, *part);
        std::fprintf(file.get(), "%s\n", line.c_str());
    }
    return trace.exitWith(kDone);
}

void IniFileSet::readEntries(FileReader& file) {
    std::vector<NameValuePair*> parts;
    parts.reserve(kUsualEntries);
    char line[kReadSize + sizeof kEmptyDescription];
    while (file.readLine(line, kReadSize)) {
        line[std::strcspn(line, "\r\n")] = '\0';
        char* name = skipBlanks(line);
        char* rest = splitAfterWord(name);
        if (*name != '\0') {
            parts.push_back(newPart(name, completeText(rest)));
        }
    }
    readFailed_ = file.failed();
    if (readFailed_) {
        return;
    }
    for (NameValuePair* part : parts) {
        append(part);
    }
    sortIndex();
    oPopulated = kDone;
}
