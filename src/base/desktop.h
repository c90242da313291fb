#pragma once

#include <QByteArray>

/// Whether the desktop is Unity: XDG_CURRENT_DESKTOP is exactly that word, in any letter case. A
/// list that merely contains it is another desktop.
bool isUnityDesktop();

/**
 * Keeps Qt from loading its GTK 3 theme on Unity, where the tray's indicator needs GTK 2: both in
 * one process end it.
 *
 * To be made before the application object and restored right after it: Qt chooses the theme in
 * that constructor. Meanwhile XDG_CURRENT_DESKTOP names no desktop that Qt knows; without it, Qt
 * would take GNOME_DESKTOP_SESSION_ID or DESKTOP_SESSION instead. QT_QPA_PLATFORMTHEME, which names
 * a theme by itself, is not there meanwhile. On other desktops it does nothing. It changes the
 * environment: only while there are no other threads.
 */
class GtkThemeBlocker
{
public:
    GtkThemeBlocker();
    ~GtkThemeBlocker(); ///< restores, if that was not done

    GtkThemeBlocker(const GtkThemeBlocker&) = delete;
    GtkThemeBlocker& operator=(const GtkThemeBlocker&) = delete;

    /// Gives both variables their values back.
    void restore();

private:
    QByteArray hiddenName; ///< empty when nothing is hidden
    QByteArray hiddenTheme; ///< empty when there was none
};
