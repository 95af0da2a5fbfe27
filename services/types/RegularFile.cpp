#include "RegularFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

int openRegularFile(const char* path) {
    // Without O_NONBLOCK the open itself would wait for the other end of a pipe.
    const int descriptor = open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    struct stat status {};
    if (descriptor >= 0 && (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))) {
        close(descriptor);
        return -1;
    }
    return descriptor;
}

StreamHandle openRegularStream(const char* path) {
    const int descriptor = openRegularFile(path);
    if (descriptor < 0) {
        return nullptr;
    }
    StreamHandle stream(fdopen(descriptor, "r"));
    if (stream == nullptr) {
        close(descriptor);
    }
    return stream;
}
