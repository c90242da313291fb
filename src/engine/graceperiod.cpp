#include "engine/graceperiod.h"

#include <QDir>

#include <array>
#include <atomic>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int graceMs = 5000;
constexpr int threadsLimitMs = 100;
constexpr useconds_t stepUs = 200;
constexpr std::size_t mostChildren = 64;
constexpr int none = -1;

qint64 nowMs()
{
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<qint64>(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

using Handles = std::array<pollfd, mostChildren>;

/// The handles of the running children, each plus one: a zero is a free place.
std::array<std::atomic<int>, mostChildren> places {};

bool exchange(int from, int to)
{
    for (std::atomic<int>& place : places) {
        int expected = from + 1;
        if (place.compare_exchange_strong(expected, to + 1))
            return true;
    }
    return false;
}

/// The handles that are remembered now, in the form that poll() takes.
Handles remembered(std::size_t& count)
{
    Handles handles {};
    count = 0;
    for (const std::atomic<int>& place : places) {
        if (const int handle = place - 1; handle != none)
            handles[count++] = {handle, POLLIN, 0};
    }
    return handles;
}

// --- The other threads of this process --------------------------------------------------------

[[noreturn]] void endThread(int)
{
    for (;;)
        syscall(SYS_exit, 0);
}

std::vector<pid_t> otherThreads()
{
    std::vector<pid_t> threads;
    for (const QString& entry : QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs)) {
        const pid_t thread = entry.toInt();
        if (thread > 0 && thread != getpid())
            threads.push_back(thread);
    }
    return threads;
}

/// Ends the threads that are left, wherever they are. Nothing that they may hold, not even memory's
/// own lock, can be had afterwards: only system calls are allowed.
void endOtherThreads()
{
    const std::vector<pid_t> threads = otherThreads();
    struct sigaction action = {};
    action.sa_handler = endThread;
    sigaction(SIGUSR1, &action, nullptr);
    const pid_t process = getpid();
    for (const pid_t thread : threads)
        syscall(SYS_tgkill, process, thread, SIGUSR1);
    const qint64 limit = nowMs() + threadsLimitMs;
    for (const pid_t thread : threads) {
        while (syscall(SYS_tgkill, process, thread, 0) == 0 && nowMs() < limit)
            usleep(stepUs);
    }
}

// --- In the process that waits. It was forked off a process with threads: system calls alone. ---

/// Leaves only the handles open, with the lowest numbers. The rest would keep pipes, locks and the
/// X server's connection alive.
void closeAllBut(Handles& handles, std::size_t count)
{
    constexpr int aboveAll = 1 << 16;
    // Out of the way first: a handle may have one of the low numbers already.
    for (std::size_t i = 0; i < count; ++i)
        handles[i].fd = fcntl(handles[i].fd, F_DUPFD, static_cast<int>(mostChildren));
    for (std::size_t i = 0; i < count; ++i)
        handles[i].fd = dup2(handles[i].fd, static_cast<int>(i));
    const auto first = static_cast<unsigned>(count);
    if (syscall(SYS_close_range, first, ~0U, 0) != 0) {
        for (int descriptor = static_cast<int>(count); descriptor < aboveAll; ++descriptor)
            close(descriptor);
    }
}

[[noreturn]] void waitFor(Handles& handles, std::size_t count)
{
    setsid(); // what ends the controller's terminal or session must not end this, too
    prctl(PR_SET_NAME, "vireon-grace");
    closeAllBut(handles, count);
    const qint64 end = nowMs() + graceMs;
    std::size_t left = count;
    for (qint64 now = nowMs(); left > 0 && now < end; now = nowMs()) {
        poll(handles.data(), count, static_cast<int>(end - now));
        for (std::size_t i = 0; i < count; ++i) {
            if (handles[i].fd != none && handles[i].revents != 0) {
                handles[i].fd = none;
                --left;
            }
        }
    }
    for (std::size_t i = 0; i < count; ++i) {
        if (handles[i].fd != none)
            syscall(SYS_pidfd_send_signal, handles[i].fd, SIGKILL, nullptr, 0);
    }
    _exit(EXIT_SUCCESS);
}

} // namespace

int GracePeriod::remember(qint64 pid)
{
    const auto handle =
        pid > 0 ? static_cast<int>(syscall(SYS_pidfd_open, static_cast<pid_t>(pid), 0)) : none;
    if (handle != none && !exchange(none, handle)) {
        syscall(SYS_close, handle);
        return none;
    }
    return handle;
}

void GracePeriod::forget(int handle)
{
    // As bare as the call that opened it: the thread sanitizer would count the one alone.
    if (handle != none && exchange(handle, none))
        syscall(SYS_close, handle);
}

void GracePeriod::begin()
{
    std::size_t count = 0;
    Handles handles = remembered(count);
    if (count == 0)
        return;
    if (fork() == 0)
        waitFor(handles, count);
    endOtherThreads();
}
