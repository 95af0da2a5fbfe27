#include "config/ConfigurationSet.h"

#include <string_view>

#include "config/CGIPart.h"
#include "frontend/interface/WebInterface.h"
#include "services/base/Text.h"
#include "services/outer/ServiceCalls.h"

using namespace dnz;

namespace {

constexpr char kDefaultIniFile[] = "dnz.ini";
constexpr char kIniFileField[] = "NZIGwIniFile";
constexpr std::string_view kQueueManager = "NZIGwQueueManager";

}  // namespace

ConfigurationSet::ConfigurationSet(WebInterface* web) {
    const TraceScope trace("ConfigSet::ConfigSet");
    input = web->getInputBuffer();
    inputLength = web->getInputBufferLength();
    if (input != nullptr) {
        cgiParts.Initialize(input, inputLength - 1);
        defaultIni.setIniFileName(kDefaultIniFile);
        readRequestIni();
    }
}

ConfigurationSet::ConfigurationSet() {
    const TraceScope trace("ConfigSet::ConfigSet");
}

ConfigurationSet::ConfigurationSet(const ConfigurationSet& /*other*/) {
    const TraceScope trace("ConfigSet::ConfigSet(copy)");
}

ConfigurationSet& ConfigurationSet::operator=(const ConfigurationSet& /*other*/) {
    const TraceScope trace("ConfigSet::operator=");
    return *this;
}

ConfigurationSet::~ConfigurationSet() {
    const TraceScope trace("ConfigSet::~ConfigSet");
}

int ConfigurationSet::operator==(const ConfigurationSet& /*other*/) const {
    const TraceScope trace("ConfigSet::operator==");
    return 0;
}

int ConfigurationSet::operator!=(const ConfigurationSet& /*other*/) const {
    TraceScope trace("ConfigSet::operator!=");
    return trace.exitWith(1);
}

ConfigurationPart* ConfigurationSet::findPart(const char* name) {
    const TraceScope trace("ConfigSet::findPart");
    NameValuePair* fromForm = cgiParts.findPart(name);
    if (validValue(fromForm) != 0) {
        return fromForm;
    }
    for (IniFileSet* const set : {&requestIni, &defaultIni}) {
        NameValuePair* fromFile = set->findPart(name);
        if (validValue(fromFile) != 0) {
            return fromFile;
        }
    }
    return nullptr;
}

int ConfigurationSet::validValue(NameValuePair* pair) {
    if (pair == nullptr) {
        return 0;
    }
    if (viewOf(pair->getName()) == kQueueManager) {
        return 1;
    }
    return isNullOrEmpty(pair->getValue()) ? 0 : 1;
}

// A field without a value names no file; one with an empty text gives an empty name.
void ConfigurationSet::readRequestIni() {
    const CGIPart* field = cgiParts.findPart(kIniFileField);
    const char* name = field != nullptr ? field->getValue() : nullptr;
    if (name != nullptr) {
        hasRequestIni = 1;
        requestIni.setIniFileName(name);
    }
}
