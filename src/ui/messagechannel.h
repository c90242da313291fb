#pragma once

#include <QObject>
#include <QString>

class DesktopNotifier;
class LinuxTrayIconManager;
class QSystemTrayIcon;
class TrayWatch;

/**
 * The one way in which the desktop shows a message of the program: the indicator's notifications
 * on Unity, else a balloon of the tray icon, or the notification service where no tray shows it.
 *
 * Which of them it is is decided here alone. One message at a time; who wants a queue keeps it.
 * GUI thread only.
 */
class MessageChannel : public QObject
{
    Q_OBJECT

public:
    /// Either the tray icon, which is visible, or the indicator is null. Both outlive this.
    MessageChannel(QSystemTrayIcon* icon, LinuxTrayIconManager* indicator, QObject* parent);

    /// Whether the user has the program's icon somewhere on the desktop.
    bool hasTray() const;

    /// Shows @p text for 5 s, or as long as the indicator's service thinks right.
    void show(const QString& title, const QString& text);

    /// Takes the message away that is shown. Not on Unity.
    void hide();

signals:
    /// The user has clicked a message. Of the tray icon's the icon itself tells.
    void clicked();

private:
    QSystemTrayIcon* const icon;
    LinuxTrayIconManager* const indicator;
    DesktopNotifier* const notifier; ///< null on Unity
    TrayWatch* const trayWatch; ///< null on Unity
};
