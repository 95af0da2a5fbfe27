// Owning handles for resources of the C library, released with the handle.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace dnz {

// The deleter of a handle; it calls `Release`.
template <auto Release>
struct ReleaseBy {
    template <typename Resource>
    void operator()(Resource* resource) const {
        Release(resource);
    }
};

inline void closeStream(std::FILE* stream) {
    std::fclose(stream);
}

inline void freeText(char* text) {
    std::free(text);
}

// An open stream; null when the open failed.
using StreamHandle = std::unique_ptr<std::FILE, ReleaseBy<closeStream>>;

// Text from malloc or calloc.
using CTextHandle = std::unique_ptr<char, ReleaseBy<freeText>>;

}  // namespace dnz
