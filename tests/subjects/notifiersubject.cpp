// Messages through the notification service: notifiersubject. It says "ready" and obeys lines on
// standard input, whose words are separated by tabs; it answers each "done MS", with the time the
// call took. A click on a message it tells with "clicked":
//   show SUMMARY BODY
//   close
//   showclose SUMMARY BODY   both at once
//   leave                    ends it, by way of all destructors
#include "support/words.h"
#include "ui/desktopnotifier.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QElapsedTimer>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    DesktopNotifier notifier;
    QObject::connect(&notifier, &DesktopNotifier::messageClicked, [] { Words::say("clicked"); });
    const Words words([&](const QStringList& line) {
        QElapsedTimer clock;
        clock.start();
        if (line.first().startsWith("show"))
            notifier.showMessage(line.value(1), line.value(2));
        if (line.first().endsWith("close"))
            notifier.closeMessage();
        if (line.first() == "leave") {
            // An answer of the bus comes behind what was sent before.
            if (QDBusConnection::sessionBus().isConnected())
                QDBusConnection::sessionBus().interface()->serviceOwner("org.freedesktop.DBus");
            QCoreApplication::quit();
        }
        Words::say(QString("done %1").arg(clock.elapsed()));
    });
    Words::say("ready");
    return QCoreApplication::exec();
}
