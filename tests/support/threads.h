#pragma once

#include "base/workerthread.h"

#include <QDir>

/// The number of threads of this process: it tells when a worker has gone, all its objects with it.
inline int threadCount()
{
    return QDir(QStringLiteral("/proc/self/task"))
        .entryList(QDir::Dirs | QDir::NoDotAndDotDot)
        .size();
}

/// Whether no worker's slot runs any more.
inline bool workersHaveEnded()
{
    return WorkerThread::waitForAll(0);
}
