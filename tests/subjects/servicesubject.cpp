// Two copies of a program on the session bus.
//   servicesubject first    exports the interface, says "ready", and answers each line on standard
//                           input with how often it was activated
//   servicesubject second   makes its application object, calls the first copy, and says
//                           "answered MS" or "unanswered MS", with the time the call took
#include "app/applicationservice.h"
#include "support/words.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QElapsedTimer>
#include <QGuiApplication>

int main(int argc, char** argv)
{
    const QByteArray startupId = qgetenv("DESKTOP_STARTUP_ID");
    const QGuiApplication application(argc, argv);
    if (QGuiApplication::arguments().value(1) == "second") {
        QElapsedTimer clock;
        clock.start();
        const bool answered = ApplicationService::activateOther(startupId);
        Words::say(QString("%1 %2").arg(answered ? "answered" : "unanswered").arg(clock.elapsed()));
        _exit(0);
    }
    ApplicationService service;
    int count = 0;
    QObject::connect(&service, &ApplicationService::activateRequested, [&count] { ++count; });
    service.start();
    const Words words([&count](const QStringList&) { Words::say(QString::number(count)); });
    // When the bus answers this, it has dealt with the request for the name.
    if (QDBusConnection::sessionBus().isConnected())
        QDBusConnection::sessionBus().interface()->serviceOwner("org.freedesktop.DBus");
    Words::say("ready");
    return QGuiApplication::exec();
}
