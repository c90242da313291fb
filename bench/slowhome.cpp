// A library to be preloaded into the program: each call that names a file below HOME takes 50 ms
// longer, as on a slow file system.

#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr useconds_t delayUs = 50'000;

void delay(const char* path)
{
    const char* home = std::getenv("HOME");
    if (path && home && std::strncmp(path, home, std::strlen(home)) == 0)
        usleep(delayUs);
}

template <typename Function> Function original(Function, const char* name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

mode_t modeOf(int flags, va_list rest)
{
    return (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
}

} // namespace

extern "C" int open64(const char* path, int flags, ...)
{
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = modeOf(flags, rest);
    va_end(rest);
    delay(path);
    return original(&open64, "open64")(path, flags, mode);
}

extern "C" int open(const char* path, int flags, ...)
{
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = modeOf(flags, rest);
    va_end(rest);
    delay(path);
    return original(&open, "open")(path, flags, mode);
}

extern "C" int statx(int directory, const char* path, int flags, unsigned int mask,
                     struct statx* result) noexcept
{
    // An open file is asked by an empty name.
    delay(path);
    return original(&statx, "statx")(directory, path, flags, mask, result);
}

extern "C" int unlink(const char* path) noexcept
{
    delay(path);
    return original(&unlink, "unlink")(path);
}

extern "C" int mkdir(const char* path, mode_t mode) noexcept
{
    delay(path);
    return original(&mkdir, "mkdir")(path, mode);
}

extern "C" int access(const char* path, int mode) noexcept
{
    delay(path);
    return original(&access, "access")(path, mode);
}
