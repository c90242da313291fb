#pragma once

#include <QObject>
#include <QProcess>

#include <atomic>

class ChildProcess;

/**
 * Owns the engine process and runs the engine's commands.
 *
 * The engine "./vireon-main" is started in the application's directory and started again whenever
 * it exits, whatever its exit code. 36 restarts are allowed since the last command that succeeded;
 * the next exit ends the supervision with the status StatusEngineGaveUp. A hung engine is not
 * detected, and an engine that cannot be started at all is not tried again.
 *
 * A command runs "./vireon-sdk LETTER" on a thread of its own, 30 s at most, once the engine is
 * ready. The tool's exit code is not looked at: finishing counts as success. Commands are neither
 * queued nor serialised. A command that was running when the engine exited is sent again, three
 * times at most, unless a status report came meanwhile: resetLastAction().
 *
 * Lives on the GUI thread; the members that commands write on their threads are atomics. Two
 * commands at a time overwrite each other's bookkeeping: the later one wins, which is accepted.
 *
 * QML knows it as "sdk".
 */
class SdkHelper : public QObject
{
    Q_OBJECT

public:
    /// Command codes; the letter of each is in the table of the source file. Codes without one
    /// run nothing.
    enum Action : int {
        AutoCalibration = 0,
        ManualCalibration = 1,
        SensorViewer = 2,
        TouchCalibration = 4,
        CommandS = 9, ///< stylus input
        CommandF = 10, ///< finger input
        ResetCalibration = 11,
        PauseResumeCalibration = 12,
        SinglePointer = 14,
        MultiPointer = 15,
        CalibrateRayline = 16,
        OffsetCorrection = 17,
        QuitEngine = 18,
        LoadCcf = 19,
    };
    Q_ENUM(Action)

    /// The supervisor; the first call makes it with @p parent, later ones ignore the argument.
    static SdkHelper* instance(QObject* parent = nullptr);

    /// Kills an engine that still runs. The program leaves it alive: the engine has a grace period.
    ~SdkHelper() override;

    /// No command is pending any more: an exit of the engine re-sends nothing.
    void resetLastAction();

signals:
    /// The supervisor's own verdict: StatusEngineGaveUp.
    void statusChanged(int id);

    /// After stopVireon(): no engine runs any more. From the event loop when one has to end first.
    void engineStopped();

public slots:
    /// Starts the engine and returns at once; one that still runs is killed first.
    void startVireon();

    /// Ends the engine without a restart: SIGTERM, and SIGKILL right after it. engineStopped()
    /// tells when it has ended.
    void stopVireon();

    /// Runs a command on a new thread and returns at once. It waits, without limit, while the
    /// status is StatusEngineRestarting, StatusNotReady or StatusUnknown.
    void trigger(Action action);
    void trigger(int action);

private slots:
    void onFinished(int exitCode, QProcess::ExitStatus status);
    void processTrigger(int action);
    void onReadyRead();

private:
    explicit SdkHelper(QObject* parent);

    /// Lets go of the process object first, so that its end is not taken for a crash.
    void discardProcess();
    void tellIfStopped();
    void resendLastAction();
    bool runTool(const QString& letter);
    void onToolSucceeded(const QString& letter);

    static SdkHelper* _instance;

    std::atomic<bool> commandIdle {false};
    ChildProcess* process = nullptr;
    std::atomic<int> lastAction {-1}; ///< the command that was started but has not succeeded; -1
    std::atomic<int> retryCount {0}; ///< re-sends of lastAction
    std::atomic<bool> recoveryFlag {false};
    std::atomic<qint64> recoveryMark {-1};
    std::atomic<int> restartCount {0}; ///< restarts since the last command that succeeded
};
