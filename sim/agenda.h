#pragma once

#include "action.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QVector>

#include <functional>

/**
 * What the engine still has to do, by time; of equal times, the first entered comes first.
 *
 * Times are ms of the clock that is given, whose start is the engine's.
 */
class Agenda
{
public:
    enum Origin { Timeline, Letter };

    Agenda(const QElapsedTimer& clock, std::function<void(const Action&)> perform);

    /// Enters @p action; it is performed by the event loop, or by the next performDue().
    void add(int atMs, const Action& action, Origin origin);

    /// Drops the writes of the status file that earlier letters still had in store.
    void dropWritesOfLetters();

    /// Performs all that is due and sets the timer for the next.
    void performDue();

    int nowMs() const { return static_cast<int>(clock.elapsed()); }

private:
    struct Entry
    {
        int atMs;
        Action action;
        Origin origin;
    };

    const QElapsedTimer& clock;
    std::function<void(const Action&)> perform;
    QVector<Entry> entries;
    QTimer timer;
};
