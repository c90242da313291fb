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
 * would take GNOME_DESKTOP_SESSION_ID or DESKTOP_SESSION instead. On other desktops it does
 * nothing. It changes the environment: only while there are no other threads.
 */
class GtkThemeBlocker
{
public:
    GtkThemeBlocker();
    ~GtkThemeBlocker(); ///< restores, if that was not done

    GtkThemeBlocker(const GtkThemeBlocker&) = delete;
    GtkThemeBlocker& operator=(const GtkThemeBlocker&) = delete;

    /// Gives XDG_CURRENT_DESKTOP its value back.
    void restore();

private:
    QByteArray hiddenName; ///< empty when nothing is hidden
};
