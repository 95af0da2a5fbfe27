// Texts of the C library that release themselves.
#pragma once

#include <cstdlib>
#include <memory>

struct StorageReleaser {
    void operator()(void* storage) const { std::free(storage); }
};

// Text from malloc or calloc, released with the handle.
using CTextHandle = std::unique_ptr<char, StorageReleaser>;
