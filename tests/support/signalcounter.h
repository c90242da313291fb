#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QVector>

/// Counts a signal that a worker thread emits, on the thread of the test. (A QSignalSpy counts on
/// the thread of the emission.)
class SignalCounter : public QObject
{
public:
    template <typename Sender> SignalCounter(Sender* sender, void (Sender::*signal)())
    {
        timer.start();
        connect(sender, signal, this, [this] { times << timer.elapsed(); });
    }

    int count() const { return times.size(); }

    /// When the signal number @p index came, in ms since the construction.
    qint64 timeOf(int index) const { return times.at(index); }

private:
    QElapsedTimer timer;
    QVector<qint64> times;
};
