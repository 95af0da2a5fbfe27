#include "services/base/File.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>

namespace dnz {

namespace {

constexpr mode_t kByUmask = 0666;
constexpr mode_t kOwnerOnly = 0600;

// Waits only for a process that has a lease on the file, not for the other end of a pipe.
FileDescriptor openWithoutWaiting(const char* path, int flags) {
    const int allFlags = flags | O_NOCTTY | O_CLOEXEC;
    FileDescriptor file(::open(path, allFlags | O_NONBLOCK, kByUmask));
    // This error means a lease, which only regular files have.
    if (!file.isOpen() && errno == EWOULDBLOCK) {
        return FileDescriptor(::open(path, allFlags, kByUmask));
    }
    return file;
}

FileDescriptor openRegular(const char* path, int flags) {
    FileDescriptor file = openWithoutWaiting(path, flags);
    struct stat status {};
    if (!file.isOpen() || fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return {};
    }
    return file;
}

StreamHandle streamOf(FileDescriptor file, const char* mode) {
    StreamHandle stream(file.isOpen() ? fdopen(file.number(), mode) : nullptr);
    if (stream != nullptr) {
        static_cast<void>(file.release());
    }
    return stream;
}

}  // namespace

FileDescriptor openFile(const char* path) {
    return FileDescriptor(::open(path, O_RDONLY | O_NOCTTY | O_CLOEXEC));
}

FileDescriptor openRegularFile(const char* path) {
    return openRegular(path, O_RDONLY);
}

StreamHandle openPrivateStream(const char* path, const char* mode) {
    const int access = std::string_view(mode) == "a+" ? O_RDWR : O_WRONLY;
    const int flags = access | O_CREAT | O_APPEND | O_NOCTTY | O_CLOEXEC;
    return streamOf(FileDescriptor(::open(path, flags, kOwnerOnly)), mode);
}

StreamHandle openEmptiedStream(const char* path) {
    FileDescriptor file = openRegular(path, O_WRONLY | O_CREAT);
    if (!file.isOpen() || ftruncate(file.number(), 0) != 0) {
        return nullptr;
    }
    return streamOf(std::move(file), "w");
}

std::size_t FileReader::read(char* target, std::size_t size) {
    std::size_t count = 0;
    while (count < size && fill()) {
        const std::size_t taken = std::min(buffered(), size - count);
        std::copy_n(next_, taken, target + count);
        next_ += taken;
        count += taken;
    }
    return count;
}

bool FileReader::readLine(char* line, std::size_t size) {
    std::size_t count = 0;
    bool isWhole = false;
    while (!isWhole && count + 1 < size && fill()) {
        const char* limit = next_ + std::min(buffered(), size - 1 - count);
        const auto* lineFeed = static_cast<const char*>(
            std::memchr(next_, '\n', static_cast<std::size_t>(limit - next_)));
        isWhole = lineFeed != nullptr;
        const char* stop = isWhole ? lineFeed + 1 : limit;
        std::copy(next_, stop, line + count);
        count += static_cast<std::size_t>(stop - next_);
        next_ = stop;
    }
    line[count] = '\0';
    return count > 0;
}

// False at the end of the file.
bool FileReader::fill() {
    if (next_ != end_) {
        return true;
    }
    if (ended_) {
        return false;
    }
    const ssize_t count = ::read(file_.number(), buffer_, kBufferSize);
    failed_ = count < 0;
    ended_ = count <= 0;
    next_ = buffer_;
    end_ = buffer_ + std::max<ssize_t>(count, 0);
    return !ended_;
}

}  // namespace dnz
