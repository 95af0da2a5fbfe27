// Files that only their owner may read: form values go into traces and reports.
#pragma once

#include <cstdio>

// Opens `path` in `mode`, "a" or "a+" (fopen, ISO C). A new file is for its owner alone; a file
// that is there keeps its permissions. Null with errno set when it can't be opened. The caller owns
// the stream.
[[nodiscard]] std::FILE* openPrivateFile(const char* path, const char* mode);
