#include "config/CGIPartSet.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "config/CGIPart.h"
#include "config/Results.h"
#include "services/base/Text.h"
#include "services/outer/ServiceCalls.h"

using namespace dnz;

namespace {

constexpr std::size_t kTraceTextSize = 80;

CGIPart* newPart(std::string_view field) {
    const std::string_view name = takeField(field, '=');
    return new CGIPart(name.data(), name.size(), field.empty() ? nullptr : field.data(),
                       field.size());
}

}  // namespace

CGIPartSet::CGIPartSet() {
    const TraceScope trace("CGIPartSet::CGIPartSet");
}

CGIPartSet::CGIPartSet(const CGIPartSet& other) : NameValuePairSet(other) {
    const TraceScope trace("CGIPartSet::CGIPartSet(copy)");
}

CGIPartSet& CGIPartSet::operator=(const CGIPartSet& other) {
    const TraceScope trace("CGIPartSet::operator=");
    NameValuePairSet::operator=(other);
    return *this;
}

CGIPartSet::~CGIPartSet() {
    const TraceScope trace("CGIPartSet::~CGIPartSet");
}

int CGIPartSet::operator==(const CGIPartSet& other) const {
    const TraceScope trace("CGIPartSet::operator==");
    return NameValuePairSet::operator==(other);
}

int CGIPartSet::operator!=(const CGIPartSet& other) const {
    const TraceScope trace("CGIPartSet::operator!=");
    return NameValuePairSet::operator!=(other);
}

long CGIPartSet::Initialize(const char* buffer, unsigned long length) {
    const TraceScope trace("CGIPartSet::Initialize");
    std::string_view form(buffer, length);
    for (unsigned long n = scanForNumberOfParts(buffer, length); n > 0; --n) {
        const std::string_view field = takeField(form, '&');
        if (!field.empty()) {
            append(newPart(field));
        }
    }
    sortIndex();
    return kDone;
}

CGIPart* CGIPartSet::findPart(const char* name) {
    const TraceScope trace("CGIPartSet::findPart");
    auto* part = static_cast<CGIPart*>(find(name));
    if (part != nullptr) {
        dnzxtr_text(part->getValue());
    }
    return part;
}

long CGIPartSet::getPartValue(const char* name, char* buffer, unsigned long* length) {
    const TraceScope trace("CGIPartSet::getPartValue");
    const CGIPart* part = findPart(name);
    const unsigned long size = *length;
    if (size > 0) {
        buffer[0] = '\0';
    }
    *length = 0;
    if (part == nullptr) {
        return kFailed;
    }
    const char* value = part->getValue();
    if (value == nullptr) {
        return kDone;
    }
    const unsigned long storedSize = part->get_oValueLength();
    if (size > 0) {
        *length = std::min(storedSize, size - 1);
        std::strncpy(buffer, value, *length);  // sets zero bytes after a shorter text
        buffer[*length] = '\0';
    }
    return size < storedSize ? kFailed : kDone;
}

unsigned long CGIPartSet::scanForNumberOfParts(const char* buffer, unsigned long length) {
    FixedText<kTraceTextSize> label;
    label.appendf("CGIPartSet::scanForNumberOfParts l=%lu", length);
    const TraceScope trace(label.c_str(), "CGIPartSet::scanForNumberOfParts");
    unsigned long count = 0;
    if (length > 0) {
        count = static_cast<unsigned long>(std::count(buffer, buffer + length, '&')) + 1;
    } else {
        dnzxtr_text("No part data");
    }
    if (startAndAskTracing()) {
        dnzxtr_text(FixedText<kTraceTextSize>().appendf("numberOfParts=%lu", count).c_str());
    }
    return count;
}
