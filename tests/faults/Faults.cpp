// Linked into the program in place of the calls that it wraps: with FAULT=n the n-th of them fails
// for want of memory, and standard error gets a line.
#include <unistd.h>

#include <cstdlib>
#include <new>

// Whether this call is the one that is to fail. Allocates nothing.
static bool fails() {
    static int calls = 0;
    const char* fault = std::getenv("FAULT");
    if (fault == nullptr || ++calls != std::atoi(fault)) {
        return false;
    }
    // g++ warns of a result that is merely cast away. The test misses the line if it is lost.
    static_cast<void>(!write(STDERR_FILENO, "The fault came\n", 15));
    return true;
}

// The linker's names: a call of f goes to __wrap_f, and __real_f is what was called before.
#define WRAP(type, function, parameters, arguments, failure)    \
    type __real_##function parameters;                          \
    type __wrap_##function parameters {                         \
        return fails() ? failure : __real_##function arguments; \
    }

extern "C" {
using Size = std::size_t;
using Tag = const std::nothrow_t&;
WRAP(void*, malloc, (Size n), (n), nullptr)
WRAP(void*, calloc, (Size count, Size n), (count, n), nullptr)
WRAP(char*, strdup, (const char* text), (text), nullptr)
WRAP(void*, _Znwm, (Size n), (n), throw std::bad_alloc())
WRAP(void*, _Znam, (Size n), (n), throw std::bad_alloc())
WRAP(void*, _ZnwmRKSt9nothrow_t, (Size n, Tag tag), (n, tag), nullptr)
WRAP(void*, _ZnamRKSt9nothrow_t, (Size n, Tag tag), (n, tag), nullptr)
}
