// A library to be preloaded into the program. It measures for how long at a time the GUI thread
// does not come back to its event loop, and appends each of these blocks from 1 ms on to the file
// that VIREON_BENCH_BLOCKS names: the monotonic clock at its begin and its end, and the thread's
// own time, all in ns. The last one ends with the process.

#include <array>
#include <cerrno>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace {

constexpr std::int64_t leastNs = 1'000'000;

struct Moment
{
    std::int64_t clock = 0;
    std::int64_t own = 0;
};

std::int64_t read(clockid_t clock)
{
    timespec now {};
    clock_gettime(clock, &now);
    return std::int64_t {now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

Moment present()
{
    return {read(CLOCK_MONOTONIC), read(CLOCK_THREAD_CPUTIME_ID)};
}

/// -1 where nothing is to be measured: in the engine and the tools, too.
int openReport()
{
    const char* path = std::getenv("VIREON_BENCH_BLOCKS");
    if (!path || std::strcmp(program_invocation_short_name, "vireon") != 0)
        return -1;
    return open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
}

const int report = openReport();
Moment begin;

void endBlock()
{
    const Moment now = present();
    if (begin.clock == 0 || now.clock - begin.clock < leastNs)
        return;
    std::array<char, 96> line {};
    const int length =
        std::snprintf(line.data(), line.size(), "%" PRId64 " %" PRId64 " %" PRId64 "\n",
                      begin.clock, now.clock, now.own - begin.own);
    [[maybe_unused]] const ssize_t written =
        write(report, line.data(), static_cast<std::size_t>(length));
}

/// The event loop's sleep; libxcb polls too, for answers that the program stands still for.
bool isEventLoop(const void* caller)
{
    Dl_info place {};
    return dladdr(caller, &place) != 0 && std::strstr(place.dli_fname, "libglib-2.0");
}

} // namespace

extern "C" int poll(pollfd* descriptors, nfds_t count, int timeout)
{
    using Poll = int (*)(pollfd*, nfds_t, int);
    static const auto original = reinterpret_cast<Poll>(dlsym(RTLD_NEXT, "poll"));
    const bool counts =
        report >= 0 && getpid() == gettid() && isEventLoop(__builtin_return_address(0));
    if (!counts)
        return original(descriptors, count, timeout);
    endBlock();
    const int result = original(descriptors, count, timeout);
    const int error = errno;
    begin = present();
    errno = error;
    return result;
}

extern "C" void _exit(int status)
{
    if (report >= 0 && getpid() == gettid())
        endBlock();
    using Exit = void (*)(int);
    reinterpret_cast<Exit>(dlsym(RTLD_NEXT, "_exit"))(status);
    std::abort();
}
