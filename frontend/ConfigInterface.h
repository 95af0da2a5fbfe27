// The controller: it decides what a form asks for, shows an ini file as a form, and takes a form
// that comes back through validation to the saved file. Nothing is held between requests: the
// file, its directory and the row count travel in hidden fields.
// The fields of the form are those of FormFields.h.
//
// Results: 1 done, 0 refused. A refusal has been answered with a plain text page of messages, and
// no file has been written then.
#pragma once

#include <optional>
#include <string>

#include "CGIPartSet.h"
#include "IniFileSet.h"

// What a request asks for.
constexpr int kUndecided = 0;
constexpr int kSave = 1;
constexpr int kRedisplay = 2;
constexpr int kOpen = 3;

class ConfigInterface {
public:
    ConfigInterface();
    virtual ~ConfigInterface();
    ConfigInterface(const ConfigInterface&) = delete;
    ConfigInterface& operator=(const ConfigInterface&) = delete;

    // Decodes the form, null for a request with no body, and decides the operation.
    [[nodiscard]] int Initialize(const char* input);
    // Carries the operation out.
    void ConfigUI();

    // Writes the form page of the file.
    void CreateHTML();
    // Saves the form and shows what was saved.
    void Savecfg();

    // Takes a copy of the name; null changes nothing.
    void setIniCFGFile(const char* name);
    // The name of the file that the form shows, or null. Borrowed.
    const char* getIniCFGFile() const;
    // What the request asks for, kUndecided before Initialize.
    int getOperation() const;

    // The value of a form field, or null when it has none or isn't in the form. Points into the
    // decoded form.
    char* getFieldValue(const char* name);

    // Turns the rows of the form into the entries to save and those to leave out.
    [[nodiscard]] int createIniPairs();
    // Tests every entry to save and reports every fault. Brings a context value into the one
    // case in which it is saved.
    [[nodiscard]] int Validate();
    // Takes over what another target file contains and the form doesn't. Refuses the save if that
    // file can't be read to its end.
    void Compare();

    // Writes a message to the page, which a `first` that isn't 0 opens. The inserts may be null;
    // the second is used only with the first.
    void OutputMessage(int message, int first, const char* insert1, const char* insert2);
    // Removes blanks, and only blanks, from the end of a text, in place. Null is left alone.
    void stripTrailingBlanks(char* text);

private:
    struct Row;

    int useShownFile(const char* fieldName, int chosenOperation);
    Row readRow(int index);
    int addRow(int index);
    int addNewEntry();
    int saveEntries();
    int refuse(int message, const char* insert = nullptr);

    CGIPartSet formParts;
    int operation = kUndecided;
    std::optional<std::string> iniCFGFile;  // the file that the form shows
    IniFileSet iniParts;                    // what the form wants saved
    IniFileSet excludedParts;               // the ticked rows
    const char* iniSaveFile = nullptr;      // points into formParts
    bool isRefused = false;                 // the answer is a page of messages
};
