#include "ui/desktopnotifier.h"

#include "base/installation.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QStringList>
#include <QVariantMap>

namespace {

constexpr int displayMs = 5000;
constexpr uint replacesNone = 0;
const char* const applicationName = "Vireon";
const char* const serviceName = "org.freedesktop.Notifications"; // its interface's, too
const char* const servicePath = "/org/freedesktop/Notifications";
const char* const clickAction = "default"; // what a click on the message itself means

QDBusMessage notificationCall(const char* method)
{
    return QDBusMessage::createMethodCall(QLatin1String(serviceName), QLatin1String(servicePath),
                                          QLatin1String(serviceName), QLatin1String(method));
}

uint idIn(const QDBusPendingReply<uint>& answer)
{
    return answer.isError() ? 0 : answer.value();
}

void closeById(uint id)
{
    if (id != 0)
        QDBusConnection::sessionBus().asyncCall(notificationCall("CloseNotification") << id);
}

} // namespace

DesktopNotifier::DesktopNotifier(QObject* parent)
    : QObject(parent)
{
    // Of any sender: to name the service, Qt would wait for the bus to tell who that is.
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.connect(QString(), QLatin1String(servicePath), QLatin1String(serviceName),
                QStringLiteral("ActionInvoked"), this, SLOT(onActionInvoked(uint, QString)));
    bus.connect(QString(), QLatin1String(servicePath), QLatin1String(serviceName),
                QStringLiteral("NotificationClosed"), this, SLOT(onNotificationClosed(uint)));
}

void DesktopNotifier::showMessage(const QString& summary, const QString& body)
{
    const QVariantMap hints {{QStringLiteral("desktop-entry"), QLatin1String(applicationId)}};
    const QDBusMessage call = notificationCall("Notify")
        << QLatin1String(applicationName) << replacesNone << QLatin1String(installedPicture)
        << summary << body << QStringList {QLatin1String(clickAction), QObject::tr("Open")} << hints
        << displayMs;
    lastId = 0;
    lastCall = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
    connect(lastCall, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher* answered) {
                if (!answered->isError())
                    shownIds.insert(idIn(*answered));
                if (answered == lastCall) {
                    lastId = idIn(*answered);
                    lastCall.clear();
                }
                answered->deleteLater();
            });
}

void DesktopNotifier::closeMessage()
{
    if (lastCall) {
        connect(lastCall, &QDBusPendingCallWatcher::finished, this,
                [](QDBusPendingCallWatcher* answered) { closeById(idIn(*answered)); });
        lastCall.clear();
        return;
    }
    closeById(lastId);
    lastId = 0;
}

void DesktopNotifier::onActionInvoked(uint id, const QString& action)
{
    if (action == QLatin1String(clickAction) && shownIds.contains(id))
        emit messageClicked();
}

void DesktopNotifier::onNotificationClosed(uint id)
{
    shownIds.remove(id);
}
