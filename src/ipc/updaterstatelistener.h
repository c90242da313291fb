#pragma once

#include <QObject>
#include <QString>

#include <atomic>
#include <memory>

class Lifeline;
class QSharedMemory;

/**
 * Follows the updater program through the shared-memory segment that it makes.
 *
 * The first four bytes of the segment are the updater's state, a signed number in the machine's
 * byte order: 1 while an update is in progress, 2 while it is busy otherwise, -1 when it has quit
 * or does not need us to quit. A worker thread reads it once a second under the segment's lock. It
 * attaches and detaches each time, and so never keeps the segment alive. It ends with the state
 * -1, or when a segment that was seen is gone; there is no time limit. An updater that was stopped
 * while it holds the lock makes the worker wait, and nobody else.
 */
class UpdaterStateListener : public QObject
{
    Q_OBJECT

public:
    /// Starts to follow the updater whose segment is called @p key (GS::updaterName).
    explicit UpdaterStateListener(QString key);

    /// Does not wait for the worker, which notices after its current round; until then it keeps
    /// the segment's object alive.
    ~UpdaterStateListener() override;

signals:
    /// An update is in progress; from the listener's thread, each second.
    void updateInProcess();

private slots:
    void listenToUpdateProcess();

private:
    void actOn(int updaterState);

    const std::shared_ptr<QSharedMemory> sharedMemory;
    std::atomic<bool> keepListening {false};
    const std::shared_ptr<Lifeline> lifeline;
};
