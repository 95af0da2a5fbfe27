// The decoded form: the text `name=value&name=value` of a form post as a set of CGIParts.
// Results: 1 done, 0 failed; null for no such field.
// Ownership: the parts are made here and, as in every set, never deleted. A copy shares them.
#pragma once

#include "NameValuePairSet.h"

class CGIPart;

class CGIPartSet : public NameValuePairSet {
public:
    CGIPartSet();
    CGIPartSet(const CGIPartSet& other);
    CGIPartSet& operator=(const CGIPartSet& other);
    virtual ~CGIPartSet();

    int operator==(const CGIPartSet& other) const;
    int operator!=(const CGIPartSet& other) const;

    // Splits `length` bytes of form text and adds a part for each field. The first `=` divides
    // name and value; a field without one has no value, and an empty field yields no part. The
    // buffer needs no terminator, isn't kept, and may be null with length 0. Always 1.
    long Initialize(const char* buffer, unsigned long length);

    // The field of this decoded name, or null. Its value goes to the trace.
    CGIPart* findPart(const char* name);

    // Copies the value of a field to `buffer`, whose size is `*length` on entry and of which
    // nothing is written when that is 0. `*length` becomes the number of bytes written before the
    // last terminator: the value up to its own terminator, then zeros up to its stored length. 1
    // when the whole value was copied or there is none, 0 when it was cut or there is no such
    // field; without a value the buffer is empty.
    long getPartValue(const char* name, char* buffer, unsigned long* length);

    // The number of fields, empty ones counted.
    unsigned long scanForNumberOfParts(const char* buffer, unsigned long length);
};
