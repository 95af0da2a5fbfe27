// The controller: decides what a request asks for, shows an ini file as a form, and validates and
// saves a form that comes back. Nothing is kept between requests: the file, its directory and the
// row count travel in hidden fields. FormFields.h names the fields of the form.
//
// Results: 1 is success, 0 is a refusal. A refusal has been answered with a plain text page of
// messages, and no file has been written.
#pragma once

#include <optional>
#include <string>

#include "config/CGIPartSet.h"
#include "config/IniFileSet.h"

namespace dnz {

// What a request asks for.
constexpr int kUndecided = 0;
constexpr int kSave = 1;
constexpr int kRedisplay = 2;
constexpr int kOpen = 3;

}  // namespace dnz

class ConfigInterface {
public:
    ConfigInterface();
    virtual ~ConfigInterface();
    ConfigInterface(const ConfigInterface&) = delete;
    ConfigInterface& operator=(const ConfigInterface&) = delete;

    // Decodes the form and decides the operation. `input` is null for a request without a body.
    [[nodiscard]] int Initialize(const char* input);
    // Performs the operation.
    void ConfigUI();

    // Writes the form page of the file.
    void CreateHTML();
    // Saves the form and shows what was saved.
    void Savecfg();

    // Takes a copy of the name; null changes nothing.
    void setIniCFGFile(const char* name);
    // The name of the file that the form shows, or null if none is named. Borrowed.
    const char* getIniCFGFile() const;
    // What the request asks for, kUndecided before Initialize.
    int getOperation() const;

    // The value of a form field, or null if the field has no value or isn't in the form. Borrowed
    // from the decoded form.
    char* getFieldValue(const char* name);

    // Makes the entries to save, and those to leave out, from the rows of the form.
    [[nodiscard]] int createIniPairs();
    // Tests every entry to save and reports every fault. Changes the value of a context to the case
    // in which it is saved.
    [[nodiscard]] int Validate();
    // The merge of a save under another name: adds the entries of that file that the form doesn't
    // have. Reads the file that opens under the save name, which need not be the file that the save
    // writes. Refuses the save if that file can't be read to its end.
    void Compare();

    // Writes a message to the page. If `first` isn't 0, the message begins the page. The inserts
    // may be null; the second is used only with the first.
    void OutputMessage(int message, int first, const char* insert1, const char* insert2);
    // Removes spaces, and nothing else, from the end of a text, in place. Null is ignored.
    void stripTrailingBlanks(char* text);

private:
    int useShownFile(const char* fieldName, int chosenOperation);
    int addRow(int index);
    int addNewEntry();
    int saveEntries();
    bool savesShownFile() const;
    void takeOverEntriesOf(IniFileSet& target);
    int refuse(int message, const char* insert = nullptr);

    CGIPartSet formParts;
    int operation = dnz::kUndecided;
    std::optional<std::string> iniCFGFile;  // the file that the form shows
    IniFileSet iniParts;                    // what the form wants saved
    IniFileSet excludedParts;               // the ticked rows
    const char* iniSaveFile = nullptr;      // points into formParts
    bool isRefused = false;                 // by refuse(); tells Savecfg how Compare ended
};
