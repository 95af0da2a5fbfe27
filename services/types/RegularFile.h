// Files that are opened by a name that came from outside.
// Only regular files count: a directory, a pipe or a device under such a name is taken for a file
// that can't be opened, so that no request waits for it or reads it without end.
#pragma once

#include "StreamHandle.h"

// The open descriptor of `path` for reading, or -1. The caller closes it.
[[nodiscard]] int openRegularFile(const char* path);

// The open stream of `path` for reading, or null.
[[nodiscard]] StreamHandle openRegularStream(const char* path);

// The open stream of `path` for writing, made if it isn't there and emptied if it is, or null.
[[nodiscard]] StreamHandle openEmptiedStream(const char* path);
