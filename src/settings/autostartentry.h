#pragma once

#include <QString>

/**
 * Whether the desktop starts the program at log-in, and the way to change that.
 *
 * Two desktop entries decide: the system's, which OsHelper writes, and the user's own of the same
 * name, "autostart/Vireon.desktop" below XDG_CONFIG_HOME, which takes precedence where it exists.
 */
class AutostartEntry
{
public:
    /// What the desktop will do at the next log-in, by the files that are there now.
    static bool isOn();

    /// Writes the system's entry where that may be written, and otherwise the user's own; a user's
    /// own that exists is written as well. By GS::autostart. What could not be written stays as it
    /// was: isOn() tells.
    static void write();

private:
    static QString ownPath();
};
