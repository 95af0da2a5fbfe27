#include "frontend/CGIInterface.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "config/ConfigurationSet.h"
#include "config/Results.h"
#include "config/URLDecoder.h"
#include "frontend/ContextName.h"
#include "services/base/Text.h"
#include "services/outer/ServiceCalls.h"

using namespace dnz;

namespace {

void writeToCache(Cache& cache, const char* text) {
    cache.write(text, static_cast<long>(std::strlen(text)));
    dnzxtr_text(text);
}

}  // namespace

CGIInterface::CGIInterface() {
    const TraceScope trace("CGIInterface::CGIInterface");
    configurationSet = std::make_unique<ConfigurationSet>(this);
}

CGIInterface::~CGIInterface() {
    const TraceScope trace("CGIInterface::~CGIInterface");
    configurationSet.reset();
}

char* CGIInterface::InterfaceType() {
    static char type[] = "CGI";
    return type;
}

long CGIInterface::write_header(const char* name, const char* value) {
    TraceScope trace("CGIInterface::write_header");
    std::printf("%s:%s\n", name, value);
    std::fflush(stdout);
    headerWritten = 1;
    return trace.exitWith<long>(kDone);
}

long CGIInterface::write_text(const char* text, long length) {
    TraceScope trace("CGIInterface::write_text");
    endHeaderSection();
    const std::size_t count = length != 0 ? static_cast<std::size_t>(length) : std::strlen(text);
    std::fwrite(text, 1, count, stdout);
    return trace.exitWith<long>(kDone);
}

long CGIInterface::write_text(const int number) {
    TraceScope trace("CGIInterface::write_text(int)");
    endHeaderSection();
    std::printf("%d", number);
    return trace.exitWith<long>(kDone);
}

long CGIInterface::CacheContext(Cache* cache, const char* /*unused*/) {
    TraceScope trace("CGIInterface::CacheContext");
    for (const char* name : ContextName) {
        cache->write("&", 1);
        writeToCache(*cache, name);
        cache->write("=", 1);
        const CTextHandle encoded(url_encode(std::getenv(name)));
        if (encoded != nullptr) {
            writeToCache(*cache, encoded.get());
        }
    }
    return trace.exitWith<long>(kDone);
}

long CGIInterface::LogError(const char* text) {
    std::fputs(text, stderr);
    return kDone;
}

const char* CGIInterface::getInputBuffer() {
    const TraceScope trace("CGIInterface::getInputBuffer");
    if (inputBuffer != nullptr) {
        return inputBuffer.get();
    }
    // A body that ended early was reported when it was read, and stays no body.
    if (std::feof(stdin) != 0 || std::ferror(stdin) != 0) {
        return nullptr;
    }
    readContentLength();
    if (inputBufferLength != 0) {
        readBody();
    } else {
        LogError("CONTENT_LENGTH is zero");
    }
    return inputBuffer.get();
}

void CGIInterface::readContentLength() {
    const char* text = std::getenv("CONTENT_LENGTH");
    if (text == nullptr) {
        dnzxtr_text("CONTENT_LENGTH not Set!");
    }
    const int length = text != nullptr ? leadingNumber(text) : 0;
    inputBufferLength = static_cast<unsigned long>(std::max(length, 0));
}

void CGIInterface::readBody() {
    const unsigned long length = inputBufferLength;
    if (startAndAskTracing()) {
        dnzxtr_text(FixedText<80>().appendf("CONTENT_LENGTH = %lu", length).c_str());
    }
    inputBuffer = std::make_unique_for_overwrite<char[]>(length + 1);
    const std::size_t received = std::fread(inputBuffer.get(), 1, length, stdin);
    if (received == length) {
        inputBuffer[length] = '\0';
        ++inputBufferLength;
        return;
    }
    FixedText<80> text;
    text.appendf("CONTENT_LENGTH is %lu, but only %zu bytes came\n", length, received);
    LogError(text.c_str());
    inputBuffer.reset();
    inputBufferLength = 0;
}

// The first text written ends the header section.
void CGIInterface::endHeaderSection() {
    if (textWritten == 0) {
        std::fputc('\n', stdout);
        std::fflush(stdout);
    }
    textWritten = 1;
}
