#include "startcount.h"

#include <QByteArray>
#include <QFile>
#include <QList>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace {

/// The parent's id and start time: two processes never share both.
QByteArray parentIdentity()
{
    QByteArray id = QByteArray::number(::getppid());
    QFile file(QStringLiteral("/proc/%1/stat").arg(::getppid()));
    if (!file.open(QIODevice::ReadOnly))
        return id;
    // The program's name, in parentheses, may hold blanks; the start time is the 20th field on.
    const QByteArray stat = file.readAll();
    const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
    return fields.size() > 19 ? id + ':' + fields.at(19) : id;
}

} // namespace

QString StartCount::fileFor(const QString& journalPath, const QString& dataDirectory)
{
    if (!journalPath.isEmpty())
        return journalPath + QStringLiteral(".starts");
    return dataDirectory + QStringLiteral("/engine.starts");
}

int StartCount::next(const QString& path)
{
    const int file = ::open(QFile::encodeName(path).constData(),
                            O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0644);
    if (file < 0)
        return 1;
    ::flock(file, LOCK_EX);
    char buffer[128] = {};
    const ssize_t size = ::pread(file, buffer, sizeof buffer - 1, 0);
    const QList<QByteArray> words =
        QByteArray(buffer, size > 0 ? static_cast<int>(size) : 0).trimmed().split(' ');
    const QByteArray parent = parentIdentity();
    const int count = words.size() == 2 && words.at(1) == parent ? words.at(0).toInt() + 1 : 1;
    const QByteArray text = QByteArray::number(count) + ' ' + parent + '\n';
    const bool isKept = ::ftruncate(file, 0) == 0
        && ::pwrite(file, text.constData(), static_cast<size_t>(text.size()), 0) == text.size();
    ::close(file);
    return isKept ? count : 1;
}
