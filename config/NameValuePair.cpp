#include "config/NameValuePair.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "services/base/Text.h"
#include "services/outer/ServiceCalls.h"

using namespace dnz;

namespace {

std::uint32_t sizeWithTerminator(unsigned long length) {
    constexpr unsigned long kLongestText = UINT32_MAX - 1UL;
    return static_cast<std::uint32_t>(std::min(length, kLongestText) + 1);
}

std::uint32_t sizeOf(const char* text) {
    return text != nullptr ? sizeWithTerminator(std::strlen(text)) : 0;
}

// The first `size` - 1 bytes of the text and a terminator; null for null.
std::unique_ptr<char[]> copyText(const char* text, std::uint32_t size) {
    if (text == nullptr) {
        return nullptr;
    }
    auto copy = std::make_unique_for_overwrite<char[]>(size);
    std::memcpy(copy.get(), text, size - 1);
    copy[size - 1] = '\0';
    return copy;
}

std::unique_ptr<char[]> copyArray(const char* bytes, unsigned long size) {
    if (bytes == nullptr) {
        return nullptr;
    }
    auto copy = std::make_unique_for_overwrite<char[]>(size);
    std::memcpy(copy.get(), bytes, size);
    return copy;
}

// A null array counts as one of no bytes, whatever its stored length.
std::string_view arrayView(const char* bytes, unsigned long size) {
    return bytes != nullptr ? std::string_view(bytes, size) : std::string_view("");
}

std::string_view nameArray(const NameValuePair& pair) {
    return arrayView(pair.get_oName(), pair.get_oNameLength());
}

bool sameArrays(const char* left, const char* right, unsigned long size) {
    return left == right ||
           (left != nullptr && right != nullptr && std::memcmp(left, right, size) == 0);
}

void printBytes(const char* label, std::string_view bytes) {
    std::printf("%s<", label);
    std::fwrite(bytes.data(), 1, bytes.size(), stdout);
    std::printf(">\n");
}

}  // namespace

NameValuePair::NameValuePair(const char* name, const char* value)
    : oNameLength(sizeOf(name)), oValueLength(sizeOf(value)) {
    oName = copyText(name, oNameLength);
    oValue = copyText(value, oValueLength);
}

NameValuePair::NameValuePair(const char* name, unsigned long nameLength, const char* value,
                             unsigned long valueLength)
    : oNameLength(sizeWithTerminator(nameLength)), oValueLength(sizeWithTerminator(valueLength)) {
    oName = copyText(name, oNameLength);
    oValue = copyText(value, oValueLength);
}

NameValuePair::NameValuePair(const NameValuePair& other) {
    *this = other;
}

NameValuePair& NameValuePair::operator=(const NameValuePair& other) {
    if (this != &other) {
        oName = copyArray(other.get_oName(), other.oNameLength);
        oValue = copyArray(other.get_oValue(), other.oValueLength);
        oNameLength = other.oNameLength;
        oValueLength = other.oValueLength;
    }
    return *this;
}

int NameValuePair::operator==(const NameValuePair& other) const {
    const bool equal = oNameLength == other.oNameLength && oValueLength == other.oValueLength &&
                       sameArrays(get_oName(), other.get_oName(), oNameLength) &&
                       sameArrays(get_oValue(), other.get_oValue(), oValueLength);
    return equal ? 1 : 0;
}

int NameValuePair::operator!=(const NameValuePair& other) const {
    return *this == other ? 0 : 1;
}

int NameValuePair::compare(const NameValuePair& other) const {
    const TraceScope trace("NameValuePair::compare(&NameValuePair)");
    const std::string_view mine = nameArray(*this);
    const std::string_view theirs = nameArray(other);
    const int order =
        std::strncmp(mine.data(), theirs.data(), std::max(mine.size(), theirs.size()));
    return order != 0 ? order : static_cast<int>(mine.size() - theirs.size());
}

int NameValuePair::compare(const NameValuePair* other) const {
    const std::string_view mine = nameArray(*this);
    const std::string_view theirs = nameArray(*other);
    // Different names differ within the shorter array, unless bytes follow a terminator.
    const int order = std::memcmp(mine.data(), theirs.data(), std::min(mine.size(), theirs.size()));
    if (order != 0 || mine.size() == theirs.size()) {
        return order;
    }
    return mine.size() > theirs.size() ? 1 : -1;
}

int NameValuePair::compare(const char* name) const {
    const TraceScope trace("NameValuePair::compare(char*)");
    const std::string_view mine = nameArray(*this);
    const std::string_view theirs = viewOf(name);
    return std::strncmp(mine.data(), theirs.data(), std::max(mine.size(), theirs.size()));
}

const char* NameValuePair::getName() const {
    const TraceScope trace("ConfigPart::getName");
    return get_oName();
}

const char* NameValuePair::getValue() const {
    const TraceScope trace("ConfigPart::getValue");
    return get_oValue();
}

const char* NameValuePair::getDesc() const {
    const TraceScope trace("ConfigPart::getDesc");
    return nullptr;
}

void NameValuePair::getName(char** name, unsigned long* length) {
    const TraceScope trace("NameValuePair::getName");
    *name = get_oName();
    *length = get_oNameLength();
}

void NameValuePair::getValue(char** value, unsigned long* length) {
    const TraceScope trace("NameValuePair::getValue");
    *value = get_oValue();
    *length = get_oValueLength();
}

void NameValuePair::set_oName(char* name) {
    static_cast<void>(oName.release());
    oName.reset(name);
}

void NameValuePair::set_oValue(char* value) {
    static_cast<void>(oValue.release());
    oValue.reset(value);
}

void NameValuePair::set_oNameLength(unsigned long length) {
    oNameLength = static_cast<std::uint32_t>(length);
}

void NameValuePair::set_oValueLength(unsigned long length) {
    oValueLength = static_cast<std::uint32_t>(length);
}

void NameValuePair::dump() {
    printBytes("Name", nameArray(*this));
    printBytes("Value", arrayView(get_oValue(), get_oValueLength()));
}
