#pragma once

#include <QDBusUnixFileDescriptor>
#include <QObject>
#include <QString>

class QDBusMessage;

/**
 * Tells when the machine goes to sleep and when it has woken up, by the login manager on the
 * system bus.
 *
 * It holds an inhibitor that delays the sleep, for as long as the login manager grants (5 s as a
 * rule), until allowSleep(). Nothing here waits for an answer. A login manager that comes later, or
 * anew, is asked again; without one nothing is ever told. Signals of anybody else are passed over.
 */
class SleepWatch : public QObject
{
    Q_OBJECT

public:
    explicit SleepWatch(QObject* parent);

public slots:
    /// To be called when all that has to happen after goingToSleep() has happened. Without effect
    /// while no sleep begins.
    void allowSleep();

signals:
    void goingToSleep();
    void wokenUp();

private slots:
    void onPrepareForSleep(bool begins, const QDBusMessage& message);

private:
    void delaySleep();

    QDBusUnixFileDescriptor inhibitor; ///< the sleep waits while it is open
    bool sleepBegins = false;
    QString loginManager; ///< its name on the bus for this run of it, empty until it has answered
};
