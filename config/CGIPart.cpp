#include "config/CGIPart.h"

#include <cstring>

#include "config/URLDecoder.h"
#include "services/outer/ServiceCalls.h"

using namespace dnz;

CGIPart::CGIPart() {
    const TraceScope trace("CGIPart::CGIPart");
}

CGIPart::CGIPart(const CGIPart& other) : NameValuePair(other) {
    const TraceScope trace("CGIPart::CGIPart(copy)");
}

CGIPart::CGIPart(const char* name, unsigned long nameLength, const char* value,
                 unsigned long valueLength)
    : NameValuePair(name, nameLength, value, valueLength) {
    const TraceScope trace("CGIPart::CGIPart(n,v)");
    URLDecoder decoder;
    if (CGIPart::getName() != nullptr) {
        set_oNameLength(std::strlen(decoder.decodeInPlace(get_oName())) + 1);
    }
    if (CGIPart::getValue() != nullptr) {
        set_oValueLength(std::strlen(decoder.decodeInPlace(get_oValue())) + 1);
    }
}

CGIPart& CGIPart::operator=(const CGIPart& other) {
    const TraceScope trace("CGIPart::operator=");
    NameValuePair::operator=(other);
    return *this;
}

CGIPart::~CGIPart() {
    const TraceScope trace("CGIPart::~CGIPart");
}

int CGIPart::operator==(const CGIPart& other) const {
    const TraceScope trace("CGIPart::operator==");
    return NameValuePair::operator==(other);
}

int CGIPart::operator!=(const CGIPart& other) const {
    const TraceScope trace("CGIPart::operator!=");
    return NameValuePair::operator!=(other);
}
