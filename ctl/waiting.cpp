#include "ctl/waiting.h"

#include "base/workerthread.h"
#include "ctl/controllerstate.h"
#include "ipc/exitlistener.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QThread>
#include <QTime>
#include <QTimer>

#include <cstdio>
#include <optional>

namespace {

constexpr unsigned long pollIntervalMs = 100;
constexpr int steadyMs = 1000;

void print(const ControllerState& state, bool json)
{
    const QByteArray time = QTime::currentTime().toString(Qt::TextDate).toUtf8();
    const QByteArray line = json ? state.toJson() : time + ' ' + state.text().toUtf8();
    std::puts(line.constData());
    std::fflush(stdout);
}

} // namespace

ExitCode waitForState(ControllerProbe& probe, bool calibrated, int limitMs)
{
    const QDeadlineTimer deadline(limitMs);
    QElapsedTimer steady;
    for (;;) {
        const ControllerState state = probe.look();
        if (!(calibrated ? state.isCalibrated() : state.isReady()))
            steady.invalidate();
        else if (!steady.isValid())
            steady.start();
        else if (steady.elapsed() >= steadyMs)
            return ExitDone;
        if (deadline.hasExpired())
            return state.running ? ExitNotInTime : state.exitCode();
        QThread::msleep(pollIntervalMs);
    }
}

ExitCode waitUntilGone(ControllerProbe& probe, int limitMs)
{
    const ControllerState state = probe.look();
    if (!state.running && !state.isAnotherUsers)
        return ExitDone;
    QObject::connect(ExitListener::instance(), &ExitListener::hasExited,
                     QCoreApplication::instance(), [] { QCoreApplication::exit(ExitDone); });
    QTimer::singleShot(limitMs, [] { QCoreApplication::exit(ExitNotInTime); });
    const int code = QCoreApplication::exec();
    WorkerThread::stopAll();
    WorkerThread::waitForAll(steadyMs);
    return static_cast<ExitCode>(code);
}

ExitCode follow(ControllerProbe& probe, bool json)
{
    std::optional<ControllerState> last;
    do {
        const ControllerState now = probe.look();
        if (!(last == now))
            print(now, json);
        last = now;
        if (last->running)
            QThread::msleep(pollIntervalMs);
    } while (last->running);
    return last->exitCode();
}
