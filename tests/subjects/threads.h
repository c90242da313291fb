#pragma once

#include <QDir>

/// The number of threads of this process: it tells when a worker has gone, all its objects with it.
inline int threadCount()
{
    return QDir(QStringLiteral("/proc/self/task"))
        .entryList(QDir::Dirs | QDir::NoDotAndDotDot)
        .size();
}

/// Qt orders the deletion of a receiver and of its sender on two threads by locks that
/// ThreadSanitizer cannot see in a library that is not instrumented.
#ifdef __SANITIZE_THREAD__
constexpr bool canDeleteBesideWorker = false;
#else
constexpr bool canDeleteBesideWorker = true;
#endif
