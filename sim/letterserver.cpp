#include "letterserver.h"

#include "datadirectory.h"

#include <QFile>
#include <QTimer>

#include <cstdio>

#include <sys/stat.h>

namespace {

constexpr qint64 longestLetterLine = 64; // bytes; what is longer is no letter

quint64 inodeOf(const QString& path)
{
    struct stat info
    {
    };
    return ::lstat(QFile::encodeName(path).constData(), &info) == 0 ? info.st_ino : 0;
}

void sendAnswer(QLocalSocket* socket, const QByteArray& line)
{
    socket->write(line);
    // The engine may end in the next moment.
    socket->flush();
}

} // namespace

LetterServer::LetterServer(const DataDirectory& dataDirectory)
    : directory(dataDirectory)
{
    connect(&server, &QLocalServer::newConnection, this, &LetterServer::onConnection);
}

bool LetterServer::listen()
{
    QFile::remove(directory.socketFile());
    if (server.listen(directory.socketAddress())) {
        socketInode = inodeOf(directory.socketFile());
        return true;
    }
    std::fprintf(stderr, "vireon-main: cannot listen at %s: %s\n",
                 qUtf8Printable(directory.socketFile()), qUtf8Printable(server.errorString()));
    return false;
}

void LetterServer::answer(QLocalSocket* socket, const Answer& answer)
{
    if (answer.kind == Answer::Never)
        return;
    const QByteArray line = answer.kind == Answer::Hang
        ? QByteArrayLiteral("hang\n")
        : "exit " + QByteArray::number(answer.exitCode) + '\n';
    if (answer.delayMs == 0)
        sendAnswer(socket, line);
    else
        QTimer::singleShot(answer.delayMs, Qt::PreciseTimer, socket,
                           [socket, line] { sendAnswer(socket, line); });
}

void LetterServer::close()
{
    if (socketInode != 0 && inodeOf(directory.socketFile()) == socketInode)
        QFile::remove(directory.socketFile());
}

void LetterServer::onConnection()
{
    while (QLocalSocket* tool = server.nextPendingConnection()) {
        connect(tool, &QLocalSocket::disconnected, tool, &QObject::deleteLater);
        connect(tool, &QLocalSocket::readyRead, this, [this, tool] { onData(tool); });
        onData(tool);
    }
}

void LetterServer::onData(QLocalSocket* tool)
{
    while (tool->canReadLine()) {
        QByteArray letter = tool->readLine();
        letter.chop(1);
        if (!letter.isEmpty())
            emit letterCame(letter, tool);
    }
    if (tool->bytesAvailable() > longestLetterLine)
        tool->abort();
}
