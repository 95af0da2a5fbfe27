#include "PrivateFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr mode_t kOwnerOnly = S_IRUSR | S_IWUSR;

// A file that is there may have been made with another mode, and so may a new one under an unusual
// umask. What isn't ours, or is no file, keeps its mode.
void makePrivate(int descriptor) {
    struct stat status {};
    if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == geteuid()) {
        fchmod(descriptor, kOwnerOnly);
    }
}

}  // namespace

std::FILE* openPrivateFile(const char* path) {
    // With O_NONBLOCK a pipe under that name that nobody empties can't keep the process waiting.
    constexpr int kFlags = O_WRONLY | O_CREAT | O_APPEND | O_NONBLOCK | O_CLOEXEC | O_NOCTTY;
    const int descriptor = open(path, kFlags, kOwnerOnly);
    if (descriptor < 0) {
        return nullptr;
    }
    makePrivate(descriptor);
    std::FILE* stream = fdopen(descriptor, "a");
    if (stream == nullptr) {
        close(descriptor);
    }
    return stream;
}
