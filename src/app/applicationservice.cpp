#include "app/applicationservice.h"

#include "base/installation.h"

#include <QDBusConnection>
#include <QDBusMessage>

namespace {

constexpr int activationLimitMs = 2000;
constexpr uint doNotQueue = 4; // D-Bus: the name now or not at all
const char* const objectPath = "/com/corvanthel/Vireon";
const char* const interfaceName = "org.freedesktop.Application";
const char* const startupIdKey = "desktop-startup-id";

QDBusMessage callOfBus(const char* method)
{
    return QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QLatin1String(method));
}

} // namespace

ApplicationService::~ApplicationService()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.unregisterObject(QLatin1String(objectPath));
    bus.send(callOfBus("ReleaseName") << QLatin1String(applicationId));
}

void ApplicationService::start()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    // The object first: a caller may already be waiting for the name.
    if (bus.registerObject(QLatin1String(objectPath), this, QDBusConnection::ExportScriptableSlots))
        bus.send(callOfBus("RequestName") << QLatin1String(applicationId) << doNotQueue);
}

bool ApplicationService::activateOther(const QByteArray& startupId)
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(QLatin1String(applicationId), QLatin1String(objectPath),
                                       QLatin1String(interfaceName), QStringLiteral("Activate"));
    QVariantMap platformData;
    if (!startupId.isEmpty())
        platformData.insert(QLatin1String(startupIdKey), QString::fromUtf8(startupId));
    call << platformData;
    call.setAutoStartService(false);
    const QDBusMessage answer =
        QDBusConnection::sessionBus().call(call, QDBus::Block, activationLimitMs);
    return answer.type() == QDBusMessage::ReplyMessage;
}

void ApplicationService::Activate(const QVariantMap& platformData)
{
    Q_UNUSED(platformData)
    emit activateRequested();
}

void ApplicationService::Open(const QStringList& uris, const QVariantMap& platformData)
{
    Q_UNUSED(uris)
    Activate(platformData);
}

void ApplicationService::ActivateAction(const QString& name, const QVariantList& parameter,
                                        const QVariantMap& platformData)
{
    Q_UNUSED(name)
    Q_UNUSED(parameter)
    Q_UNUSED(platformData)
}
