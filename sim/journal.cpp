#include "journal.h"

#include <QFile>

#include <ctime>

#include <fcntl.h>
#include <unistd.h>

namespace {

QByteArray nowMs()
{
    timespec now {};
    clock_gettime(CLOCK_REALTIME, &now);
    return QByteArray::number(qint64(now.tv_sec) * 1000 + now.tv_nsec / 1000000);
}

} // namespace

Journal::Journal(const char* name, const QString& path)
    : who(name)
    , isWanted(!path.isEmpty())
{
    if (isWanted)
        file = ::open(QFile::encodeName(path).constData(),
                      O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0644);
}

Journal::~Journal()
{
    if (file >= 0)
        ::close(file);
}

QString Journal::pathFromEnvironment()
{
    return QFile::decodeName(qgetenv("VIREON_SIM_JOURNAL"));
}

bool Journal::isUsable() const
{
    return !isWanted || file >= 0;
}

void Journal::add(const char* event, const QVector<JournalField>& fields)
{
    if (file < 0)
        return;
    QByteArray line = nowMs() + ' ' + who + '[' + QByteArray::number(::getpid()) + "] " + event;
    for (const JournalField& field : fields)
        line += QByteArray(" ") + field.key + '=' + field.value;
    line += '\n';
    // A full disk is no reason to change what the engine does.
    const ssize_t written = ::write(file, line.constData(), static_cast<size_t>(line.size()));
    Q_UNUSED(written)
}

QByteArray Journal::encoded(const QByteArray& value)
{
    return value.toPercentEncoding("/:+");
}

QByteArray Journal::encodedList(const QVector<QByteArray>& values)
{
    QByteArray result;
    for (const QByteArray& value : values)
        result += (result.isEmpty() ? "" : ",") + encoded(value);
    return result;
}
