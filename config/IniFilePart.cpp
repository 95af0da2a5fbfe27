#include "config/IniFilePart.h"

#include <cstring>

#include "services/outer/ServiceCalls.h"

using namespace dnz;

IniFilePart::IniFilePart() {
    const TraceScope trace("IniFilePart::IniFilePart");
}

IniFilePart::IniFilePart(const IniFilePart& other) : NameValuePair(other) {
    const TraceScope trace("IniFilePart::IniFilePart(copy)");
}

IniFilePart::IniFilePart(const char* name, const char* value) : NameValuePair(name, value) {
    const TraceScope trace("IniFilePart::IniFilePart");
}

IniFilePart& IniFilePart::operator=(const IniFilePart& other) {
    const TraceScope trace("IniFilePart::operator=");
    NameValuePair::operator=(other);
    return *this;
}

IniFilePart::~IniFilePart() {
    const TraceScope trace("IniFilePart::~IniFilePart");
}

int IniFilePart::operator==(const IniFilePart& other) const {
    const TraceScope trace("IniFilePart::operator==");
    return NameValuePair::operator==(other);
}

int IniFilePart::operator!=(const IniFilePart& other) const {
    const TraceScope trace("IniFilePart::operator!=");
    return NameValuePair::operator!=(other);
}

const char* IniFilePart::getValue() const {
    const TraceScope trace("IniFilePart::getValue");
    const char* stored = get_oValue();
    return stored == nullptr || stored[0] == kDescriptionMark ? nullptr : stored;
}

const char* IniFilePart::getDesc() const {
    const TraceScope trace("IniFilePart::getDesc");
    const char* stored = get_oValue();
    if (stored == nullptr) {
        return nullptr;
    }
    if (stored[0] == kDescriptionMark) {
        return stored + 1;
    }
    const unsigned long behindValue = std::strlen(stored) + 1;
    if (behindValue >= get_oValueLength()) {
        return nullptr;
    }
    const char* mark = std::strchr(stored + behindValue, kDescriptionMark);
    return mark == nullptr || mark[1] == '\0' ? nullptr : mark + 1;
}
