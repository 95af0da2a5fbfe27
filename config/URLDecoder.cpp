#include "config/URLDecoder.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "services/base/Text.h"
#include "services/outer/ServiceCalls.h"

using namespace dnz;

namespace {

constexpr int kHexBase = 16;
constexpr std::size_t kDigitsPerByte = 2;
constexpr std::size_t kEscapeLength = 1 + kDigitsPerByte;

constexpr int kNoDigit = -1;

int hexDigitValue(char digit) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    const std::size_t place = kDigits.find(upperCase(digit));
    return place != std::string_view::npos ? static_cast<int>(place) : kNoDigit;
}

// A terminator is no digit, so nothing after it is read.
bool isEscape(const char* text) {
    return text[0] == '%' && hexDigitValue(text[1]) != kNoDigit &&
           hexDigitValue(text[2]) != kNoDigit;
}

}  // namespace

URLDecoder::URLDecoder() {
    const TraceScope trace("URLDecoder::URLDecoder");
}

URLDecoder::URLDecoder(const URLDecoder& /*other*/) {
    const TraceScope trace("URLDecoder::URLDecoder(copy)");
}

URLDecoder& URLDecoder::operator=(const URLDecoder& /*other*/) {
    const TraceScope trace("URLDecoder::operator=");
    return *this;
}

URLDecoder::~URLDecoder() {
    const TraceScope trace("URLDecoder::~URLDecoder");
}

int URLDecoder::operator==(const URLDecoder& /*other*/) const {
    const TraceScope trace("URLDecoder::operator==");
    return 1;
}

int URLDecoder::operator!=(const URLDecoder& /*other*/) const {
    const TraceScope trace("URLDecoder::operator!=");
    return 0;
}

void URLDecoder::plusToSpace(char* text) const {
    const TraceScope trace("URLDecoder::plusToSpace");
    std::replace(text, text + std::strlen(text), '+', ' ');
}

void URLDecoder::plusToSpace(const char* in, char* out) const {
    const TraceScope trace("URLDecoder::plusToSpace(char*,char*)");
    std::memmove(out, in, std::strlen(in) + 1);
    plusToSpace(out);
}

void URLDecoder::unescape(char* text) const {
    const TraceScope trace("URLDecoder::unescape");
    unescape(text, text);
}

void URLDecoder::unescape(const char* in, char* out) const {
    const TraceScope trace("URLDecoder::unescape(char*,char*)");
    while (*in != '\0') {
        if (isEscape(in)) {
            *out++ = static_cast<char>(hexStringToChar(in + 1));
            in += kEscapeLength;
        } else {
            *out++ = *in++;
        }
    }
    *out = '\0';
}

unsigned char URLDecoder::hexStringToChar(const char* digits) const {
    const TraceScope trace("URLDecoder::hexStringToChar", "URLDecoder::hexStringToInt");
    return static_cast<unsigned char>(HexCharToInt(digits[0]) * kHexBase + HexCharToInt(digits[1]));
}

unsigned char URLDecoder::HexCharToInt(char digit) const {
    const TraceScope trace("URLDecoder::hexCharToInt");
    return static_cast<unsigned char>(std::max(hexDigitValue(digit), 0));
}

PNZBYTE24 URLDecoder::hexStringToPNZBYTE24(const char* digits, PNZBYTE24 out) const {
    const TraceScope trace("URLDecoder::hexStringToPNZBYTE24");
    for (NZBYTE& byte : *out) {
        byte = hexStringToChar(digits);
        digits += kDigitsPerByte;
    }
    return out;
}

char* URLDecoder::decode(const char* in, char* out) const {
    const TraceScope trace("URLDecoder::decode");
    plusToSpace(in, out);
    unescape(out);
    return out;
}

char* URLDecoder::decodeInPlace(char* text) const {
    // The decoding writes its own records after these, not between them.
    { const TraceScope trace("URLDecoder::decodeInPlace"); }
    return decode(text, text);
}

char* url_encode(const char* text) {
    if (text == nullptr) {
        return nullptr;
    }
    const std::string_view plain(text);
    const std::size_t size = kEscapeLength * plain.size() + 1;
    char* encoded = static_cast<char*>(std::calloc(size, 1));
    if (encoded == nullptr) {
        return nullptr;
    }
    BoundedText result(encoded, size);
    for (const char character : plain) {
        if (std::string_view(szOK).find(character) != std::string_view::npos) {
            result.append({&character, 1});
        } else if (character == ' ') {
            result.append("+");
        } else {
            result.appendf("%%%02X", static_cast<unsigned>(static_cast<unsigned char>(character)));
        }
    }
    return encoded;
}
