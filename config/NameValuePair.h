// The common record of the configuration tool: one name with one value, both private byte
// strings. A form field and a line of an ini file are both pairs. The one ordering of the tool,
// that of the rows of a form and of the lines of a saved file, is compare() of this class.
// Results: comparisons for equality answer 1 or 0; orderings count by their sign.
// Ownership: a pair owns its two arrays; what a getter hands out is borrowed.
// Limits: a length is kept in 32 bits; what is longer is cut.
#pragma once

#include <cstdint>
#include <memory>

class NameValuePair {
public:
    // No name, no value, both lengths 0.
    NameValuePair() = default;
    // Copies both texts whole. A null text stays null, with length 0.
    NameValuePair(const char* name, const char* value);
    // Copies the given number of bytes of each text and adds a terminator. The lengths don't count
    // a terminator and the sources need none. A null text stays null, but its length is stored
    // all the same, so a null text given with length 0 has the stored length 1.
    NameValuePair(const char* name, unsigned long nameLength, const char* value,
                  unsigned long valueLength);
    // Copies the whole arrays, bytes behind a first zero byte included.
    NameValuePair(const NameValuePair& other);
    NameValuePair& operator=(const NameValuePair& other);
    virtual ~NameValuePair() = default;

    // 1 when the arrays of name and value are equal in length and in every byte, else 0.
    int operator==(const NameValuePair& other) const;
    int operator!=(const NameValuePair& other) const;

    // Orderings by name alone, on unsigned bytes: negative, 0 or positive as this name stands
    // before, with or behind the other. A null name stands before every other one. Sets order by
    // the pointer form, which takes the whole arrays and no null pointer; the other two take the
    // names as strings.
    virtual int compare(const NameValuePair& other) const;
    virtual int compare(const NameValuePair* other) const;
    virtual int compare(const char* name) const;

    // How the rest of the tool reads a pair; null for what isn't there. A plain pair has no
    // description.
    virtual const char* getName() const;
    virtual const char* getValue() const;
    virtual const char* getDesc() const;

    // The array and its size, the terminator included.
    void getName(char** name, unsigned long* length);
    void getValue(char** value, unsigned long* length);

    // The fields as they are.
    char* get_oName() const { return oName.get(); }
    char* get_oValue() const { return oValue.get(); }
    unsigned long get_oNameLength() const { return oNameLength; }
    unsigned long get_oValueLength() const { return oValueLength; }

    // Plain stores. An array must be one of `new char[]` and belongs to the pair from then on; the
    // former one isn't released, it belongs to the caller. A length must be that of the array.
    void set_oName(char* name);
    void set_oValue(char* value);
    void set_oNameLength(unsigned long length);
    void set_oValueLength(unsigned long length);

    // Writes the pair to standard output, every byte of both arrays, for the developer's eye.
    void dump();

private:
    std::unique_ptr<char[]> oName;  // null in a pair without a name
    // Null when there is no value. An ini entry keeps its description behind the first zero byte.
    std::unique_ptr<char[]> oValue;
    std::uint32_t oNameLength = 0;   // size of the array, the terminator included
    std::uint32_t oValueLength = 0;  // likewise
};
