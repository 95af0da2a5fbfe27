#include "config/IniFileSet.h"

#include <algorithm>
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

constexpr int kReadSize = 256;             // 255 bytes of a line and a terminator
constexpr std::size_t kWrittenLine = 259;  // a line of 255 bytes may grow by ` # ` when saved

constexpr char kBlank = ' ';
constexpr char kNoDescription[] = "# ";  // what a value without a description is saved with

struct IniLine {
    std::string_view name;  // empty when the line has no word
    std::string_view rest;  // the second word and all after it
};

std::string_view withoutLeadingBlanks(std::string_view text) {
    return text.substr(std::min(text.find_first_not_of(kBlank), text.size()));
}

std::string_view firstWord(std::string_view text) {
    return text.substr(0, text.find(kBlank));
}

IniLine splitLine(const char* text) {
    const std::string_view line = withoutLeadingBlanks({text, std::strcspn(text, "\r\n")});
    const std::string_view name = firstWord(line);
    return {name, withoutLeadingBlanks(line.substr(name.size()))};
}

// The text that an entry read from a file stores: none without a second word, else one that always
// contains the mark of a description.
std::string storedText(std::string_view rest) {
    if (rest.empty() || rest.find(kDescriptionMark) != std::string_view::npos) {
        return std::string(rest);
    }
    return std::string(firstWord(rest)).append(1, kBlank).append(1, kDescriptionMark);
}

// The text that an entry of the form stores; empty when there is neither value nor description.
std::string composedText(const char* value, const char* desc) {
    const std::string_view valueText = viewOf(value);
    const std::string_view descText = viewOf(desc);
    std::string text;
    if (valueText.empty() && descText.empty()) {
        return text;
    }
    if (value != nullptr) {
        text.append(valueText).append(1, kBlank);
    }
    if (desc != nullptr) {
        return text.append(1, kDescriptionMark).append(descText);
    }
    return text.append(kNoDescription);
}

// Ends the value of a part after its first word.
void cutValue(char* stored) {
    const std::string_view text(stored);
    const std::size_t word = text.size() - withoutLeadingBlanks(text).size();
    const std::size_t end = text.find(kBlank, word);
    if (end != std::string_view::npos) {
        stored[end] = '\0';
    }
}

NameValuePair* newPartFromLine(const IniLine& line) {
    const std::string name(line.name);
    const std::string text = storedText(line.rest);
    auto* part = new IniFilePart(name.c_str(), text.empty() ? nullptr : text.c_str());
    dnzxtr_text(name.c_str());
    if (text.empty()) {
        return part;
    }
    dnzxtr_text(text.c_str());
    if (text.front() != kDescriptionMark) {
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
    if (name != nullptr) {
        oIniFileName = name;
    } else {
        oIniFileName.reset();
    }
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
    char buffer[kReadSize];
    while (file.readLine(buffer, sizeof buffer)) {
        const IniLine line = splitLine(buffer);
        if (!line.name.empty()) {
            parts.push_back(newPartFromLine(line));
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
