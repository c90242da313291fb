#include "support/systemcalls.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <poll.h>
#include <sys/file.h>
#include <sys/sem.h>
#include <sys/shm.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>

std::atomic<int> SystemCalls::lockTries {0};
std::atomic<int> SystemCalls::lockTriesAllowed {0};
std::atomic<int> SystemCalls::mainThreadSleeps {0};
std::atomic<int> SystemCalls::longestPoll {0};
QStringList SystemCalls::trace;
std::function<bool(int)> SystemCalls::isLock;
std::function<void()> SystemCalls::beforeCreation;
bool SystemCalls::noSpace = false;

namespace {

constexpr long nsPerMs = 1000000;
constexpr int msPerS = 1000;

bool isFirstThread()
{
    return syscall(SYS_gettid) == getpid();
}

void note(const char* event)
{
    if (SystemCalls::isLock)
        SystemCalls::trace << event;
}

} // namespace

void SystemCalls::reset()
{
    lockTries = 0;
    lockTriesAllowed = 0;
    mainThreadSleeps = 0;
    longestPoll = 0;
    trace.clear();
    isLock = nullptr;
    beforeCreation = nullptr;
    noSpace = false;
}

extern "C" {

int flock(int descriptor, int operation) noexcept
{
    if (++SystemCalls::lockTries <= SystemCalls::lockTriesAllowed) {
        errno = EWOULDBLOCK;
        return -1;
    }
    return static_cast<int>(syscall(SYS_flock, descriptor, operation));
}

int nanosleep(const timespec* time, timespec* left)
{
    if (isFirstThread())
        ++SystemCalls::mainThreadSleeps;
    return static_cast<int>(syscall(SYS_nanosleep, time, left));
}

int poll(pollfd* descriptors, nfds_t count, int ms)
{
    if (count == 1 && !isFirstThread())
        SystemCalls::longestPoll = std::max<int>(SystemCalls::longestPoll, ms);
    const timespec time {ms / msPerS, ms % msPerS * nsPerMs};
    return static_cast<int>(
        syscall(SYS_ppoll, descriptors, count, ms < 0 ? nullptr : &time, nullptr, 0));
}

int semop(int semaphore, sembuf* operations, size_t count) noexcept
{
    if (SystemCalls::isLock && SystemCalls::isLock(semaphore))
        note(operations->sem_op < 0 ? "lock" : "unlock");
    return static_cast<int>(syscall(SYS_semop, semaphore, operations, count));
}

int shmget(key_t key, size_t size, int flags) noexcept
{
    if (flags & IPC_CREAT) {
        if (SystemCalls::noSpace) {
            errno = ENOSPC;
            return -1;
        }
        if (const auto before = std::exchange(SystemCalls::beforeCreation, nullptr))
            before();
        note("create");
    }
    return static_cast<int>(syscall(SYS_shmget, key, size, flags));
}

void* shmat(int id, const void* address, int flags) noexcept
{
    note("attach");
    return reinterpret_cast<void*>(syscall(SYS_shmat, id, address, flags));
}

int shmdt(const void* address) noexcept
{
    note("detach");
    return static_cast<int>(syscall(SYS_shmdt, address));
}

} // extern "C"
