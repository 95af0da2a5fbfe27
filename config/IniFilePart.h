// One entry of an ini file: a name, a value and a description.
#pragma once

#include "config/NameValuePair.h"

namespace dnz {

// Stands in front of a description, in the file and in the stored text.
constexpr char kDescriptionMark = '#';

}  // namespace dnz

// Value and description share the one value array of the pair, in one of three shapes:
//   value             the value, a zero byte, then text in which `#` brings in the description
//   description only  `#` and the description
//   neither           no array
class IniFilePart : public NameValuePair {
public:
    IniFilePart();
    IniFilePart(const IniFilePart& other);
    // Copies both texts, either of which may be null. Whoever makes a part with a value sets the
    // zero byte behind it.
    IniFilePart(const char* name, const char* value);
    IniFilePart& operator=(const IniFilePart& other);
    ~IniFilePart() override;

    int operator==(const IniFilePart& other) const;
    int operator!=(const IniFilePart& other) const;

    using NameValuePair::getValue;
    // Null when there is no value.
    const char* getValue() const override;
    // Null when there is no description. Behind a value an empty one counts as none; without a
    // value it is the empty text.
    const char* getDesc() const override;
};
