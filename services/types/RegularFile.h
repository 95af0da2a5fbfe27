// Files that are read and written by this system.
// Under a name that comes from outside only regular files count: a directory, a pipe or a device
// is taken for a file that can't be opened, so that no request waits for it or reads it without
// end. Files of the installation are opened whatever they are.
#pragma once

#include <cstddef>
#include <utility>

#include "FileDescriptor.h"
#include "StreamHandle.h"

// Opens `path` with the flags of open (POSIX), a new file with the permissions of `mode`. It
// doesn't wait for the other end of a pipe, but for a process that has a lease on the file it does.
// None with errno set if the file can't be opened.
[[nodiscard]] FileDescriptor openUnlessPipe(const char* path, int flags, unsigned int mode);

// The open file `path` for reading, or none with errno set: of any kind, or a regular one only.
[[nodiscard]] FileDescriptor openFile(const char* path);
[[nodiscard]] FileDescriptor openRegularFile(const char* path);

// The open stream of `path` for writing, made if it isn't there and emptied if it is, or null.
[[nodiscard]] StreamHandle openEmptiedStream(const char* path);

// Reads a file until a read gives nothing. A stream would do as well, but asks the system for more
// than it needs: a request lasts hardly longer than its system calls.
class FileReader {
public:
    // Has no file yet.
    FileReader() {}
    explicit FileReader(FileDescriptor file) : file_(std::move(file)) {}
    FileReader(const FileReader&) = delete;
    FileReader& operator=(const FileReader&) = delete;

    // Takes over a file, for a reader that has none yet; false if it isn't open.
    bool use(FileDescriptor file) {
        file_ = std::move(file);
        return isOpen();
    }
    [[nodiscard]] bool isOpen() const { return file_.isOpen(); }
    // Reads at most `size` bytes. Returns their count, which is less only at the end.
    std::size_t read(char* target, std::size_t size);
    // Reads a line with its line feed, or as much of it as leaves room for the terminator, as fgets
    // does. False at the end.
    bool readLine(char* line, std::size_t size);
    // Whether reading ended at an error and not at the end of the file.
    [[nodiscard]] bool failed() const { return failed_; }

private:
    static constexpr std::size_t kBufferSize = 4096;

    [[nodiscard]] std::size_t buffered() const { return static_cast<std::size_t>(end_ - next_); }
    bool fill();

    FileDescriptor file_;
    bool ended_ = false;
    bool failed_ = false;
    const char* next_ = buffer_;
    const char* end_ = buffer_;
    char buffer_[kBufferSize];
};
