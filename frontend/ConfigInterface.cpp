#include "frontend/ConfigInterface.h"

#include <cstring>
#include <string_view>

#include "config/CGIPart.h"
#include "config/NameValuePair.h"
#include "config/Results.h"
#include "frontend/ConfigDisplay.h"
#include "frontend/FormFields.h"
#include "frontend/MessageNumbers.h"
#include "frontend/interface/WebInterface.h"
#include "services/base/Path.h"
#include "services/base/Text.h"
#include "services/outer/MessageText.h"
#include "services/outer/ServiceCalls.h"

using namespace dnz;

namespace {

// A name that begins with a slash or a drive needs no directory.
bool isRooted(const char* name) {
    return name[0] == '/' || (name[0] != '\0' && name[1] == ':');
}

}  // namespace

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
    if (formParts.findPart(kOpenField) != nullptr) {
        return trace.exitWith(useShownFile(kOpenFileField, kOpen));
    }
    if (formParts.findPart(kShownFileField) != nullptr) {
        const int result = useShownFile(kShownFileField, kRedisplay);
        if (result == kDone && formParts.findPart(kSaveField) != nullptr) {
            operation = kSave;
        }
        return trace.exitWith(result);
    }
    // Not a form at all: there is nothing to go back to, so no closing message follows.
    OutputMessage(kNotOurForm, 1, nullptr, nullptr);
    return trace.exitWith(kFailed);
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
    shown.setIniFileName(getIniCFGFile());
    if (shown.failedToRead()) {
        refuse(kFileNotReadable, getIniCFGFile());
        return;
    }
    if (display.startTable() == kFailed) {
        return;
    }
    for (NameValuePair* pair = shown.getFirst(); pair != nullptr; pair = shown.getNext()) {
        display.insertRow(pair);
    }
    const char* offeredFile = iniSaveFile != nullptr ? iniSaveFile : getIniCFGFile();
    display.endTable(getIniCFGFile(), offeredFile, shown.getIniFilePath());
}

void ConfigInterface::Savecfg() {
    const TraceScope trace("ConfigInterface::Savecfg");
    iniSaveFile = getFieldValue(kSaveFileField);
    if (iniSaveFile == nullptr) {
        refuse(kNoFileToSave);
        return;
    }
    if (createIniPairs() == kFailed || Validate() == kFailed) {
        return;
    }
    Compare();
    if (isRefused) {
        return;
    }
    if (saveEntries() == kFailed) {
        refuse(kTargetNotWritable);
        return;
    }
    setIniCFGFile(iniSaveFile);
    CreateHTML();
}

// Saves in the directory in which the shown file was found, unless the name has one of its own.
// The file that Compare reads need not be this one.
int ConfigInterface::saveEntries() {
    FixedText<kPathSize> path;
    const char* directory = getFieldValue(kFilePathField);
    if (directory != nullptr && !isRooted(iniSaveFile)) {
        path.append(directory);
    }
    path.append(iniSaveFile);
    dnzxtr_text(path.c_str());
    return path.truncated() ? kFailed : iniParts.saveIniFile(path.c_str());
}

bool ConfigInterface::savesShownFile() const {
    return iniCFGFile && *iniCFGFile == iniSaveFile;
}

void ConfigInterface::Compare() {
    const TraceScope trace("ConfigInterface::Compare");
    if (savesShownFile()) {
        return;
    }
    IniFileSet target;
    target.setIniFileName(iniSaveFile);
    if (target.failedToRead()) {
        refuse(kFileNotReadable, iniSaveFile);
        return;
    }
    takeOverEntriesOf(target);
}

void ConfigInterface::takeOverEntriesOf(IniFileSet& target) {
    for (NameValuePair* pair = target.getFirst(); pair != nullptr; pair = target.getNext()) {
        const char* name = pair->getName();
        if (iniParts.findPart(name) == nullptr && excludedParts.findPart(name) == nullptr) {
            // The order of the two calls is that of their trace records.
            const char* value = pair->getValue();
            const char* description = pair->getDesc();
            iniParts.addNewIniPart(name, value, description);
        }
    }
}

void ConfigInterface::setIniCFGFile(const char* name) {
    const TraceScope trace("ConfigInterface::setIniCFGFile");
    if (name != nullptr) {
        iniCFGFile = name;
    }
}

const char* ConfigInterface::getIniCFGFile() const {
    return iniCFGFile ? iniCFGFile->c_str() : nullptr;
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
    const char* count = getFieldValue(kRowCountField);
    if (count == nullptr) {
        return trace.exitWith(refuse(kNotOurForm));
    }
    const int rows = leadingNumber(count);
    for (int row = 0; row < rows; ++row) {
        if (addRow(row) == kFailed) {
            return trace.exitWith(refuse(kNotOurForm));
        }
    }
    return trace.exitWith(addNewEntry());
}

int ConfigInterface::addRow(int index) {
    const auto field = [this, index](char kind) {
        return getFieldValue(FieldName(kind, index).text());
    };
    char* name = field(kNameKind);
    stripTrailingBlanks(name);
    const char* value = field(kValueKind);
    const char* description = field(kDescriptionKind);
    IniFileSet& entries = field(kExcludeKind) != nullptr ? excludedParts : iniParts;
    if (isNullOrEmpty(name)) {
        return kFailed;
    }
    entries.addNewIniPart(name, value, description);
    return kDone;
}

int ConfigInterface::addNewEntry() {
    char* name = getFieldValue(kNewNameField);
    stripTrailingBlanks(name);
    if (isNullOrEmpty(name)) {
        return kDone;
    }
    if (std::strchr(name, ' ') != nullptr) {
        return refuse(kNewNameBlank, name);
    }
    const char* value = getFieldValue(kNewValueField);
    const char* description = getFieldValue(kNewDescriptionField);
    if (iniParts.findPart(name) == nullptr) {
        iniParts.addNewIniPart(name, value, description);
    }
    return kDone;
}

// Answers with a page of this message and the closing message.
int ConfigInterface::refuse(int message, const char* insert) {
    isRefused = true;
    OutputMessage(message, 1, insert, nullptr);
    OutputMessage(kFailureEnd, 0, nullptr, nullptr);
    return kFailed;
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
    if (text != nullptr) {
        // Without any other character the position is npos, and the next one 0.
        text[std::string_view(text).find_last_not_of(' ') + 1] = '\0';
    }
}
