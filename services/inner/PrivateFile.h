// Files that only their owner may read: form values go into traces and reports.
#pragma once

#include <cstdio>

// Opens `path` for appending in the stream mode `mode` ("a" or "a+"), making it with access for
// its owner only. Null with errno set when it can't be opened. The caller owns the stream.
[[nodiscard]] std::FILE* openPrivateFile(const char* path, const char* mode);
