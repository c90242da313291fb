#pragma once

#include <QObject>

class QSocketNotifier;

/**
 * Turns SIGTERM, SIGINT and SIGHUP into a Qt signal on the GUI thread.
 *
 * The handler of the system's signals only writes one byte into a pipe; all else happens in the
 * event loop. One object per process; it must outlive the event loop.
 */
class QuitSignals : public QObject
{
    Q_OBJECT

public:
    explicit QuitSignals(QObject* parent = nullptr);

signals:
    /// The process was asked to end. Comes once for each byte that arrives, so maybe repeatedly.
    void quitRequested();

private:
    QSocketNotifier* notifier = nullptr;
};
