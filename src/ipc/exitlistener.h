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
 * once it has told. There is no time limit.
 */
class ExitListener : public QObject
{
    Q_OBJECT

public:
    /// The listener. The first call makes it, with @p parent, and starts the poll.
    static ExitListener* instance(QObject* parent = nullptr);

    /// Ends the poll without a signal. A question that is under way keeps the guard alive.
    ~ExitListener() override;

    /// Whether the application runs now; any thread. Takes 2.5 s at most, then answers yes.
    bool isAnotherRunning();

signals:
    /// Once, from the listener's thread, when the application no longer runs: within about a
    /// second of its end, a second more after a crash.
    void hasExited();

private slots:
    void listenToExit();

private:
    explicit ExitListener(QObject* parent);

    static ExitListener* _instance;

    std::atomic<bool> keepListening {true};
    const std::shared_ptr<RunGuard> runGuard;
    const std::shared_ptr<Lifeline> lifeline;
};
