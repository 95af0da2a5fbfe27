// The fields that pass between the form page, the entry page and the program. N is the index of
// a row in decimal, from 0. A field with an empty value is one with no value.
#pragma once

#include <charconv>
#include <cstddef>

namespace dnz {

// From the entry page: its presence asks for an open, and the name of the file to open.
constexpr char kOpenField[] = "dnzcnf";
constexpr char kOpenFileField[] = "dnzINIfile";

// A form that comes back, and the file that it was made from.
constexpr char kShownFileField[] = "dnzhidefile";
// The directory in which the search found that file, with a "/" at its end.
constexpr char kFilePathField[] = "dnzfilepath";
// Its presence asks for a save; without it the file is shown again.
constexpr char kSaveField[] = "dnzSave";
constexpr char kSaveFileField[] = "dnzINIsave";

// The number of rows, and one new entry.
constexpr char kRowCountField[] = "dnzNumPairs";
constexpr char kNewNameField[] = "dnzNewName";
constexpr char kNewValueField[] = "dnzNewValue";
constexpr char kNewDescriptionField[] = "dnzNewDesc";

// The kinds of fields that each row has. A ticked exclude box leaves the entry out of the file.
constexpr char kNameKind = 'n';
constexpr char kValueKind = 'v';
constexpr char kDescriptionKind = 'd';
constexpr char kExcludeKind = 'e';

// The name of a row's field: the kind and the index.
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
