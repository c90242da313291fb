#pragma once

#include "scenario.h"

#include <QLocalServer>
#include <QLocalSocket>
#include <QObject>

class DataDirectory;

/**
 * Takes letters from the SDK tool and answers them.
 *
 * One line for each letter, one line for each answer: "exit N" or "hang". A socket file that an
 * earlier engine left is replaced; close() removes the own one, unless a newer engine has
 * replaced it.
 */
class LetterServer : public QObject
{
    Q_OBJECT

public:
    explicit LetterServer(const DataDirectory& directory);

    /// False, with a message on standard error, when the socket cannot be made.
    bool listen();

    /// Answers the tool at @p socket, which may be gone before its answer is due.
    static void answer(QLocalSocket* socket, const Answer& answer);

    void close();

signals:
    void letterCame(const QByteArray& letter, QLocalSocket* tool);

private:
    void onConnection();
    void onData(QLocalSocket* tool);

    const DataDirectory& directory;
    QLocalServer server;
    quint64 socketInode = 0;
};
