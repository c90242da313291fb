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

QDBusMessage notificationCall(const char* method)
{
    return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.Notifications"),
                                          QStringLiteral("/org/freedesktop/Notifications"),
                                          QStringLiteral("org.freedesktop.Notifications"),
                                          QLatin1String(method));
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
}

void DesktopNotifier::showMessage(const QString& summary, const QString& body)
{
    const QVariantMap hints {{QStringLiteral("desktop-entry"), QLatin1String(applicationId)}};
    const QDBusMessage call = notificationCall("Notify")
        << QLatin1String(applicationName) << replacesNone << QLatin1String(installedPicture)
        << summary << body << QStringList() << hints << displayMs;
    lastId = 0;
    lastCall = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
    connect(lastCall, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher* answered) {
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
