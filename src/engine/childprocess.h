#pragma once

#include <QProcess>

/**
 * A program that works for the controller only: the engine, its command-line tool, the helper that
 * keeps a processor awake.
 *
 * It runs in the application's own directory, with the environment of the controller. Its standard
 * error goes where the controller's goes: unread, it would pile up in the process object.
 *
 * It never outlives the thread that started it, which is the controller but for the tool: the
 * kernel sends it SIGTERM then, also when the controller is killed. One that is still there 5 s
 * after an orderly end of the controller gets SIGKILL: GracePeriod.
 *
 * The destructor of a running QProcess kills and may wait for half a minute. So an object that may
 * still run is never destroyed: discard() it, or leave it behind at the end of the process.
 */
class ChildProcess : public QProcess
{
    Q_OBJECT

public:
    explicit ChildProcess(QObject* parent = nullptr);
    ~ChildProcess() override;

    /// Starts ./@p program, or what PATH has where the name holds no slash, and returns at once.
    void launch(const QString& program, const QStringList& arguments = {});

    /// Ends it at once, by SIGKILL. Waits 100 ms at most: one that is stuck in the kernel ends
    /// when that lets it.
    void endNow();

    /// endNow(), and the object is deleted when the process has ended. No signal of it is of use
    /// any more: disconnect from them first.
    void discard();

protected:
    void setupChildProcess() override;

private:
    qint64 parentPid;
    int handle = -1; ///< of the running process, for GracePeriod
};
