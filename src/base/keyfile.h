#pragma once

#include <QString>

/**
 * Prepares the key files of Qt's System V objects before Qt uses them.
 *
 * Qt makes the key of a semaphore or a segment from the inode number of a file, and removes the
 * file with the object. A process that is killed halfway leaves one without the other, the next
 * file gets the freed inode number, and two objects that should differ become one: a semaphore
 * that waits for itself. A file made here has a key that nothing on the machine uses.
 *
 * To be called by one process at a time, and while no other one is about to use these objects.
 */
class KeyFile
{
public:
    /// Makes the semaphore's key file at @p path when missing. A semaphore left taken by a process
    /// that died while making it is freed.
    static void prepareSemaphore(const QString& path);

    /// Makes the segment's key file at @p path when missing.
    static void prepareSegment(const QString& path);

    /// Where Qt keeps the key file of the semaphore called @p key.
    static QString semaphorePath(const QString& key);
};
