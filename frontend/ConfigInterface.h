// The controller: it decides what a form asks for, shows an ini file as a form, and takes a form
// that comes back through validation to the saved file. Nothing is held between requests: the
// file, its directory and the row count travel in hidden fields.
//
// The fields of the form, N being the index of a row from 0:
//   dnzcnf, dnzINIfile        open this file
//   dnzhidefile               a form that comes back, and the file that it was made from
//   dnzSave                   save it; without it the file is shown again
//   dnzINIsave, dnzfilepath   the name to save under, and the directory that the file was found in
//   dnzNumPairs               the number of rows
//   nN, vN, dN, eN            name, value, description of a row, and a tick to leave it out
//   dnzNewName, dnzNewValue, dnzNewDesc   one new entry
//
// Results: 1 done, 0 refused. A refusal has been answered with a plain text page of messages, and
// no file has been written then.
#pragma once

#include <memory>

#include "CGIPartSet.h"
#include "IniFileSet.h"

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
    // 0 undecided, 1 save, 2 redisplay, 3 open.
    int getOperation() const;

    // The value of a form field, or null when it has none or isn't in the form. Points into the
    // decoded form.
    char* getFieldValue(const char* name);

    // Turns the rows of the form into the entries to save and those to leave out.
    [[nodiscard]] int createIniPairs();
    // Tests every entry to save and reports every fault. Brings a context value into the one
    // case in which it is saved.
    [[nodiscard]] int Validate();
    // Takes over what another target file holds and the form doesn't.
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
    int refuse(int message, const char* insert = nullptr);

    CGIPartSet formParts;
    int operation = 0;
    std::unique_ptr<char[]> iniCFGFile;
    IniFileSet iniParts;                // what the form wants saved
    IniFileSet excludedParts;           // the ticked rows
    const char* iniSaveFile = nullptr;  // points into formParts
};
