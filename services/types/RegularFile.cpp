#include "RegularFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Without O_NONBLOCK the open itself would wait for the other end of a pipe.
constexpr int kNeverWait = O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
constexpr mode_t kByUmask = 0666;

int openRegular(const char* path, int access) {
    const int descriptor = open(path, access | kNeverWait, kByUmask);
    struct stat status {};
    if (descriptor >= 0 && (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))) {
        close(descriptor);
        return -1;
    }
    return descriptor;
}

StreamHandle streamOf(int descriptor, const char* mode) {
    StreamHandle stream(descriptor >= 0 ? fdopen(descriptor, mode) : nullptr);
    if (stream == nullptr && descriptor >= 0) {
        close(descriptor);
    }
    return stream;
}

}  // namespace

int openRegularFile(const char* path) {
    return openRegular(path, O_RDONLY);
}

StreamHandle openRegularStream(const char* path) {
    return streamOf(openRegularFile(path), "r");
}

StreamHandle openEmptiedStream(const char* path) {
    StreamHandle stream = streamOf(openRegular(path, O_WRONLY | O_CREAT), "w");
    if (stream != nullptr && ftruncate(fileno(stream.get()), 0) != 0) {
        return nullptr;
    }
    return stream;
}
