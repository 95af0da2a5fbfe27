// Streams and texts of the C library that close or release themselves.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <memory>

struct StreamCloser {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};

// An open stream, closed with the handle; null when the open failed.
using StreamHandle = std::unique_ptr<std::FILE, StreamCloser>;

struct StorageReleaser {
    void operator()(void* storage) const { std::free(storage); }
};

// Text from malloc or calloc, released with the handle.
using CTextHandle = std::unique_ptr<char, StorageReleaser>;
