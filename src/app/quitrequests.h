#pragma once

#include <QObject>

/**
 * Brings the ways in which the system asks the program to end to one Qt signal.
 *
 * These are SIGTERM, SIGINT and SIGHUP, the event QEvent::Quit that Qt sends to the application at
 * the end of the session, and a session manager that dies. The handlers of the
 * system's signals and of the broken connection only write one byte into a pipe; all else happens
 * in the event loop. SIGINT and SIGHUP stay ignored in a process that was started so. One object
 * per process, made after the application object; it must outlive the event loop. What follows is
 * told in app/quitsequence.h.
 */
class QuitRequests : public QObject
{
    Q_OBJECT

public:
    QuitRequests();

    /// Takes the application's QEvent::Quit, which would end the event loop at once.
    bool eventFilter(QObject* watched, QEvent* event) override;

signals:
    void quitRequested();
};
