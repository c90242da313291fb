#pragma once

#include <QSet>

#include <sys/sem.h>
#include <sys/shm.h>
#include <unistd.h>

/// The System V objects that a test and its subjects leave behind, killed ones above all: they
/// belong to the machine, not to the test's directory.
class SystemVObjects
{
public:
    /// The processes whose objects removeAll() looks for.
    static QSet<pid_t>& users()
    {
        static QSet<pid_t> pids {getpid()};
        return pids;
    }

    /// How many semaphores and segments there are that one of users() was the last to use.
    static int count()
    {
        return forEach([](int) {}, [](int) {});
    }

    static void removeAll()
    {
        forEach([](int semaphore) { semctl(semaphore, 0, IPC_RMID); },
                [](int segment) { shmctl(segment, IPC_RMID, nullptr); });
    }

private:
    template <class ForSemaphore, class ForSegment>
    static int forEach(ForSemaphore forSemaphore, ForSegment forSegment)
    {
        int found = 0;
        seminfo highest = {};
        const int lastSemaphore = semctl(0, 0, SEM_INFO, &highest);
        for (int index = 0; index <= lastSemaphore; ++index) {
            semid_ds state = {};
            const int id = semctl(index, 0, SEM_STAT, &state);
            if (id >= 0 && users().contains(semctl(id, 0, GETPID))) {
                ++found;
                forSemaphore(id);
            }
        }
        shmid_ds state = {};
        const int lastSegment = shmctl(0, SHM_INFO, &state);
        for (int index = 0; index <= lastSegment; ++index) {
            const int id = shmctl(index, SHM_STAT, &state);
            if (id >= 0 && (users().contains(state.shm_lpid) || users().contains(state.shm_cpid))) {
                ++found;
                forSegment(id);
            }
        }
        return found;
    }
};
