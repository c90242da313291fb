#include "app/logfile.h"

#include "base/regularfile.h"

#include <cstdio>

LogFile::LogFile(const QString& itsPath, qint64 itsLimit, qint64 itsKept)
    : path(itsPath)
    , limit(itsLimit)
    , kept(itsKept)
{
    if (!open())
        giveUp(QStringLiteral("it cannot be opened"));
}

void LogFile::write(const QString& line)
{
    const QByteArray bytes = line.toUtf8() + '\n';
    const std::lock_guard locker(mutex);
    if (!file.isOpen())
        return;
    if (size > 0 && size + bytes.size() > limit && !beginAnew()) {
        giveUp(QStringLiteral("a new one cannot be begun"));
        return;
    }
    if (file.write(bytes) != bytes.size())
        giveUp(file.errorString());
    size += bytes.size();
}

bool LogFile::open()
{
    if (!openRegularFile(file, path, QIODevice::WriteOnly | QIODevice::Unbuffered))
        return false;
    size = file.size();
    return file.seek(size);
}

bool LogFile::beginAnew()
{
    file.close();
    for (qint64 number = kept; number > 0; --number) {
        const QString from = number == 1 ? path : QStringLiteral("%1.%2").arg(path).arg(number - 1);
        const QString to = QStringLiteral("%1.%2").arg(path).arg(number);
        std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData());
    }
    if (kept == 0)
        QFile::remove(path);
    return open() && size == 0;
}

void LogFile::giveUp(const QString& reason)
{
    file.close();
    // Not by the log, which would come back here.
    std::fprintf(stderr, "log file %s: %s; nothing more is written\n", path.toUtf8().constData(),
                 reason.toUtf8().constData());
}
