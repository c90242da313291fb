#pragma once

#include <QtGlobal>

/**
 * The time that child processes have for their devices once the controller ends.
 *
 * With the controller's end each of them gets SIGTERM, from the kernel. One that is still there
 * 5 s later is deaf, and gets SIGKILL. The controller waits for none of it: another process does,
 * which holds nothing of the controller's but the handles of the children, and goes with the last
 * of them.
 *
 * Handles are the kernel's (pidfd), so that no other process of the same number is ever meant. Up
 * to 64 children are known at a time; one more, and all of them on a kernel before Linux 5.3, get
 * their SIGTERM alone. remember() and forget() may be called on any thread.
 */
class GracePeriod
{
public:
    /// Takes a running child in; the handle to forget it by, or -1 where that cannot be.
    static int remember(qint64 pid);

    /// To be called when the child has ended; without effect for -1.
    static void forget(int handle);

    /// Lets the time begin: to be called right before the process ends, and only _exit() after it.
    /// While a child is left, all other threads of the process are ended here: the kernel sends
    /// SIGTERM with the end of the thread that started the child, and once more for each thread
    /// that it hands the child on to.
    static void begin();
};
