#pragma once

#include <QObject>
#include <QPointer>

#include <vector>

/**
 * While it lives, the calls that the program makes to Qt and that qtcalls.cpp lists are lines of
 * the log, "Class.function(arguments)" or "set property = value", in their place among the
 * program's own lines: a test sees what came first. Take it with LogRecorder. One at a time, on the
 * GUI thread.
 *
 * Some calls are only told, so that nothing depends on time or on a desktop: the GUI thread's
 * sleeps, timers of a second and more (see runTimers()), messages of the tray icon, calls on the
 * session bus, and the end of the event loop.
 */
class QtCalls
{
public:
    QtCalls();
    ~QtCalls();
    QtCalls(const QtCalls&) = delete;
    QtCalls& operator=(const QtCalls&) = delete;

    /// The one that lives, or null.
    static QtCalls* current();

    /// Lets the time run out for which timers were started since the last call.
    void runTimers();

    // What the program is told by Qt.
    bool hasTray = true;
    double refreshRate = 60; ///< of each screen, Hz

private:
    friend class QTimer;

    struct Timer
    {
        QPointer<QObject> receiver;
        QtPrivate::QSlotObjectBase* slot;
    };

    std::vector<Timer> timers;
};
