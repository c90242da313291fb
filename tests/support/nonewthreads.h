#pragma once

#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

/// While it lives, the calling thread cannot start another one: the system says EAGAIN, as it does
/// on a machine that has run out of them. The limit does not bind root, so the thread is nobody's.
class NoNewThreads
{
public:
    NoNewThreads()
    {
        getrlimit(RLIMIT_NPROC, &usual);
        const rlimit none {0, usual.rlim_max};
        setrlimit(RLIMIT_NPROC, &none);
        // The call of the kernel's, which binds one thread; the C library's binds them all.
        if (isRoot)
            syscall(SYS_setresuid, nobody, nobody, 0);
    }

    ~NoNewThreads()
    {
        if (isRoot) {
            syscall(SYS_setresuid, 0, 0, 0);
            prctl(PR_SET_DUMPABLE, 1); // lost with the change of user
        }
        setrlimit(RLIMIT_NPROC, &usual);
    }

    NoNewThreads(const NoNewThreads&) = delete;
    NoNewThreads& operator=(const NoNewThreads&) = delete;

private:
    static constexpr uid_t nobody = 65534;

    const bool isRoot = getuid() == 0;
    rlimit usual {};
};
