// Two functions that stand before the C library's, for Qt as well: SUBJECT_PROCESSORS is the number
// of processors found, and what is opened below "/var/vireon" lies in the directory SUBJECT_VAR.
// A preloaded library would do the same, but not together with the sanitizers.
//
// The sanitizers' own start calls these functions: this file is compiled without them, and keeps
// off what they intercept.

#include <cstdarg>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace {

template <class Function> Function realFunction(const char* name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" long sysconf(int name) noexcept
{
    const char* processors = name == _SC_NPROCESSORS_ONLN ? getenv("SUBJECT_PROCESSORS") : nullptr;
    if (processors)
        return std::strtol(processors, nullptr, 10);
    return realFunction<long (*)(int)>("sysconf")(name);
}

extern "C" int open(const char* path, int flags, ...)
{
    mode_t mode = 0;
    if (flags & O_CREAT) {
        va_list arguments;
        va_start(arguments, flags);
        mode = va_arg(arguments, mode_t);
        va_end(arguments);
    }
    const auto real = realFunction<int (*)(const char*, int, ...)>("open");
    const std::string systemDir = "/var/vireon/";
    const char* replacement = getenv("SUBJECT_VAR");
    if (!replacement || std::string(path).rfind(systemDir, 0) != 0)
        return real(path, flags, mode);
    const std::string instead = std::string(replacement) + '/' + (path + systemDir.size());
    return real(instead.c_str(), flags, mode);
}
