// One field of a submitted form, decoded.
#pragma once

#include "config/NameValuePair.h"

// Name and value are decoded texts, and the stored lengths are theirs. A field that was sent with
// an empty value has a null value.
class CGIPart : public NameValuePair {
public:
    CGIPart();
    CGIPart(const CGIPart& other);
    // Copies and decodes name and value, which are encoded and without terminators, as in the form.
    // A null value stays null.
    CGIPart(const char* name, unsigned long nameLength, const char* value,
            unsigned long valueLength);
    CGIPart& operator=(const CGIPart& other);
    ~CGIPart() override;

    int operator==(const CGIPart& other) const;
    int operator!=(const CGIPart& other) const;
};
