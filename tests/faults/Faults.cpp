// Linked into the program in place of the calls that it wraps: FAULT=name:n makes the n-th call of
// that name fail for want of memory. strdup counts as malloc, every operator new as new. Standard
// error gets a line when that call came.
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <new>

// Whether this call of `name` is the one that is to fail. Allocates nothing.
static bool fails(const char* name) {
    static int calls = 0;
    const char* fault = std::getenv("FAULT");
    const std::size_t length = std::strlen(name);
    if (fault == nullptr || std::strncmp(fault, name, length) != 0 || fault[length] != ':' ||
        ++calls != std::atoi(fault + length + 1)) {
        return false;
    }
    // g++ warns of a result that is merely cast away. The test misses the line if it is lost.
    static_cast<void>(!write(STDERR_FILENO, "The fault came\n", 15));
    return true;
}

// The linker's names: a call of f goes to __wrap_f, and __real_f is what was called before.
#define WRAP(type, function, parameters, arguments, name, failure)  \
    type __real_##function parameters;                              \
    type __wrap_##function parameters {                             \
        return fails(name) ? failure : __real_##function arguments; \
    }

extern "C" {
using Size = std::size_t;
using Tag = const std::nothrow_t&;
WRAP(void*, malloc, (Size n), (n), "malloc", nullptr)
WRAP(void*, calloc, (Size count, Size n), (count, n), "calloc", nullptr)
WRAP(char*, strdup, (const char* text), (text), "malloc", nullptr)
WRAP(void*, _Znwm, (Size n), (n), "new", throw std::bad_alloc())
WRAP(void*, _Znam, (Size n), (n), "new", throw std::bad_alloc())
WRAP(void*, _ZnwmRKSt9nothrow_t, (Size n, Tag tag), (n, tag), "new", nullptr)
WRAP(void*, _ZnamRKSt9nothrow_t, (Size n, Tag tag), (n, tag), "new", nullptr)
}
