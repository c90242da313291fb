#include "engine/childprocess.h"

#include <QCoreApplication>

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

ChildProcess::ChildProcess(QObject* parent)
    : QProcess(parent)
    , parentPid(QCoreApplication::applicationPid())
{
    setWorkingDirectory(QCoreApplication::applicationDirPath());
    setProcessChannelMode(QProcess::ForwardedErrorChannel);
}

// Runs in the child, between fork and exec: only async-signal-safe calls.
void ChildProcess::setupChildProcess()
{
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    // A parent that has died before the call above sends no signal any more.
    if (getppid() != parentPid)
        _exit(EXIT_FAILURE);
}
