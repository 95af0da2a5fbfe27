#include "frontend/interface/WebInterface.h"

#include "config/ConfigurationSet.h"
#include "frontend/ThreadObjectSet.h"

WebInterface* WebInterface::Instance() {
    return static_cast<WebInterface*>(ThreadObjectSet::Instance()->query());
}

WebInterface::WebInterface() {
    ThreadObjectSet::Instance()->add(this);
}

WebInterface::~WebInterface() = default;

const char* WebInterface::getInputBuffer() {
    return inputBuffer.get();
}

unsigned long WebInterface::getInputBufferLength() const {
    return inputBufferLength;
}

ConfigurationSet* WebInterface::getConfigurationSet() const {
    return configurationSet.get();
}
