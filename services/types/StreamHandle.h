// Streams of the C library that close themselves.
#pragma once

#include <cstdio>
#include <memory>

struct StreamCloser {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};

// An open stream, closed with the handle; null when the open failed.
using StreamHandle = std::unique_ptr<std::FILE, StreamCloser>;
