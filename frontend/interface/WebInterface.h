// The web server as the rest of the program sees it: write a header, write text, log an error,
// give me the request body. The first text written ends the header section.
// Results: 1 done. Code that has no handle on the object reaches it with Instance().
#pragma once

#include <cstdint>
#include <memory>

class ConfigurationSet;

// A cache of the web server, as the transport writes a request's context to it. Takes text piece by
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
    // The object registered for the calling thread. Borrowed. It may be asked for once an object
    // has been made on this thread.
    static WebInterface* Instance();

    WebInterface(const WebInterface&) = delete;
    WebInterface& operator=(const WebInterface&) = delete;
    virtual ~WebInterface();

    // The kind of the transport, as "CGI". Borrowed, for the life of the process.
    virtual char* InterfaceType() = 0;
    // Writes a header line. Nothing is added behind the colon: a value brings its own blank.
    virtual long write_header(const char* name, const char* value) = 0;
    // Writes `length` bytes, zero bytes included; with length 0 the text up to its terminator.
    virtual long write_text(const char* text, long length) = 0;
    // Writes a number in decimal.
    virtual long write_text(const int number) = 0;
    // Copies the request's context, the CGI variables of RFC 3875 and some more, into `cache`.
    virtual long CacheContext(Cache* cache, const char* unused) = 0;
    // Writes to the server's log; no line feed is added.
    virtual long LogError(const char* text) = 0;

    // The request body with a terminator behind it, or null when there is none. Borrowed.
    virtual const char* getInputBuffer();
    // Its size with the terminator counted; 0 before the first read and when there is no body.
    virtual unsigned long getInputBufferLength() const;
    // The gateway's settings for this request. Borrowed. Nothing in this program asks for them.
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
