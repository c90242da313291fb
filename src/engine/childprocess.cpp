#include "engine/childprocess.h"

#include "engine/graceperiod.h"

#include <QCoreApplication>

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr int endLimitMs = 100;

} // namespace

ChildProcess::ChildProcess(QObject* parent)
    : QProcess(parent)
    , parentPid(QCoreApplication::applicationPid())
{
    setWorkingDirectory(QCoreApplication::applicationDirPath());
    setProcessChannelMode(QProcess::ForwardedErrorChannel);
    connect(this, &QProcess::stateChanged, this, [this](QProcess::ProcessState now) {
        if (now == QProcess::NotRunning)
            GracePeriod::forget(std::exchange(handle, -1));
    });
}

ChildProcess::~ChildProcess()
{
    GracePeriod::forget(handle);
}

void ChildProcess::launch(const QString& program, const QStringList& arguments)
{
    start(program, arguments, QIODevice::ReadWrite);
    handle = GracePeriod::remember(processId());
}

void ChildProcess::endNow()
{
    kill();
    waitForFinished(endLimitMs);
}

void ChildProcess::discard()
{
    if (state() != QProcess::NotRunning)
        endNow();
    if (state() == QProcess::NotRunning)
        deleteLater();
    else
        connect(this, &QProcess::stateChanged, this, &QObject::deleteLater);
}

// Runs in the child, between fork and exec: only async-signal-safe calls.
void ChildProcess::setupChildProcess()
{
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    // A parent that has died before the call above sends no signal any more.
    if (getppid() != parentPid)
        _exit(EXIT_FAILURE);
}
