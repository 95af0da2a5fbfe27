// The form page: the first template, one table row an entry, and a closing stretch with the row
// for a new entry, the hidden state and the second template. An object writes one page, by
// startTable, insertRow for each entry, endTable.
// Names, values and descriptions go into the page as they are, with no HTML escaping.
#pragma once

class NameValuePair;

class ConfigDisplay {
public:
    ConfigDisplay();
    virtual ~ConfigDisplay();
    ConfigDisplay(const ConfigDisplay&) = delete;
    ConfigDisplay& operator=(const ConfigDisplay&) = delete;

    // Opens the page. 1, or 0 when the first template is missing: nothing may follow then.
    [[nodiscard]] int startTable();
    // Writes the row of one entry; a null pair writes nothing.
    void insertRow(NameValuePair* pair);
    // Closes the page. `hideFile` is the file that the form is carried for, `saveFile` the name
    // offered for saving, `filePath` the directory that the search found it in, or null.
    void endTable(const char* hideFile, const char* saveFile, const char* filePath);

    // One cell each. Any `hidden` that isn't null makes the input a hidden one.
    void write_input_field(const char* name, const char* value, const char* hidden);
    void write_checkbox_field(const char* name);
    void write_data_field(const char* text);

private:
    int rowCount = 0;  // rows written, which is the index of the next one
};
