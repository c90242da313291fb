#pragma once

#include "engine/enginestatus.h"

#include <QObject>

#include <atomic>

/**
 * Follows the engine's status file and keeps the last status code and firmware indicator.
 *
 * A reader on a worker thread looks at the file (GS::penSettingsPath) every 300 ms; StatusReport
 * tells its format. A line that is not a number changes nothing, and neither does a file that
 * cannot be opened, which is logged.
 *
 * The controller's own verdicts go through injectStatus() and resetWithProblem(). Both replace the
 * reader by a new one and delete the file between the two, so that only what the engine writes
 * afterwards is seen; there is never more than one reader. Where the system grants no thread for
 * a new one, the file is not read until the next of these calls.
 */
class StatusListener : public QObject
{
    Q_OBJECT

public:
    /// The listener; the first call makes it, deletes a status file that an earlier run has left
    /// and starts the reader.
    static StatusListener* instance();

    /// Tells the reader to end, without waiting for it.
    ~StatusListener() override;

    /// The last status code; any thread.
    int currentStatus() const { return status; }

    /// Replaces the status by @p newStatus and announces it. Blocks until the reader has paused,
    /// that is for 300 ms and one reading of the file at most. GUI thread only.
    void injectStatus(int newStatus);

    /// Marks an exit of the engine: announces StatusEngineRestarting, unless the status is
    /// StatusNotReady, which stays. Blocks like injectStatus(). GUI thread only.
    void resetWithProblem();

private:
    std::atomic<bool> keepReading {true};
    std::atomic<bool> readerStopped {false};
    std::atomic<int> status {StatusUnknown};

public:
    /// The last firmware indicator, 999 until the engine has written one; below 2 means an old
    /// camera firmware. It outlives restarts of the engine. Any thread.
    std::atomic<int> firmware {999};

signals:
    /// The status, whenever it or the firmware has changed. The reader's reports come from its
    /// thread and reach the GUI thread queued; the controller's own are delivered at once.
    void statusChanged(int id);

private slots:
    void readStatusFile();

private:
    StatusListener();

    void readReport();
    void pauseReader();
    void startReader();

    static StatusListener* _instance;
};
