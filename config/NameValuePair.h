// The common record of the configuration tool: a name with a value, both byte strings. A form field
// and a line of an ini file are both pairs. Results: equality is 1 or 0; an ordering is negative, 0
// or positive. Ownership: a pair owns its two arrays; getters return borrowed pointers.
// Limits: a length has 32 bits; a longer text is cut.
#pragma once

#include <cstdint>
#include <memory>

class NameValuePair {
public:
    // No name, no value, both lengths 0.
    NameValuePair() = default;
    // Copies both texts whole. A null text stays null, with length 0.
    NameValuePair(const char* name, const char* value);
    // Copies the given number of bytes of each text and adds a terminator. The texts need no
    // terminator, and the lengths don't count one. A null text stays null, but its length is
    // stored: a null text with length 0 has the stored length 1.
    NameValuePair(const char* name, unsigned long nameLength, const char* value,
                  unsigned long valueLength);
    // Copies the whole arrays, including bytes after a first zero byte.
    NameValuePair(const NameValuePair& other);
    NameValuePair& operator=(const NameValuePair& other);
    virtual ~NameValuePair() = default;

    // 1 when the arrays of name and value are equal in length and in every byte, else 0.
    int operator==(const NameValuePair& other) const;
    int operator!=(const NameValuePair& other) const;

    // Orderings by name alone, on unsigned bytes: negative, 0 or positive if this name comes
    // before, equals or comes after the other. A null name comes before every other one. Sets order
    // by the pointer form, which compares the whole arrays and takes no null pointer. The other two
    // compare the names as terminated texts.
    virtual int compare(const NameValuePair& other) const;
    virtual int compare(const NameValuePair* other) const;
    virtual int compare(const char* name) const;

    // How the rest of the tool reads a pair; null for a missing part. A plain pair has no
    // description. Borrowed.
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

    // Plain stores. The pair takes ownership of an array, which was made by `new char[]`. It
    // doesn't release the former array, which then belongs to the caller. A length must be that of
    // the array.
    void set_oName(char* name);
    void set_oValue(char* value);
    void set_oNameLength(unsigned long length);
    void set_oValueLength(unsigned long length);

    // Writes the pair, every byte of both arrays, to standard output, for debugging.
    void dump();

private:
    std::unique_ptr<char[]> oName;  // null in a pair without a name
    // Null if there is no value. An ini entry keeps its description after the first zero byte.
    std::unique_ptr<char[]> oValue;
    std::uint32_t oNameLength = 0;   // size of the array, the terminator included
    std::uint32_t oValueLength = 0;  // likewise
};
