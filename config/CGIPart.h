// One field of a submitted form, decoded.
#pragma once

#include "config/NameValuePair.h"

// Name and value are decoded texts; the stored lengths are those of these texts. A field that was
// sent with an empty value has a null value.
class CGIPart : public NameValuePair {
public:
    CGIPart();
    CGIPart(const CGIPart& other);
    // Takes name and value as the form holds them, encoded and without terminators, and decodes
    // own copies of them. A null value stays null.
    CGIPart(const char* name, unsigned long nameLength, const char* value,
            unsigned long valueLength);
    CGIPart& operator=(const CGIPart& other);
    ~CGIPart() override;

    int operator==(const CGIPart& other) const;
    int operator!=(const CGIPart& other) const;
};
