#pragma once

#include <QObject>
#include <QString>

/**
 * The program's icon in the indicator area of Unity, and its notifications there.
 *
 * The indicator's menu is GTK's; what the user chooses in it arrives as a signal. The indicator is
 * made once and lives until the process ends. Libraries that are missing make the members do
 * nothing (indicatorlibraries.h); apart from notify_init() no result is looked at.
 *
 * GUI thread only. The menu needs the default GLib main context: where Qt's event dispatcher is
 * not GLib's, a timer of 50 ms runs it.
 */
class LinuxTrayIconManager : public QObject
{
    Q_OBJECT

public:
    LinuxTrayIconManager();

    /// Makes the indicator with a menu of two entries. To be called once.
    void createIndicator(QString showLabel, QString quitLabel);

    /// Whether it could be made.
    bool hasIndicator() const { return made; }

    /// Shows one notification; both texts are UTF-8. Waits for the notification service.
    void createNotification(char* summary, char* body);

    // What the menu's entries do: each emits its signal.
    void showWindow();
    void quitWindow();

signals:
    void trayIconClicked(); ///< the first entry was chosen
    void trayIconQuit(); ///< the second one

private:
    bool made = false;
};
