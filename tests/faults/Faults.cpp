// Linked into the program in place of the calls that it wraps: FAULT=name:n makes the n-th call of
// that name fail, as a full disk, a lack of memory or a broken device would. strdup counts as
// malloc, fdopen as fopen, every operator new as new. Standard error gets a line when that call
// came.
#include <fcntl.h>
#include <nl_types.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

// Whether this call of `name` is the one that is to fail. Allocates nothing.
bool fails(const char* name, int error) {
    static int calls = 0;
    const char* fault = std::getenv("FAULT");
    const std::size_t length = std::strlen(name);
    if (fault == nullptr || std::strncmp(fault, name, length) != 0 || fault[length] != ':' ||
        ++calls != std::atoi(fault + length + 1)) {
        return false;
    }
    constexpr char kLine[] = "The fault came\n";
    // g++ warns of a result that is merely cast away. The test misses the line if it is lost.
    static_cast<void>(!write(STDERR_FILENO, kLine, sizeof kLine - 1));
    errno = error;
    return true;
}

}  // namespace

// The linker's names: a call of f goes to __wrap_f, and __real_f is what was called before.
extern "C" {
void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
char* __real_strdup(const char* text);
void* __real__Znwm(std::size_t size);
void* __real__Znam(std::size_t size);
void* __real__ZnwmRKSt9nothrow_t(std::size_t size, const std::nothrow_t& tag);
void* __real__ZnamRKSt9nothrow_t(std::size_t size, const std::nothrow_t& tag);
std::FILE* __real_fopen(const char* path, const char* mode);
std::FILE* __real_fdopen(int descriptor, const char* mode);
std::size_t __real_fread(void* target, std::size_t size, std::size_t count, std::FILE* file);
std::size_t __real_fwrite(const void* source, std::size_t size, std::size_t count, std::FILE* file);
int __real_fclose(std::FILE* file);
int __real_fflush(std::FILE* file);
int __real_fstat(int descriptor, struct stat* status);
int __real_ftruncate(int descriptor, off_t size);
int __real_open(const char* path, int flags, mode_t mode);
ssize_t __real_read(int descriptor, void* target, std::size_t size);
nl_catd __real_catopen(const char* name, int flag);
char* __real_setlocale(int category, const char* name);

void* __wrap_malloc(std::size_t size) {
    return fails("malloc", ENOMEM) ? nullptr : __real_malloc(size);
}
void* __wrap_calloc(std::size_t count, std::size_t size) {
    return fails("calloc", ENOMEM) ? nullptr : __real_calloc(count, size);
}
char* __wrap_strdup(const char* text) {
    return fails("malloc", ENOMEM) ? nullptr : __real_strdup(text);
}
void* __wrap__Znwm(std::size_t size) {
    return fails("new", ENOMEM) ? throw std::bad_alloc() : __real__Znwm(size);
}
void* __wrap__Znam(std::size_t size) {
    return fails("new", ENOMEM) ? throw std::bad_alloc() : __real__Znam(size);
}
void* __wrap__ZnwmRKSt9nothrow_t(std::size_t size, const std::nothrow_t& tag) {
    return fails("new", ENOMEM) ? nullptr : __real__ZnwmRKSt9nothrow_t(size, tag);
}
void* __wrap__ZnamRKSt9nothrow_t(std::size_t size, const std::nothrow_t& tag) {
    return fails("new", ENOMEM) ? nullptr : __real__ZnamRKSt9nothrow_t(size, tag);
}
std::FILE* __wrap_fopen(const char* path, const char* mode) {
    return fails("fopen", EMFILE) ? nullptr : __real_fopen(path, mode);
}
std::FILE* __wrap_fdopen(int descriptor, const char* mode) {
    return fails("fopen", ENOMEM) ? nullptr : __real_fdopen(descriptor, mode);
}
std::size_t __wrap_fread(void* target, std::size_t size, std::size_t count, std::FILE* file) {
    return fails("fread", EIO) ? 0 : __real_fread(target, size, count, file);
}
std::size_t __wrap_fwrite(const void* source, std::size_t size, std::size_t count,
                          std::FILE* file) {
    return fails("fwrite", ENOSPC) ? 0 : __real_fwrite(source, size, count, file);
}
int __wrap_fprintf(std::FILE* file, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const int result = fails("fprintf", ENOSPC) ? -1 : std::vfprintf(file, format, arguments);
    va_end(arguments);
    return result;
}
// What a call of fprintf becomes where the C library checks the format.
int __wrap___fprintf_chk(std::FILE* file, int /*check*/, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const int result = fails("fprintf", ENOSPC) ? -1 : std::vfprintf(file, format, arguments);
    va_end(arguments);
    return result;
}
int __wrap_fclose(std::FILE* file) {
    const int result = __real_fclose(file);
    return fails("fclose", ENOSPC) ? EOF : result;
}
int __wrap_fflush(std::FILE* file) {
    return fails("fflush", ENOSPC) ? EOF : __real_fflush(file);
}
int __wrap_fstat(int descriptor, struct stat* status) {
    return fails("fstat", EIO) ? -1 : __real_fstat(descriptor, status);
}
int __wrap_ftruncate(int descriptor, off_t size) {
    return fails("ftruncate", EIO) ? -1 : __real_ftruncate(descriptor, size);
}
int __wrap_open(const char* path, int flags, ...) {
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return fails("open", EMFILE) ? -1 : __real_open(path, flags, mode);
}
ssize_t __wrap_read(int descriptor, void* target, std::size_t size) {
    return fails("read", EIO) ? -1 : __real_read(descriptor, target, size);
}
nl_catd __wrap_catopen(const char* name, int flag) {
    return fails("catopen", ENOMEM) ? reinterpret_cast<nl_catd>(-1) : __real_catopen(name, flag);
}
char* __wrap_setlocale(int category, const char* name) {
    return fails("setlocale", ENOMEM) ? nullptr : __real_setlocale(category, name);
}
}
