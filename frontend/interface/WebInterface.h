// The web server as the rest of the program sees it: write a header, write text, log an error, read
// the request body. The first text written ends the header section. Results: 1 is success. Code
// without a pointer to the object calls Instance().
#pragma once

#include <cstdint>
#include <memory>

class ConfigurationSet;

// A cache of the web server, to which the transport writes the context of a request, piece by
// piece. The text is borrowed for the call.
class Cache {
public:
    Cache() = default;
    Cache(const Cache&) = delete;
    Cache& operator=(const Cache&) = delete;
    virtual ~Cache() = default;

    virtual void write(const char* text, long length) = 0;
};

class WebInterface {
public:
    // The object registered for the calling thread. Borrowed. Call it only after an object has been
    // made on this thread.
    static WebInterface* Instance();

    WebInterface(const WebInterface&) = delete;
    WebInterface& operator=(const WebInterface&) = delete;
    virtual ~WebInterface();

    // The kind of transport, "CGI" for example. Borrowed, valid until the process ends.
    virtual char* InterfaceType() = 0;
    // Writes a header line. Adds nothing after the colon: the value begins with its own space.
    virtual long write_header(const char* name, const char* value) = 0;
    // Writes `length` bytes, zero bytes included; with length 0 the text up to its terminator.
    virtual long write_text(const char* text, long length) = 0;
    // Writes a number in decimal.
    virtual long write_text(const int number) = 0;
    // Copies the request's context, the CGI variables of RFC 3875 and some more, into `cache`.
    virtual long CacheContext(Cache* cache, const char* unused) = 0;
    // Writes to the server's log, without adding a line feed.
    virtual long LogError(const char* text) = 0;

    // The request body, followed by a terminator, or null if there is none. Borrowed.
    virtual const char* getInputBuffer();
    // Its size with the terminator; 0 before the first read and without a body.
    virtual unsigned long getInputBufferLength() const;
    // The gateway's settings for this request. Borrowed. Only other programs call this.
    virtual ConfigurationSet* getConfigurationSet() const;

protected:
    // Registers the object for the calling thread.
    WebInterface();

    std::unique_ptr<char[]> inputBuffer;
    unsigned long inputBufferLength = 0;
    std::unique_ptr<ConfigurationSet> configurationSet;
    std::int32_t headerWritten = 0;  // 1 once a header line was written
    std::int32_t textWritten = 0;    // 0 while the header section is open
};
