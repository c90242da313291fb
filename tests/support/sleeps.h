#pragma once

#include <QMap>
#include <QSet>
#include <QVector>

/**
 * Stands in for WorkerThread::msleep(), the one sleep of all loops, in a test program that
 * vireon_replace_sleep() names: what was asked for is kept, by thread, and lasts a millisecond. So
 * the pace of a loop is counted and not measured.
 *
 * The threads that sleep have numbers, given at their first sleep.
 */
class Sleeps
{
public:
    /// The threads that have slept so far.
    static QSet<int> threads();

    /// The number of the calling thread.
    static int thisThread();

    /// What @p thread has asked for, in ms and in this order; the sleep that goes on is among it.
    static QVector<int> of(int thread);

    /// Returns when @p thread is in a sleep from which it does not wake up until release(). For the
    /// calling thread itself that is its next one.
    static void hold(int thread);
    static void release(int thread);
};
