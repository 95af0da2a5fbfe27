#include "PrivateFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <string_view>

#include "RegularFile.h"

namespace {

constexpr mode_t kOwnerOnly = S_IRUSR | S_IWUSR;

}  // namespace

std::FILE* openPrivateFile(const char* path, const char* mode) {
    const int access = std::string_view(mode) == "a+" ? O_RDWR : O_WRONLY;
    FileDescriptor file = openUnlessPipe(path, access | O_CREAT | O_APPEND, kOwnerOnly);
    std::FILE* stream = file.isOpen() ? fdopen(file.number(), mode) : nullptr;
    if (stream != nullptr) {
        static_cast<void>(file.release());
    }
    return stream;
}
