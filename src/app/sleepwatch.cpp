#include "app/sleepwatch.h"

#include "base/logcategories.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>

namespace {

const QString service = QStringLiteral("org.freedesktop.login1");
const QString objectPath = QStringLiteral("/org/freedesktop/login1");
const QString interfaceName = QStringLiteral("org.freedesktop.login1.Manager");

} // namespace

SleepWatch::SleepWatch(QObject* parent)
    : QObject(parent)
{
    QDBusConnection bus = QDBusConnection::systemBus();
    // With the service's name Qt would wait for the bus to tell its owner.
    bus.connect(QString(), objectPath, interfaceName, QStringLiteral("PrepareForSleep"), this,
                SLOT(onPrepareForSleep(bool, QDBusMessage)));
    auto* owner =
        new QDBusServiceWatcher(service, bus, QDBusServiceWatcher::WatchForRegistration, this);
    connect(owner, &QDBusServiceWatcher::serviceRegistered, this, &SleepWatch::delaySleep);
    delaySleep();
}

void SleepWatch::allowSleep()
{
    if (sleepBegins)
        inhibitor = {};
}

void SleepWatch::delaySleep()
{
    QDBusMessage call = QDBusMessage::createMethodCall(service, objectPath, interfaceName,
                                                       QStringLiteral("Inhibit"));
    call << QStringLiteral("sleep") << QStringLiteral("Vireon")
         << QStringLiteral("The engine has to let go of the camera") << QStringLiteral("delay");
    auto* answer = new QDBusPendingCallWatcher(QDBusConnection::systemBus().asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        const QDBusPendingReply<QDBusUnixFileDescriptor> reply = *answer;
        answer->deleteLater();
        if (reply.isError()) {
            qCDebug(integrationLog) << "sleep is not delayed:" << reply.error().message();
            return;
        }
        inhibitor = reply.value();
        loginManager = reply.reply().service();
    });
}

void SleepWatch::onPrepareForSleep(bool begins, const QDBusMessage& message)
{
    if (message.service() != loginManager)
        return;
    qCDebug(integrationLog) << (begins ? "going to sleep" : "woken up");
    sleepBegins = begins;
    if (begins) {
        emit goingToSleep();
    } else {
        delaySleep();
        emit wokenUp();
    }
}
