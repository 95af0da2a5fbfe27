// The web server over the Common Gateway Interface (RFC 3875): the request in the environment
// and on standard input, the answer on standard output, the log on standard error.
// Results: 1 is success. Write errors are not detected.
#pragma once

#include "frontend/interface/WebInterface.h"

class CGIInterface : public WebInterface {
public:
    // Reads the request body and the gateway's settings for this request.
    CGIInterface();
    ~CGIInterface() override;

    char* InterfaceType() override;
    long write_header(const char* name, const char* value) override;
    long write_text(const char* text, long length) override;
    long write_text(const int number) override;
    long CacheContext(Cache* cache, const char* unused) override;
    long LogError(const char* text) override;

    // Reads CONTENT_LENGTH bytes of standard input on the first call. A length that isn't a
    // positive number, and a body that ends before it, count as no body: null, with a line in
    // the log, which the early end leaves only once.
    const char* getInputBuffer() override;

private:
    void readBody(unsigned long length);
    void endHeaderSection();
};
