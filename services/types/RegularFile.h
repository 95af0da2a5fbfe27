// Files that are opened by a name that came from outside.
// Only regular files count: a directory, a pipe or a device under such a name is taken for a file
// that can't be opened, so that no request waits for it or reads it without end.
#pragma once

#include <cstddef>

#include "FileDescriptor.h"
#include "StreamHandle.h"

// The open file `path` for reading, or none.
[[nodiscard]] FileDescriptor openRegularFile(const char* path);

// The open stream of `path` for writing, made if it isn't there and emptied if it is, or null.
[[nodiscard]] StreamHandle openEmptiedStream(const char* path);

// Reads a regular file from its start to the end that it has when it is opened. A stream would do
// as well, but asks the system for more than it needs: a request lasts hardly longer than its
// system calls.
class FileReader {
public:
    // Opens no file yet.
    FileReader() {}
    explicit FileReader(const char* path) { open(path); }
    FileReader(const FileReader&) = delete;
    FileReader& operator=(const FileReader&) = delete;

    // Opens `path`, for a reader that has no file yet; false if there is no such regular file or it
    // can't be read.
    bool open(const char* path);
    [[nodiscard]] bool isOpen() const { return file_.isOpen(); }
    // Reads at most `size` bytes. Returns their count, which is less only at the end.
    std::size_t read(char* target, std::size_t size);
    // Reads a line with its line feed, or as much of it as leaves room for the terminator, as fgets
    // does. False at the end.
    bool readLine(char* line, std::size_t size);
    // Whether the end that was met was a fault and not that of the file.
    [[nodiscard]] bool failed() const { return failed_; }

private:
    static constexpr std::size_t kBufferSize = 4096;

    [[nodiscard]] std::size_t buffered() const { return static_cast<std::size_t>(end_ - next_); }
    bool fill();

    FileDescriptor file_;
    std::size_t unread_ = 0;  // bytes of the file that aren't in the buffer yet
    bool failed_ = false;
    const char* next_ = buffer_;
    const char* end_ = buffer_;
    char buffer_[kBufferSize];
};
