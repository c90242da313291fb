#pragma once

#include <QFile>

/// How much memory this process has come to use at most, since the object was made.
class PeakMemory
{
public:
    PeakMemory()
    {
        QFile forget(QStringLiteral("/proc/self/clear_refs"));
        if (forget.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            forget.write("5"); // the peak so far
        atStart = peakKb();
    }

    qint64 grownMb() const { return (peakKb() - atStart) / 1024; }

private:
    static qint64 peakKb()
    {
        QFile file(QStringLiteral("/proc/self/status"));
        const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        const int at = text.indexOf("VmHWM:") + 6;
        return text.mid(at, text.indexOf("kB", at) - at).trimmed().toLongLong();
    }

    qint64 atStart = 0;
};
