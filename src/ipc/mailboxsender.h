#pragma once

#include <QDeadlineTimer>
#include <QFile>
#include <QString>

/**
 * The sender's side of the mailbox: leaves one command in the command file and waits until it was
 * taken and acted on.
 *
 * Senders take turns by a lock on the file beside the command file whose name has ".turn" at its
 * end, so that each one's reply is its own. Neither overwrites a command that waits, also one of a
 * sender that knows nothing of the turns.
 */
class MailboxSender
{
public:
    enum class Result {
        Done, ///< taken, and the reply has come
        NotTaken, ///< not in time, and taken back
        NoReply, ///< taken, but the reply has not come in time
    };

    /// @p commandPath and @p replyPath are those of GS.
    MailboxSender(const QString& commandPath, const QString& replyPath);

    /// Whether a controller listens.
    bool isOpen() const;

    /// Sends @p character, and waits at most @p limitMs milliseconds in all.
    Result send(char character, int limitMs);

private:
    Result sendInTurn(char character, int limitMs);
    bool place(char character, const QDeadlineTimer& deadline);
    bool isTaken() const;
    bool hasReply() const;
    void takeBack();

    const QString commandPath;
    const QString replyPath;
    QFile command; ///< open as long as it is looked at: no other file gets its number
};
