#include "ui/messagechannel.h"

#include "ui/desktopnotifier.h"
#include "ui/linuxtrayiconmanager.h"
#include "ui/traywatch.h"

#include <QSystemTrayIcon>

namespace {

constexpr int displayMs = 5000;

} // namespace

MessageChannel::MessageChannel(QSystemTrayIcon* trayIcon, LinuxTrayIconManager* trayIconManager,
                               QObject* parent)
    : QObject(parent)
    , icon(trayIcon)
    , indicator(trayIconManager)
    , notifier(trayIcon ? new DesktopNotifier(this) : nullptr)
    , trayWatch(trayIcon ? new TrayWatch(this) : nullptr)
{
    if (notifier)
        connect(notifier, &DesktopNotifier::messageClicked, this, &MessageChannel::clicked);
}

bool MessageChannel::hasTray() const
{
    return indicator ? indicator->hasIndicator() : trayWatch->hasTray();
}

void MessageChannel::show(const QString& title, const QString& text)
{
    if (indicator)
        indicator->createNotification(title.toUtf8().data(), text.toUtf8().data());
    else if (hasTray())
        icon->showMessage(title, text, QSystemTrayIcon::Information, displayMs);
    else
        notifier->showMessage(title, text);
}

void MessageChannel::hide()
{
    if (!icon)
        return;
    notifier->closeMessage(); // if it was shown without a tray
    icon->setVisible(false);
    icon->setVisible(true);
}
