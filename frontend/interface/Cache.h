// A cache of the web server, as the transport writes a request's context to it.
#pragma once

// Takes text piece by piece. The text is borrowed for the call.
class Cache {
public:
    Cache() = default;
    Cache(const Cache&) = delete;
    Cache& operator=(const Cache&) = delete;
    virtual ~Cache() = default;

    virtual void write(const char* text, long length) = 0;
};
