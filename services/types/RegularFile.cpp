#include "RegularFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <string_view>

namespace {

// Without O_NONBLOCK the open itself would wait for the other end of a pipe.
constexpr int kNeverWait = O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
constexpr mode_t kByUmask = 0666;

// The open file and its size, or none.
FileDescriptor openRegular(const char* path, int access, std::size_t& size) {
    FileDescriptor file(::open(path, access | kNeverWait, kByUmask));
    struct stat status {};
    if (!file.isOpen() || fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return {};
    }
    size = static_cast<std::size_t>(status.st_size);
    return file;
}

}  // namespace

FileDescriptor openRegularFile(const char* path) {
    std::size_t size = 0;
    return openRegular(path, O_RDONLY, size);
}

StreamHandle openEmptiedStream(const char* path) {
    std::size_t size = 0;
    FileDescriptor file = openRegular(path, O_WRONLY | O_CREAT, size);
    if (!file.isOpen() || ftruncate(file.number(), 0) != 0) {
        return nullptr;
    }
    StreamHandle stream(fdopen(file.number(), "w"));
    if (stream != nullptr) {
        static_cast<void>(file.release());
    }
    return stream;
}

bool FileReader::open(const char* path) {
    file_ = openRegular(path, O_RDONLY, unread_);
    return isOpen();
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
        const char* lineFeed = std::find(next_, limit, '\n');
        isWhole = lineFeed != limit;
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
    if (unread_ == 0) {
        return false;
    }
    const ssize_t count = ::read(file_.number(), buffer_, kBufferSize);
    failed_ = count < 0;
    const std::size_t received = count > 0 ? static_cast<std::size_t>(count) : 0;
    unread_ = received > 0 ? unread_ - std::min(unread_, received) : 0;
    next_ = buffer_;
    end_ = buffer_ + received;
    return received > 0;
}
