#include "frontend/CGIInterface.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

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

// CONTENT_LENGTH, or 0 if that isn't a positive number.
unsigned long announcedLength() {
    const char* text = std::getenv("CONTENT_LENGTH");
    if (text == nullptr) {
        dnzxtr_text("CONTENT_LENGTH not Set!");
    }
    const int length = text != nullptr ? leadingNumber(text) : 0;
    return static_cast<unsigned long>(std::max(length, 0));
}

}  // namespace

CGIInterface::CGIInterface() {
    const TraceScope trace("CGIInterface::CGIInterface");
    configurationSet = std::make_unique<ConfigurationSet>(this);
}

CGIInterface::~CGIInterface() {
    const TraceScope trace("CGIInterface::~CGIInterface");
    configurationSet.reset();  // here, so that its trace records come before the exit record
    inputBuffer.reset();
    inputBufferLength = 0;
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
    // A short body has been reported by the first call; later calls find none.
    if (std::feof(stdin) != 0 || std::ferror(stdin) != 0) {
        return nullptr;
    }
    const unsigned long length = announcedLength();
    if (length != 0) {
        readBody(length);
    } else {
        LogError("CONTENT_LENGTH is zero");
    }
    return inputBuffer.get();
}

void CGIInterface::readBody(unsigned long length) {
    if (startAndAskTracing()) {
        dnzxtr_text(FixedText<80>().appendf("CONTENT_LENGTH = %lu", length).c_str());
    }
    auto body = std::make_unique_for_overwrite<char[]>(length + 1);
    const std::size_t received = std::fread(body.get(), 1, length, stdin);
    if (received < length) {
        FixedText<80> text;
        text.appendf("CONTENT_LENGTH is %lu, but only %zu bytes came\n", length, received);
        LogError(text.c_str());
        return;
    }
    body[length] = '\0';
    inputBuffer = std::move(body);
    inputBufferLength = length + 1;
}

// The first text written ends the header section.
void CGIInterface::endHeaderSection() {
    if (textWritten == 0) {
        std::fputc('\n', stdout);
        std::fflush(stdout);
    }
    textWritten = 1;
}
