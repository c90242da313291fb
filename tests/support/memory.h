#pragma once

#include "support/files.h"

/// What of this process is in memory, in KiB.
inline qint64 residentKiB()
{
    return contentOf(QStringLiteral("/proc/self/statm")).split(' ').value(1).toLongLong() * 4;
}
