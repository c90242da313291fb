#include "ipc/mailboxsender.h"

#include "base/filelock.h"
#include "base/regularfile.h"

#include <QCoreApplication>
#include <QThread>

#include <sys/stat.h>

namespace {

constexpr unsigned long pollIntervalMs = 2;
constexpr unsigned long yieldMs = 10; // twice the interval at which a FileLock is looked for

/// Whether @p condition has become true in time.
template <class Condition> bool waitFor(const QDeadlineTimer& deadline, Condition condition)
{
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QThread::msleep(pollIntervalMs);
    }
    return true;
}

} // namespace

MailboxSender::MailboxSender(const QString& itsCommandPath, const QString& itsReplyPath)
    : commandPath(itsCommandPath)
    , replyPath(itsReplyPath)
{
}

bool MailboxSender::isOpen() const
{
    const QString lockPath = commandPath + QLatin1String(".open");
    // Shared, so that others who look at the same moment are not taken for the controller.
    return QFile::exists(lockPath) && FileLock(lockPath, 0, FileLock::Kind::Shared).isTaken();
}

MailboxSender::Result MailboxSender::send(char character, int limitMs)
{
    const Result result = sendInTurn(character, limitMs);
    // Whoever waits looks for the turn now and then: without this, the next call would take it.
    QThread::msleep(yieldMs);
    return result;
}

MailboxSender::Result MailboxSender::sendInTurn(char character, int limitMs)
{
    const QDeadlineTimer deadline(limitMs);
    const FileLock turn(commandPath + QLatin1String(".turn"), limitMs);
    if (!turn.isHeld() || !place(character, deadline))
        return Result::NotTaken;
    Result result = Result::Done;
    if (!waitFor(deadline, [this] { return isTaken(); })) {
        takeBack();
        result = Result::NotTaken;
    } else if (!waitFor(deadline, [this] { return hasReply(); })) {
        result = Result::NoReply;
    }
    command.close();
    return result;
}

bool MailboxSender::place(char character, const QDeadlineTimer& deadline)
{
    QFile::remove(replyPath);
    // Complete before it gets its name: a listener never sees half of it.
    const QString unfinished =
        commandPath + QStringLiteral(".%1").arg(QCoreApplication::applicationPid());
    if (openRegularFile(command, unfinished, QIODevice::WriteOnly | QIODevice::Truncate)
        && command.putChar(character) && command.flush()
        && waitFor(deadline, [&] { return renameUnlessTaken(unfinished, commandPath); }))
        return true;
    command.close();
    QFile::remove(unfinished);
    return false;
}

bool MailboxSender::isTaken() const
{
    struct stat now = {};
    return fstat(command.handle(), &now) == 0 && now.st_nlink == 0;
}

bool MailboxSender::hasReply() const
{
    QFile reply;
    return openRegularFile(reply, replyPath, QIODevice::ReadOnly) && reply.read(1) == "x";
}

void MailboxSender::takeBack()
{
    struct stat ours = {};
    struct stat there = {};
    if (fstat(command.handle(), &ours) == 0
        && stat(QFile::encodeName(commandPath).constData(), &there) == 0
        && ours.st_ino == there.st_ino && ours.st_dev == there.st_dev)
        QFile::remove(commandPath);
}
