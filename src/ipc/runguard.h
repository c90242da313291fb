#pragma once

#include <QSharedMemory>
#include <QString>
#include <QSystemSemaphore>

#include <atomic>
#include <memory>

class FileLock;

/**
 * Makes sure that only one copy of the program runs per machine.
 *
 * A shared-memory segment is the marker that a copy runs; a system semaphore is the lock around
 * every look at it. Both leave with their process, but they are known by key files in the
 * temporary directory (TMPDIR), which the copies make and remove: a file lock beside them
 * ("runguard_…lock" there, never removed) is held whenever they are made, used or destroyed, so
 * that no copy interferes with another. A copy that was stopped while holding it makes a start wait
 * 5 s; it then counts as running. Nothing here waits without a limit.
 */
class RunGuard
{
public:
    /// A guard with @p key; copies with different keys do not know of each other. Drops the marker
    /// of a copy that crashed.
    explicit RunGuard(QString const& key);

    /// Gives the marker back. When the file lock cannot be had within 1 s, that is left to the
    /// kernel and to the next copy.
    ~RunGuard();
    RunGuard(const RunGuard&) = delete;
    RunGuard& operator=(const RunGuard&) = delete;

    /// Whether another copy holds the marker: false, without locking, on the guard that holds it.
    /// A copy of another user, which cannot be looked at, counts as running.
    bool isAnotherRunning();

    /// Takes the marker. False when another copy holds it, or when it cannot be made at all.
    bool tryToRun();

    /// Gives the marker back; also allowed when it is not held.
    void release();

private:
    bool prepare(const FileLock& turn);
    bool createMarker();
    void detachMarker(const FileLock& turn);
    QString lockPath() const;

    QString const key;
    QString const memLockKey; ///< 40 hexadecimal digits, as the next one
    QString const sharedmemKey;
    std::unique_ptr<QSharedMemory> sharedMem; ///< null until the file lock was held once
    std::unique_ptr<QSystemSemaphore> memLock; ///< likewise
    std::atomic<bool> holdsMarker {false}; ///< sharedMem is attached for good, not just for a look
};
