#pragma once

#include <QString>

#include <sys/types.h>

/**
 * Prepares the key files of Qt's System V objects before Qt uses them.
 *
 * Qt makes the key of a semaphore or a segment from the inode number of a file, and removes the
 * file with the object. A process that is killed halfway leaves one without the other, the next
 * file gets the freed inode number, and two objects that should differ become one: a semaphore
 * that waits for itself. A file made here has a key that nothing on the machine uses.
 *
 * The temporary directory is everybody's: what another user left there can neither be opened nor
 * removed. Such a name is of no use to this user, whatever is behind it.
 *
 * To be called by one process at a time, and while no other one is about to use these objects.
 */
class KeyFile
{
public:
    /// Makes the key file at @p path anew, for a semaphore that does not exist yet: one that a
    /// killed process left behind, taken perhaps, goes. False when the name is of no use.
    static bool prepareSemaphore(const QString& path);

    /// Makes the segment's key file at @p path when missing; this user's segment of that key stays.
    /// False when the name is of no use.
    static bool prepareSegment(const QString& path);

    /// Removes the object whose key file lies at @p path, and the file, when both are this user's.
    static void removeSemaphore(const QString& path);
    static void removeSegment(const QString& path);

    /// Where Qt keeps the key file of the object called @p key.
    static QString semaphorePath(const QString& key);
    static QString segmentPath(const QString& key);

    /// The key that Qt makes from the file at @p path; -1 when there is none.
    static key_t keyOf(const QString& path);
};
