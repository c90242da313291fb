#pragma once

#include <QProcess>

/**
 * A program that works for the controller only: the engine, its command-line tool, the helper that
 * keeps a processor awake.
 *
 * It runs in the application's own directory, with the environment of the controller. It never
 * outlives the thread that started it, which is the controller but for the tool: the kernel sends
 * it SIGTERM then, also when the controller is killed. Its standard error goes where the
 * controller's goes: unread, it would pile up in the process object.
 */
class ChildProcess : public QProcess
{
    Q_OBJECT

public:
    explicit ChildProcess(QObject* parent = nullptr);

protected:
    void setupChildProcess() override;

private:
    qint64 parentPid;
};
