#pragma once

#include <QSharedMemory>
#include <QString>
#include <QSystemSemaphore>

#include <atomic>
#include <memory>
#include <optional>

class FileLock;
class KeyFileWatch;
struct AttachedSegment;

/**
 * Makes sure that only one copy of the program runs per machine, whoever its user is.
 *
 * A shared-memory segment is the marker: a copy runs when a process is attached to it, which the
 * kernel tells to all users. What a killed copy left behind is none. A system semaphore is the lock
 * around every use of the marker. Both are known by key files in the temporary directory (TMPDIR;
 * /tmp when that is no directory to write in), which Qt makes and removes: a file lock beside them
 * ("runguard_…lock" there, never removed) is held meanwhile, so that no copy does so under another
 * one's hands. The objects exist while the marker is held, and during a step.
 *
 * Where another user's left-overs are in the way, or the file lock is not to be had, the copy takes
 * names of its own, with its user's and its process' number in them: nobody else uses these
 * objects, and the others compute the names from what the kernel tells of the marker. After making
 * it the copy looks whether another one did the same at that moment; then both try again.
 *
 * A cleaner of old files may remove the key files while the program runs, and no other copy would
 * find the marker. They are watched, and made anew with their objects as soon as one is gone. That
 * needs the event loop; setting their times now and then would not be enough for a machine that
 * slept for weeks.
 *
 * Nothing here waits without a limit. On the thread that made it, unless a member says otherwise.
 */
class RunGuard
{
public:
    /// A guard with @p key; copies with different keys do not know of each other. Drops the marker
    /// of a copy that crashed, unless the file lock is taken. Does not wait.
    explicit RunGuard(QString const& key);

    /// Does what release() does.
    ~RunGuard();
    RunGuard(const RunGuard&) = delete;
    RunGuard& operator=(const RunGuard&) = delete;

    /// The marker of another copy, whose creator that copy is: none, without locking, on the guard
    /// that holds its own. Drops a crashed copy's marker. Waits 0.1 s for the file lock at most.
    /// Any thread.
    std::optional<AttachedSegment> findAnother();

    /// Whether there is one.
    bool isAnotherRunning();

    /// Takes the marker. False when another copy holds it, or when it cannot be made at all. Waits
    /// for a copy that is quitting, 3 s at most, and 2.5 s for the file lock; then it goes on
    /// without, with a warning on the log ("vireon.guard").
    bool tryToRun();

    /// Gives the marker back and removes all System V objects and key files, whatever other threads
    /// do; also allowed when it is not held. Waits 1 s for the file lock at most.
    void release();

    /// To be called when the program begins to quit: copies that are started from now on wait for
    /// its end. Without effect when no guard of this process holds the marker.
    static void announceEnd();

private:
    std::optional<AttachedSegment> findMarker() const;
    std::optional<AttachedSegment> findAnother(const FileLock& turn);
    void clearStaleMarker(const FileLock& turn);
    void awaitEndOfQuitting() const;
    bool createMarker(const FileLock& turn);
    bool createMarker(QString const& variant);
    bool prepareLock(QString const& variant);
    bool prepareMarker(QString const& variant);
    void detachMarker();
    void abandonMarker();
    void forgetMarker();
    void renewMarker();
    QString lockPath() const;

    static RunGuard* holder; ///< the guard of this process that took the marker last

    QString const key;
    QString memLockKey; ///< 40 hexadecimal digits, as the next one
    QString sharedmemKey;
    std::unique_ptr<QSharedMemory> sharedMem; ///< null unless the marker is held
    std::unique_ptr<QSystemSemaphore> memLock; ///< null unless in a step or the marker is held
    std::atomic<bool> holdsMarker {false};
    int markerId = -1; ///< the segment's, while it is held
    std::unique_ptr<KeyFileWatch> watch; ///< while the marker is held
};
