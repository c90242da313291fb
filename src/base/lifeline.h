#pragma once

#include <atomic>

/**
 * Ties a worker's loop to the object whose slot it is, so that the object can be deleted on its
 * own thread at any moment, without waiting for the loop's sleep or for another process.
 *
 * The object and the loop share it, by std::shared_ptr like all else that both use. The loop
 * touches the object only under a Hold, and gives up when none is granted. The object's destructor
 * cuts the line; it waits for a hold that is taken just then, which is an emission at most.
 *
 * Two things must not be done under a hold, since cut() would wait for ever: to delete the object,
 * as a slot that is connected directly could do, and to wait for the thread that may be deleting
 * it, as a receiver connected with Qt::BlockingQueuedConnection does.
 */
class Lifeline
{
public:
    /// While it lives, and is true, the object cannot be destroyed.
    class Hold
    {
    public:
        explicit Hold(Lifeline& lifeline);
        ~Hold();
        Hold(const Hold&) = delete;
        Hold& operator=(const Hold&) = delete;
        explicit operator bool() const { return granted; }

    private:
        Lifeline& line;
        bool granted = false;
    };

    /// To be called by the slot once it has its own pointer to the line. Until then the object
    /// counts as held: make the line right before the slot is sent to its thread. Where
    /// WorkerThread::doWork() tells that the slot will not run, its caller calls this instead.
    void begin();

    /// To be called first in the object's destructor. No hold is granted any more.
    void cut();

private:
    enum State { Free, Held, Cut };

    std::atomic<State> state {Held};
};
