#include "ui/traywatch.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QSystemTrayIcon>

#include <algorithm>

namespace {

const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");

/// Each item takes a name on the bus with the process's number in it.
bool hasItemOnBus()
{
    const QDBusConnectionInterface* bus = QDBusConnection::sessionBus().interface();
    if (!bus)
        return false;
    const QString own =
        QStringLiteral("org.kde.StatusNotifierItem-%1-").arg(QCoreApplication::applicationPid());
    const QStringList names = bus->registeredServiceNames();
    return std::any_of(names.begin(), names.end(),
                       [&own](const QString& name) { return name.startsWith(own); });
}

} // namespace

TrayWatch::TrayWatch(QObject* parent)
    : QObject(parent)
    , isItem(hasItemOnBus())
{
    if (isItem)
        watchBus();
}

bool TrayWatch::hasTray() const
{
    // For windows to be embedded Qt asks the X server alone.
    return isItem ? hostIsThere : QSystemTrayIcon::isSystemTrayAvailable();
}

void TrayWatch::watchBus()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    for (const char* signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"})
        bus.connect(watcherName, watcherPath, watcherName, QLatin1String(signal), this,
                    SLOT(askWatcher()));
    auto* owner =
        new QDBusServiceWatcher(watcherName, bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(owner, &QDBusServiceWatcher::serviceRegistered, this, &TrayWatch::askWatcher);
    connect(owner, &QDBusServiceWatcher::serviceUnregistered, this,
            [this] { hostIsThere = false; });
    askWatcher();
}

void TrayWatch::askWatcher()
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        watcherName, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("Get"));
    call << watcherName << QStringLiteral("IsStatusNotifierHostRegistered");
    auto* answer = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        if (!reply.isError())
            hostIsThere = reply.value().variant().toBool();
        answer->deleteLater();
    });
}
