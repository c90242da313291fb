#include "base/attachedsegment.h"

#include <sys/shm.h>
#include <sys/stat.h>

std::vector<AttachedSegment> AttachedSegment::all()
{
    std::vector<AttachedSegment> found;
    shmid_ds state = {};
    const int highest = shmctl(0, SHM_INFO, &state);
    for (int index = 0; index <= highest; ++index) {
        const int id = shmctl(index, SHM_STAT_ANY, &state);
        if (id < 0 || state.shm_nattch == 0)
            continue;
        found.push_back({id, state.shm_perm.__key, state.shm_segsz, state.shm_perm.cuid,
                         state.shm_cpid, (state.shm_perm.mode & S_IXUSR) != 0});
    }
    return found;
}

void AttachedSegment::flag(int id)
{
    shmid_ds state = {};
    if (shmctl(id, IPC_STAT, &state) != 0)
        return;
    state.shm_perm.mode |= S_IXUSR;
    shmctl(id, IPC_SET, &state);
}
