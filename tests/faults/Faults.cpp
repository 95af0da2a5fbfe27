// Linked into the program in place of the calls that it wraps: FAULT=name:n makes the n-th call of
// that name fail, as a full disk, a lack of memory or a broken device would. strdup counts as
// malloc, fdopen as fopen, every operator new as new. Standard error gets a line when that call
// came.
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

// Whether this call of `name` is the one that is to fail. Allocates nothing.
static bool fails(const char* name, int error) {
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

// The linker's names: a call of f goes to __wrap_f, and __real_f is what was called before.
#define WRAP(type, function, parameters, arguments, name, error, failure)  \
    type __real_##function parameters;                                     \
    type __wrap_##function parameters {                                    \
        return fails(name, error) ? failure : __real_##function arguments; \
    }

extern "C" {
using Size = std::size_t;
using File = std::FILE;
using Tag = const std::nothrow_t&;
WRAP(void*, malloc, (Size n), (n), "malloc", ENOMEM, nullptr)
WRAP(void*, calloc, (Size count, Size n), (count, n), "calloc", ENOMEM, nullptr)
WRAP(char*, strdup, (const char* text), (text), "malloc", ENOMEM, nullptr)
WRAP(void*, _Znwm, (Size n), (n), "new", ENOMEM, throw std::bad_alloc())
WRAP(void*, _Znam, (Size n), (n), "new", ENOMEM, throw std::bad_alloc())
WRAP(void*, _ZnwmRKSt9nothrow_t, (Size n, Tag tag), (n, tag), "new", ENOMEM, nullptr)
WRAP(void*, _ZnamRKSt9nothrow_t, (Size n, Tag tag), (n, tag), "new", ENOMEM, nullptr)
WRAP(File*, fopen, (const char* path, const char* mode), (path, mode), "fopen", EMFILE, nullptr)
WRAP(File*, fdopen, (int file, const char* mode), (file, mode), "fopen", ENOMEM, nullptr)
WRAP(Size, fread, (void* to, Size n, Size count, File* file), (to, n, count, file), "fread", EIO, 0)
WRAP(Size, fwrite, (const void* from, Size n, Size count, File* file), (from, n, count, file),
     "fwrite", ENOSPC, 0)
WRAP(int, fclose, (File * file), (file), "fclose", ENOSPC, (__real_fclose(file), EOF))
WRAP(int, fflush, (File * file), (file), "fflush", ENOSPC, EOF)
WRAP(int, fstat, (int file, struct stat* status), (file, status), "fstat", EIO, -1)
WRAP(int, ftruncate, (int file, off_t size), (file, size), "ftruncate", EIO, -1)
// Called with or without a mode; what is there in its place then has no say.
WRAP(int, open, (const char* path, int flags, mode_t mode), (path, flags, mode), "open", EMFILE, -1)
WRAP(ssize_t, read, (int file, void* to, Size n), (file, to, n), "read", EIO, -1)
WRAP(nl_catd, catopen, (const char* name, int flag), (name, flag), "catopen", ENOMEM,
     reinterpret_cast<nl_catd>(-1))
WRAP(char*, setlocale, (int category, const char* name), (category, name), "setlocale", ENOMEM,
     nullptr)

int __wrap_fprintf(File* file, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const int result = fails("fprintf", ENOSPC) ? -1 : std::vfprintf(file, format, arguments);
    va_end(arguments);
    return result;
}
// What a call of fprintf becomes where the C library checks the format.
int __wrap___fprintf_chk(File* file, int /*check*/, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const int result = fails("fprintf", ENOSPC) ? -1 : std::vfprintf(file, format, arguments);
    va_end(arguments);
    return result;
}
}
