// The form page: the first template, a table row for each entry, the row for a new entry, the
// hidden fields and the second template. An object writes one page: call startTable, insertRow for
// each entry, then endTable. Names, values and descriptions are written as they are, without HTML
// escaping.
#pragma once

class NameValuePair;

class ConfigDisplay {
public:
    ConfigDisplay();
    virtual ~ConfigDisplay();
    ConfigDisplay(const ConfigDisplay&) = delete;
    ConfigDisplay& operator=(const ConfigDisplay&) = delete;

    // Begins the page. 1, or 0 if the first template is missing: then write nothing more.
    [[nodiscard]] int startTable();
    // Writes the row of one entry; a null pair writes nothing.
    void insertRow(NameValuePair* pair);
    // Ends the page. `hideFile` is the file that the form shows, `saveFile` the name offered for
    // saving, `filePath` the directory in which the search found the file, or null.
    void endTable(const char* hideFile, const char* saveFile, const char* filePath);

    // Each writes one cell. If `hidden` isn't null, the field is a hidden one.
    void write_input_field(const char* name, const char* value, const char* hidden);
    void write_checkbox_field(const char* name);
    void write_data_field(const char* text);

private:
    int rowCount = 0;  // rows written so far, and so the index of the next one
};
