#include "PrivateFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace {

constexpr mode_t kOwnerOnly = S_IRUSR | S_IWUSR;

// A pipe or a device under the name could keep the process waiting. A file that is there may have
// been made by others with another mode, and so may a new one under an unusual umask.
bool makePrivate(int descriptor) {
    struct stat status {};
    if (fstat(descriptor, &status) != 0) {
        return false;
    }
    if (!S_ISREG(status.st_mode)) {
        errno = EINVAL;
        return false;
    }
    return status.st_uid != geteuid() || fchmod(descriptor, kOwnerOnly) == 0;
}

}  // namespace

std::FILE* openPrivateFile(const char* path) {
    const int descriptor =
        open(path, O_WRONLY | O_CREAT | O_APPEND | O_NONBLOCK | O_CLOEXEC | O_NOCTTY, kOwnerOnly);
    if (descriptor < 0) {
        return nullptr;
    }
    std::FILE* stream = makePrivate(descriptor) ? fdopen(descriptor, "a") : nullptr;
    if (stream == nullptr) {
        const int error = errno;
        close(descriptor);
        errno = error;
    }
    return stream;
}
