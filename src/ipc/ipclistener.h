#pragma once

#include "ipc/mailboxfile.h"

#include <QObject>

#include <atomic>

/**
 * The mailbox through which another program on this machine sends one-character commands.
 *
 * It is made of two plain files in the engine's data directory. The sender writes a command into
 * the command file (GS::fifo1Path); the listener tells it with received() and deletes the file.
 * The consumer may answer with writeDone(), which leaves "x" in the reply file (GS::refifoPath).
 * Nothing ever blocks on either file: a directory, a pipe or a device in their place counts as a
 * file that cannot be opened, and is tried again 60 ms later.
 *
 * MailboxCommand tells the command file's format. A file that holds no command is deleted as well,
 * but one whose first line is empty stays and is read again until it is filled.
 *
 * A command acts once: where the file cannot be deleted, it is passed over until it is written
 * anew or replaced. A newer file that comes while one is being handled is not deleted with it.
 *
 * There is no queue: a sender that wants every command executed waits until the file is gone
 * before it writes the next one. Failures are never told to the sender.
 */
class IpcListener : public QObject
{
    Q_OBJECT

public:
    /// The listener; the first call makes it, and must come from the main thread.
    static IpcListener* instance();

    /// Starts the loop on a thread of its own. The settings must be loaded. The object must
    /// outlive the loop, which ends with the process only.
    IpcListener();

    /// Writes "x", and nothing else, into the reply file: the consumer has acted on a command.
    ///
    /// The first call blocks its caller until the loop has paused (about 60 ms) or the process
    /// ends; from the loop's own thread it would wait for itself until then. The loop remembers
    /// its pause for good, so that every later call writes at once, even while a command is being
    /// read. A reply file that cannot be opened is told on standard output.
    void writeDone();

signals:
    /// A command came, see MailboxCommand. 1000 stands for whatever command was already
    /// there when the loop started. Comes from the loop's thread.
    void received(int id);

public slots:
    /// The loop; returns when the process ends.
    void listenToFifos();

private:
    void drainLeftover(const QString& path, MailboxFile::Content& handled);
    void readCommand(const QString& path, MailboxFile::Content& handled);

    static IpcListener* _instance;

    std::atomic<bool> running {true};
    std::atomic<bool> readingEnabled {true}; ///< false while writeDone() is at work
    std::atomic<bool> readerPaused {false}; ///< the loop has paused once; never false again
};
