#pragma once

#include <QObject>

/**
 * Runs one slot of an object once, on a thread of its own, and cleans the thread up afterwards.
 *
 * Every blocking loop of the program (status file, commands, display, mailbox, watchers) uses it.
 * The receiver stays on its own thread; only the slot runs on the new one, through a direct
 * connection. Nothing is pooled: one call, one thread, and two calls run side by side. What each
 * may touch is told in docs/architecture.md.
 *
 * The thread's end is queued to the thread that called doWork(): without an event loop there, the
 * thread object is never deleted.
 */
class WorkerThread : public QObject
{
    Q_OBJECT

public:
    /// Runs @p member of @p receiver, a SLOT() signature that takes one int or nothing, with
    /// @p arg. Returns at once: whether the slot will run. It will not when the signature does not
    /// exist: Qt warns, and the thread starts and ends without doing anything. Nor will it when the
    /// system grants no thread (too many of them, no memory): Qt tells, and nothing is left of the
    /// call. A command that was to run is lost then, and a watcher watches nothing.
    static bool doWork(QObject* receiver, const char* member, int arg);

    /// Sleeps the calling thread for @p ms milliseconds, or until stopAll() is called.
    static void msleep(unsigned long ms);

    /// Tells every running and coming slot to return: msleep() no longer sleeps, and the loops
    /// see isStopping(). It cannot be undone: for the end of the process.
    static void stopAll();

    /// Whether stopAll() was called. Every loop tests it beside its own stop flag.
    static bool isStopping();

    /// Waits at most @p budgetMs milliseconds for the running slots; true when none is left.
    static bool waitForAll(int budgetMs);

signals:
    void startingToWork(int arg);
    void finished();

protected slots:
    void run();

private:
    explicit WorkerThread(int workArg);

    int arg;
};
