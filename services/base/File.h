// Opening, reading and writing files.
// A name that comes from a request opens only a regular file. A directory, a pipe or a device
// counts as a file that can't be opened: no request may wait for it or read it without end. Files
// of the installation may be of any kind.
#pragma once

#include <unistd.h>

#include <cstddef>
#include <cstdio>
#include <memory>
#include <utility>

namespace dnz {

struct StreamCloser {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};

// An open stream, closed with the object; null when the open failed.
using StreamHandle = std::unique_ptr<std::FILE, StreamCloser>;

// An open file of the operating system, closed with the object.
class FileDescriptor {
public:
    FileDescriptor() = default;
    // Takes ownership of `number`; a negative one, the result of a failed open, is no file.
    explicit FileDescriptor(int number) : number_(number) {}
    FileDescriptor(FileDescriptor&& other) noexcept
        : number_(std::exchange(other.number_, kNone)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() {
        if (isOpen()) {
            close(number_);
        }
    }

    [[nodiscard]] bool isOpen() const { return number_ >= 0; }
    [[nodiscard]] int number() const { return number_; }
    // Passes ownership to the caller, who closes the file.
    [[nodiscard]] int release() { return std::exchange(number_, kNone); }

private:
    static constexpr int kNone = -1;
    int number_ = kNone;
};

// Open `path` for reading: a file of any kind, or a regular file only. Without a file the result
// isn't open, and errno is set.
[[nodiscard]] FileDescriptor openFile(const char* path);
[[nodiscard]] FileDescriptor openRegularFile(const char* path);

// Opens a stream for appending; `mode` is "a" or "a+" (fopen, ISO C). Only the owner may access a
// new file, since traces and reports contain form values; an existing file keeps its mode. Null,
// with errno set, if the file can't be opened.
[[nodiscard]] StreamHandle openPrivateStream(const char* path, const char* mode);

// Opens `path` for writing, a regular file, which is created or emptied. Null if it can't be
// opened.
[[nodiscard]] StreamHandle openEmptiedStream(const char* path);

// Reads a file until a read returns nothing. A stream needs more system calls, and they are, with
// the start of the process, most of a request's time.
class FileReader {
public:
    FileReader() {}
    explicit FileReader(FileDescriptor file) : file_(std::move(file)) {}
    FileReader(const FileReader&) = delete;
    FileReader& operator=(const FileReader&) = delete;

    // Takes ownership of a file, in a reader that has none yet. False if the file isn't open.
    bool use(FileDescriptor file) {
        file_ = std::move(file);
        return isOpen();
    }
    [[nodiscard]] bool isOpen() const { return file_.isOpen(); }
    // Reads `size` bytes, or fewer at the end. Returns their count.
    std::size_t read(char* target, std::size_t size);
    // Reads a line with its line feed, at most `size` - 1 bytes, and terminates it, as fgets does.
    // False at the end.
    bool readLine(char* line, std::size_t size);
    // True once reading ended at an error and not at the end of the file.
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

}  // namespace dnz
