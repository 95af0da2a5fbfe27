// The form fields that the entry page and the form page send to the program. A field with an empty
// value counts as one without a value.
#pragma once

#include <charconv>
#include <cstddef>

namespace dnz {

// From the entry page: the first requests an open by its presence, the second names the file.
constexpr char kOpenField[] = "dnzcnf";
constexpr char kOpenFileField[] = "dnzINIfile";

// Marks a form that comes back, and names the file that it shows.
constexpr char kShownFileField[] = "dnzhidefile";
// The directory in which the search found that file; ends in "/".
constexpr char kFilePathField[] = "dnzfilepath";
// Requests a save by its presence; without it the file is shown again.
constexpr char kSaveField[] = "dnzSave";
constexpr char kSaveFileField[] = "dnzINIsave";

// The number of rows, and the new entry.
constexpr char kRowCountField[] = "dnzNumPairs";
constexpr char kNewNameField[] = "dnzNewName";
constexpr char kNewValueField[] = "dnzNewValue";
constexpr char kNewDescriptionField[] = "dnzNewDesc";

// The fields of each row. A ticked exclude box leaves the entry out of the file.
constexpr char kNameKind = 'n';
constexpr char kValueKind = 'v';
constexpr char kDescriptionKind = 'd';
constexpr char kExcludeKind = 'e';

// The name of a row's field: the kind and the index of the row in decimal, from 0.
class FieldName {
public:
    FieldName(char kind, int row) {
        name_[0] = kind;
        *std::to_chars(name_ + 1, name_ + kSize - 1, row).ptr = '\0';
    }
    [[nodiscard]] const char* text() const { return name_; }

private:
    static constexpr std::size_t kSize = 16;  // more than any int needs

    char name_[kSize];
};

}  // namespace dnz
