#pragma once

#include <QString>

class QDeadlineTimer;

/**
 * A lock between processes, held from construction to destruction.
 *
 * It is a flock() on a file that is made when missing and never removed: removing it would let two
 * holders lock two files of the same name. Any user can open the file. The kernel drops the lock
 * whenever its holder dies; a holder that is merely stopped keeps it. Two locks in one process (on
 * two threads) exclude each other, too.
 */
class FileLock
{
public:
    enum class Kind {
        Exclusive, ///< nobody else holds it
        Shared, ///< others may hold it too, in this way
    };

    /// Waits at most @p waitMs milliseconds for the lock on the file at @p path; 0 is one try. See
    /// isHeld().
    FileLock(const QString& path, int waitMs, Kind kind = Kind::Exclusive);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    /// False when the wait was over first, or, at once, when there is no way to open the file or
    /// something else is in its place. The log tells (category "vireon.guard"), but not of a single
    /// try.
    bool isHeld() const { return descriptor >= 0; }

    /// Whether it is not held because another one holds it: one more try may get it.
    bool isTaken() const { return taken; }

private:
    bool lockBefore(const QDeadlineTimer& deadline, int file, Kind kind);

    int descriptor = -1;
    bool taken = false;
};
