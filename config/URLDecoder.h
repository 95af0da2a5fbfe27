// URL encoding as in form posts: `+` is a space, and `%` with two hexadecimal digits is any other
// byte. URLDecoder decodes, url_encode encodes. Texts are terminated byte strings. Decoding never
// lengthens a text: an output needs the size of its input, and both may be the same array.
// Malformed text is no error. Only url_encode takes null.
#pragma once

using NZBYTE = unsigned char;
using PNZBYTE24 = NZBYTE (*)[24];

class URLDecoder {
public:
    URLDecoder();
    URLDecoder(const URLDecoder& other);
    URLDecoder& operator=(const URLDecoder& other);
    virtual ~URLDecoder();

    // Decoders have no state, so all are equal: 1 and 0.
    int operator==(const URLDecoder& other) const;
    int operator!=(const URLDecoder& other) const;

    // Replaces each `+` by a space.
    void plusToSpace(char* text) const;
    void plusToSpace(const char* in, char* out) const;

    // Replaces the escapes by their bytes. A `%` without two hexadecimal digits stays as it is.
    // `%00` gives a zero byte, which ends the result for a reader of terminated text.
    void unescape(char* text) const;
    void unescape(const char* in, char* out) const;

    // The byte that two hexadecimal digits denote.
    unsigned char hexStringToChar(const char* digits) const;
    // The value of one hexadecimal digit of either case; 0 for any other character.
    unsigned char HexCharToInt(char digit) const;
    // Reads exactly 48 hexadecimal digits, terminated or not, into 24 bytes. Returns `out`.
    PNZBYTE24 hexStringToPNZBYTE24(const char* digits, PNZBYTE24 out) const;

    // The whole decoding: first each `+`, then the escapes, so that an escaped `+` stays one. The
    // result is `out` or `text`.
    char* decode(const char* in, char* out) const;
    char* decodeInPlace(char* text) const;
};

// The characters that url_encode doesn't change.
constexpr char szOK[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";

// A new text that the caller releases with free(); null for a null text and if memory runs out.
[[nodiscard]] char* url_encode(const char* text);
