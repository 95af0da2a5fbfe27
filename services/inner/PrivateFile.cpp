#include "PrivateFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

std::FILE* openPrivateFile(const char* path, const char* mode) {
    const int descriptor =
        open(path, O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC | O_NOCTTY, S_IRUSR | S_IWUSR);
    if (descriptor < 0) {
        return nullptr;
    }
    std::FILE* stream = fdopen(descriptor, mode);
    if (stream == nullptr) {
        close(descriptor);
    }
    return stream;
}
