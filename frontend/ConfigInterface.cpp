#include "ConfigInterface.h"

#include <cstring>

#include "BoundedText.h"
#include "CGIPart.h"
#include "ConfigDisplay.h"
#include "MessageNumbers.h"
#include "MessageText.h"
#include "NameValuePair.h"
#include "Numbers.h"
#include "ServiceCalls.h"
#include "TextCopy.h"
#include "WebInterface.h"

namespace {

constexpr int kDone = 1;
constexpr int kRefused = 0;

constexpr int kSave = 1;
constexpr int kRedisplay = 2;
constexpr int kOpen = 3;

constexpr std::size_t kTargetSize = 255;

bool holdsAny(const char* text, const char* characters) {
    return text != nullptr && std::strpbrk(text, characters) != nullptr;
}

bool isRooted(const char* name) {
    return name[0] == '/' || (name[0] != '\0' && name[1] == ':');
}

}  // namespace

// A row of the form; null stands for a field with no value.
struct ConfigInterface::Row {
    char* name;
    char* value;
    char* description;
    char* exclude;

    // Whether our form can have sent the row: its name is one word, and no text holds the end of
    // a line, which would break the lines of the file.
    [[nodiscard]] bool isIntact() const {
        constexpr char kLineEnds[] = "\r\n";
        return name != nullptr && *name != '\0' && !holdsAny(name, " \r\n") &&
               !holdsAny(value, kLineEnds) && !holdsAny(description, kLineEnds);
    }
};

ConfigInterface::ConfigInterface() {
    const TraceScope trace("ConfigInterface::ConfigInterface");
}

ConfigInterface::~ConfigInterface() {
    const TraceScope trace("ConfigInterface::~ConfigInterface");
}

int ConfigInterface::Initialize(const char* input) {
    TraceScope trace("ConfigInterface::Initialize");
    if (input != nullptr) {
        formParts.Initialize(input, std::strlen(input));
    }
    if (formParts.findPart("dnzcnf") != nullptr) {
        return trace.exitWith(useShownFile("dnzINIfile", kOpen));
    }
    if (formParts.findPart("dnzhidefile") != nullptr) {
        const int result = useShownFile("dnzhidefile", kRedisplay);
        if (result == kDone && formParts.findPart("dnzSave") != nullptr) {
            operation = kSave;
        }
        return trace.exitWith(result);
    }
    OutputMessage(kNotOurForm, 1, nullptr, nullptr);
    return trace.exitWith(kRefused);
}

int ConfigInterface::useShownFile(const char* fieldName, int chosenOperation) {
    const char* name = getFieldValue(fieldName);
    if (name == nullptr) {
        return refuse(kNoFileToOpen);
    }
    setIniCFGFile(name);
    operation = chosenOperation;
    return kDone;
}

void ConfigInterface::ConfigUI() {
    const TraceScope trace("ConfigInterface::ConfigUI");
    if (operation == kSave) {
        Savecfg();
    } else {
        CreateHTML();
    }
}

void ConfigInterface::CreateHTML() {
    const TraceScope trace("ConfigInterface::CreateHTML");
    IniFileSet shown;
    ConfigDisplay display;
    shown.setIniFileName(iniCFGFile.get());
    NameValuePair* pair = shown.getFirst();
    if (display.startTable() == 0) {
        return;
    }
    for (; pair != nullptr; pair = shown.getNext()) {
        display.insertRow(pair);
    }
    const char* shownFile = iniCFGFile.get();
    display.endTable(shownFile, iniSaveFile != nullptr ? iniSaveFile : shownFile,
                     shown.getIniFilePath());
}

void ConfigInterface::Savecfg() {
    const TraceScope trace("ConfigInterface::Savecfg");
    iniSaveFile = getFieldValue("dnzINIsave");
    if (iniSaveFile == nullptr) {
        refuse(kNoFileToSave);
        return;
    }
    if (createIniPairs() == kRefused || Validate() == kRefused) {
        return;
    }
    Compare();

    char targetBuffer[kTargetSize];
    BoundedText target(targetBuffer);
    const char* directory = getFieldValue("dnzfilepath");
    if (directory != nullptr && !isRooted(iniSaveFile)) {
        target.append(directory);
    }
    target.append(iniSaveFile);
    dnzxtr_text(targetBuffer);

    if (target.truncated() || iniParts.saveIniFile(targetBuffer) == 0) {
        refuse(kTargetNotWritable);
        return;
    }
    setIniCFGFile(iniSaveFile);
    CreateHTML();
}

void ConfigInterface::setIniCFGFile(const char* name) {
    const TraceScope trace("ConfigInterface::setIniCFGFile");
    if (name != nullptr) {
        iniCFGFile = copyOfText(name);
    }
}

const char* ConfigInterface::getIniCFGFile() const {
    return iniCFGFile.get();
}

int ConfigInterface::getOperation() const {
    return operation;
}

char* ConfigInterface::getFieldValue(const char* name) {
    const TraceScope trace("ConfigInterface::getFieldValue");
    const CGIPart* part = formParts.findPart(name);
    if (part == nullptr || part->getValue() == nullptr) {
        return nullptr;
    }
    char* value = part->get_oValue();
    dnzxtr_text("Field Value is:");
    dnzxtr_text(value);
    return value;
}

int ConfigInterface::createIniPairs() {
    TraceScope trace("ConfigInterface::createIniPairs");
    const char* count = getFieldValue("dnzNumPairs");
    if (count == nullptr) {
        return trace.exitWith(refuse(kNotOurForm));
    }
    const int rows = leadingNumber(count);
    for (int row = 0; row < rows; ++row) {
        if (addRow(row) == kRefused) {
            return trace.exitWith(refuse(kNotOurForm));
        }
    }
    return trace.exitWith(addNewEntry());
}

ConfigInterface::Row ConfigInterface::readRow(int index) {
    const auto field = [this, index](char kind) {
        char name[16];
        BoundedText(name).appendf("%c%d", kind, index);
        return getFieldValue(name);
    };
    Row row{};
    row.name = field('n');
    stripTrailingBlanks(row.name);
    row.value = field('v');
    row.description = field('d');
    row.exclude = field('e');
    return row;
}

int ConfigInterface::addRow(int index) {
    const Row row = readRow(index);
    if (!row.isIntact()) {
        return kRefused;
    }
    IniFileSet& entries = row.exclude != nullptr ? excludedParts : iniParts;
    entries.addNewIniPart(row.name, row.value, row.description);
    return kDone;
}

int ConfigInterface::addNewEntry() {
    Row entry{};
    entry.name = getFieldValue("dnzNewName");
    stripTrailingBlanks(entry.name);
    if (entry.name == nullptr || *entry.name == '\0') {
        return kDone;
    }
    if (holdsAny(entry.name, " ")) {
        return refuse(kNewNameBlank, entry.name);
    }
    entry.value = getFieldValue("dnzNewValue");
    entry.description = getFieldValue("dnzNewDesc");
    if (!entry.isIntact()) {
        return refuse(kNotOurForm);
    }
    if (iniParts.findPart(entry.name) == nullptr) {
        iniParts.addNewIniPart(entry.name, entry.value, entry.description);
    }
    return kDone;
}

// Answers with a page of this message and the closing one.
int ConfigInterface::refuse(int message, const char* insert) {
    OutputMessage(message, 1, insert, nullptr);
    OutputMessage(kFailureEnd, 0, nullptr, nullptr);
    return kRefused;
}

void ConfigInterface::OutputMessage(int message, int first, const char* insert1,
                                    const char* insert2) {
    WebInterface& web = *WebInterface::Instance();
    const auto writeLine = [&web](const MessageText& line) {
        web.write_text(line.text(), 0);
        web.write_text("\n", 0);
    };
    if (first != 0) {
        web.write_header("Content-type", " text/plain");
        writeLine(MessageText(kFailureTitle));
    }
    writeLine(MessageText(message, insert1, insert1 != nullptr ? insert2 : nullptr));
}

void ConfigInterface::stripTrailingBlanks(char* text) {
    if (text == nullptr) {
        return;
    }
    std::size_t length = std::strlen(text);
    while (length > 0 && text[length - 1] == ' ') {
        --length;
    }
    text[length] = '\0';
}
