// One entry of an ini file: a name, a value and a description.
#pragma once

#include "config/NameValuePair.h"

namespace dnz {

// Begins a description, in the file and in the stored text.
constexpr char kDescriptionMark = '#';

}  // namespace dnz

// Value and description share the one value array of the pair, in one of three shapes:
//   value             the value, a zero byte, then text in which `#` begins the description
//   description only  `#` and the description
//   neither           no array
class IniFilePart : public NameValuePair {
public:
    IniFilePart();
    IniFilePart(const IniFilePart& other);
    // Copies both texts, either of which may be null. The caller then sets the zero byte after the
    // value.
    IniFilePart(const char* name, const char* value);
    IniFilePart& operator=(const IniFilePart& other);
    ~IniFilePart() override;

    int operator==(const IniFilePart& other) const;
    int operator!=(const IniFilePart& other) const;

    using NameValuePair::getValue;
    // Null if there is no value. Borrowed.
    const char* getValue() const override;
    // Null if there is no description. After a value an empty description counts as none; without a
    // value it is the empty text. Borrowed.
    const char* getDesc() const override;
};
