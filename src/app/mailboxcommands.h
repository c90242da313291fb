#pragma once

#include "base/filelock.h"

#include <QObject>

#include <optional>

class MainWindow;

/**
 * Carries out what other programs ask for by the mailbox: calls the main window's slot of each
 * code that IpcListener tells, and acknowledges it in the reply file once the slot has returned.
 *
 * Codes without a slot, 1000 for a left-over command among them, give a log line and no reply.
 * As long as it lives, a lock on the file beside the command file whose name has ".open" at its
 * end tells senders that somebody listens; the file itself stays. A sender that looks holds the
 * lock for a moment: then it is tried for again, for 10 s at most. GUI thread.
 */
class MailboxCommands : public QObject
{
    Q_OBJECT

public:
    /// Starts to listen for @p window, which must outlive it.
    MailboxCommands(MainWindow& window, QObject* parent);

private:
    void tellSenders(int triesLeft);
    void carryOut(int code);

    MainWindow& window;
    std::optional<FileLock> openForCommands;
};
