#include "agenda.h"

#include <algorithm>

Agenda::Agenda(const QElapsedTimer& startClock, std::function<void(const Action&)> performer)
    : clock(startClock)
    , perform(std::move(performer))
{
    timer.setSingleShot(true);
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, &timer, [this] { performDue(); });
}

void Agenda::add(int atMs, const Action& action, Origin origin)
{
    const auto place =
        std::upper_bound(entries.begin(), entries.end(), atMs,
                         [](int time, const Entry& entry) { return time < entry.atMs; });
    entries.insert(place, Entry {atMs, action, origin});
    timer.start(0);
}

void Agenda::dropWritesOfLetters()
{
    const auto isDropped = [](const Entry& entry) {
        return entry.origin == Letter && entry.action.touchesStatusFile();
    };
    entries.erase(std::remove_if(entries.begin(), entries.end(), isDropped), entries.end());
}

void Agenda::performDue()
{
    while (!entries.isEmpty() && entries.first().atMs <= nowMs())
        perform(entries.takeFirst().action);
    if (!entries.isEmpty())
        timer.start(std::max(1, entries.first().atMs - nowMs()));
}
