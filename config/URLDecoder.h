// URL encoding as form posts use it: `+` for a blank, `%` with two hexadecimal digits for any
// other byte. URLDecoder undoes it, url_encode does it.
// Texts are byte strings with a terminator. Decoding never lengthens a text, so an output needs
// the room of its input, and both may be the same array. Nothing here fails on malformed text. No
// argument is null, but for url_encode.
#pragma once

using NZBYTE = unsigned char;
using PNZBYTE24 = NZBYTE (*)[24];

class URLDecoder {
public:
    URLDecoder();
    URLDecoder(const URLDecoder& other);
    URLDecoder& operator=(const URLDecoder& other);
    virtual ~URLDecoder();

    // A decoder has no state, so all are equal: 1 and 0.
    int operator==(const URLDecoder& other) const;
    int operator!=(const URLDecoder& other) const;

    // Turns each `+` into a blank.
    void plusToSpace(char* text) const;
    void plusToSpace(const char* in, char* out) const;

    // Resolves the escapes. A `%` without two hexadecimal digits behind it stays as it is. `%00`
    // gives a zero byte, where the result ends for whoever reads it as a string.
    void unescape(char* text) const;
    void unescape(const char* in, char* out) const;

    // The byte that two hexadecimal digits stand for.
    unsigned char hexStringToChar(const char* digits) const;
    // The value of one hexadecimal digit of either case; 0 for any other character.
    unsigned char HexCharToInt(char digit) const;
    // Reads exactly 48 hexadecimal digits, terminated or not, into 24 bytes. Returns `out`.
    PNZBYTE24 hexStringToPNZBYTE24(const char* digits, PNZBYTE24 out) const;

    // The whole decoding: first each `+`, then the escapes, so that an escaped `+` stays one.
    char* decode(const char* in, char* out) const;
    char* decodeInPlace(char* text) const;
};

// The characters that url_encode leaves alone.
constexpr char szOK[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";

// A new string that the caller releases with free; null for a null text and when there is no
// storage.
[[nodiscard]] char* url_encode(const char* text);
