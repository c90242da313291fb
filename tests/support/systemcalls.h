#pragma once

#include <QStringList>

#include <atomic>
#include <functional>

/**
 * What a test program asks of the kernel, seen and changed by the test: its own flock(),
 * nanosleep(), poll(), semop(), shmget(), shmat() and shmdt() stand before the C library's, for Qt
 * as well. For a test without a clock: calls are counted, and a wait is known by what was asked
 * for.
 */
struct SystemCalls
{
    /// All counters and changes as at the start of the program.
    static void reset();

    static std::atomic<int> lockTries; ///< calls of flock()
    static std::atomic<int> lockTriesAllowed; ///< flock() without waiting is refused that often

    static std::atomic<int> mainThreadSleeps; ///< calls of nanosleep() on the first thread

    /// The longest wait, in ms, that another thread than the first asked poll() for on one
    /// descriptor.
    static std::atomic<int> longestPoll;

    /// What happens to segments, "create", "attach" and "detach", and to the semaphore that
    /// isLock() names, "lock" and "unlock"; empty without isLock().
    static QStringList trace;
    static std::function<bool(int semaphore)> isLock;

    static std::function<void()> beforeCreation; ///< called once, before a segment is made
    static bool noSpace; ///< no segment can be made
};
