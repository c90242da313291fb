#pragma once

#include <QObject>

#include <atomic>
#include <memory>

class Lifeline;
class RunGuard;

/**
 * Notices, from another program, that the guarded application has gone away.
 *
 * A worker thread asks a guard with the application's key (GS::appName) once a second and ends
 * once it has told. There is no time limit. Neither making nor deleting it waits for anything.
 */
class ExitListener : public QObject
{
    Q_OBJECT

public:
    /// The listener. The first call makes it, with @p parent, and starts the poll.
    static ExitListener* instance(QObject* parent = nullptr);

    /// Ends the poll without a signal. Does not wait for a question that is under way.
    ~ExitListener() override;

    /// Whether the application runs now; any thread. Takes 0.1 s at most.
    bool isAnotherRunning();

signals:
    /// Once, from the listener's thread, when the application no longer runs: within about a
    /// second of its end.
    void hasExited();

private slots:
    void listenToExit();

private:
    explicit ExitListener(QObject* parent);

    static ExitListener* _instance;

    std::atomic<bool> keepListening {true};
    RunGuard* const runGuard; ///< never deleted
    const std::shared_ptr<Lifeline> lifeline;
};
