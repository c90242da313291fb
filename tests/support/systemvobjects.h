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
    /// The processes whose objects removeAll() looks for. To be asked first before any subject is
    /// started: what is there then is others', whose processes' ids may come again.
    static QSet<pid_t>& users()
    {
        static QSet<pid_t> pids {getpid()};
        strangers();
        return pids;
    }

    /// How many semaphores and segments there are that one of users() was the last to use.
    static int count()
    {
        return forEach([](int) {}, [](int) {});
    }

    /// Removes them. The ids of its processes are forgotten: others will get them.
    static void removeAll()
    {
        forEach([](int semaphore) { semctl(semaphore, 0, IPC_RMID); },
                [](int segment) { shmctl(segment, IPC_RMID, nullptr); });
        users() = {getpid()};
    }

private:
    struct Ids
    {
        QSet<int> semaphores;
        QSet<int> segments;
    };

    static const Ids& strangers()
    {
        static const Ids ids = all();
        return ids;
    }

    static Ids all()
    {
        Ids ids;
        seminfo highest = {};
        const int lastSemaphore = semctl(0, 0, SEM_INFO, &highest);
        for (int index = 0; index <= lastSemaphore; ++index) {
            semid_ds state = {};
            ids.semaphores.insert(semctl(index, 0, SEM_STAT, &state));
        }
        shmid_ds state = {};
        const int lastSegment = shmctl(0, SHM_INFO, &state);
        for (int index = 0; index <= lastSegment; ++index)
            ids.segments.insert(shmctl(index, SHM_STAT, &state));
        return ids;
    }

    template <class ForSemaphore, class ForSegment>
    static int forEach(ForSemaphore forSemaphore, ForSegment forSegment)
    {
        int found = 0;
        const Ids ids = all();
        for (const int id : ids.semaphores - strangers().semaphores) {
            if (id >= 0 && users().contains(semctl(id, 0, GETPID))) {
                ++found;
                forSemaphore(id);
            }
        }
        for (const int id : ids.segments - strangers().segments) {
            shmid_ds state = {};
            if (id >= 0 && shmctl(id, IPC_STAT, &state) == 0
                && (users().contains(state.shm_lpid) || users().contains(state.shm_cpid))) {
                ++found;
                forSegment(id);
            }
        }
        return found;
    }
};
