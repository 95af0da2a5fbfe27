// Files that only their owner may read: form values go into traces and reports.
#pragma once

#include <cstdio>

// Opens `path` for appending and leaves its owner alone with access to it. Null with errno set
// when it can't be opened. The caller owns the stream.
[[nodiscard]] std::FILE* openPrivateFile(const char* path);
