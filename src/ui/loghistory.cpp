#include "ui/loghistory.h"

#include <algorithm>

void LogHistory::append(const QString& text)
{
    const QStringList added = text.split(QLatin1Char('\n'));
    const std::lock_guard locker(mutex);
    for (const QString& line : added) {
        kept.push_back(line);
        if (kept.size() > capacity) {
            kept.pop_front();
            ++first;
        }
    }
}

qint64 LogHistory::begin() const
{
    const std::lock_guard locker(mutex);
    return first;
}

qint64 LogHistory::end() const
{
    const std::lock_guard locker(mutex);
    return first + static_cast<qint64>(kept.size());
}

QStringList LogHistory::lines(qint64 number, int count) const
{
    const std::lock_guard locker(mutex);
    const auto size = static_cast<qint64>(kept.size());
    const qint64 from = std::clamp<qint64>(number - first, 0, size);
    const qint64 to = std::clamp<qint64>(number - first + count, from, size);
    QStringList found;
    for (qint64 i = from; i < to; ++i)
        found.append(kept[static_cast<std::size_t>(i)]);
    return found;
}

qint64 LogHistory::find(const QString& text, qint64 from) const
{
    const std::lock_guard locker(mutex);
    const auto size = static_cast<qint64>(kept.size());
    const qint64 start = std::max<qint64>(from - first, 0);
    for (qint64 step = 0; step < size; ++step) {
        const qint64 i = (start + step) % size;
        if (kept[static_cast<std::size_t>(i)].contains(text, Qt::CaseInsensitive))
            return first + i;
    }
    return -1;
}

QString LogHistory::text() const
{
    const std::lock_guard locker(mutex);
    QString all;
    for (const QString& line : kept)
        all += line + QLatin1Char('\n');
    return all;
}
