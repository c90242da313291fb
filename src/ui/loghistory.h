#pragma once

#include <QString>
#include <QStringList>

#include <deque>
#include <mutex>

/**
 * The last 10,000 lines of the log. Each has a number, from 0 on since the start, by which it is
 * known as long as it is kept. Any thread.
 */
class LogHistory
{
public:
    static constexpr int capacity = 10000;

    /// Adds the lines of @p text.
    void append(const QString& text);

    qint64 begin() const; ///< the number of the first line that is kept
    qint64 end() const; ///< the number that the next one gets

    /// Lines from number @p first on, as many as are there of @p count.
    QStringList lines(qint64 first, int count) const;

    /// The number of the first line from @p from on that holds @p text, in any letter case; after
    /// the last one it goes on with the first. -1 when there is none.
    qint64 find(const QString& text, qint64 from) const;

    /// All of them, each with a line break.
    QString text() const;

private:
    mutable std::mutex mutex;
    std::deque<QString> kept;
    qint64 first = 0; ///< the number of the first one kept
};
