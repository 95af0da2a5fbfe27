// The decoded form: the text `name=value&name=value` of a form post as a set of CGIParts.
// Results: 1 is success, 0 failure; null means no such field.
// Ownership: the set makes its parts and, like every set, never deletes them. A copy shares them.
#pragma once

#include "config/NameValuePairSet.h"

class CGIPart;

class CGIPartSet : public NameValuePairSet {
public:
    CGIPartSet();
    CGIPartSet(const CGIPartSet& other);
    CGIPartSet& operator=(const CGIPartSet& other);
    virtual ~CGIPartSet();

    int operator==(const CGIPartSet& other) const;
    int operator!=(const CGIPartSet& other) const;

    // Splits `length` bytes of form text and adds a part for each field. The first `=` separates
    // name and value; a field without one has no value, and an empty field gives no part. The
    // buffer needs no terminator, is not kept, and may be null with length 0. Always 1.
    long Initialize(const char* buffer, unsigned long length);

    // The field with this decoded name, or null. Writes its value to the trace. Borrowed.
    CGIPart* findPart(const char* name);

    // Copies the value of a field to `buffer`, whose size is `*length` on entry; with size 0
    // nothing is written. Writes the value up to its first zero byte, then zero bytes up to its
    // stored length, then a terminator, which the new `*length` doesn't count. Without a value the
    // buffer is empty. 1 if the value was copied completely or is missing, 0 if it was cut or there
    // is no such field.
    long getPartValue(const char* name, char* buffer, unsigned long* length);

    // The number of fields, empty ones included.
    unsigned long scanForNumberOfParts(const char* buffer, unsigned long length);
};
