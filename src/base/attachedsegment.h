#pragma once

#include <cstddef>
#include <sys/types.h>
#include <vector>

/**
 * A System V shared-memory segment that some process is attached to, as the kernel shows it to
 * every user, whether he may open the segment or not (what /proc/sysvipc/shm lists).
 */
struct AttachedSegment
{
    int id = -1;
    key_t key = -1;
    std::size_t size = 0; ///< bytes, as asked for when it was made
    uid_t creator = 0;
    pid_t creatorPid = 0;
    bool isFlagged = false; ///< flag() was called

    /// All of them; none when the kernel does not tell.
    static std::vector<AttachedSegment> all();

    /// Sets a mark on the segment that everybody sees and that changes nobody's access: its owner's
    /// execute bit. Without effect on a segment of another user.
    static void flag(int id);
};
