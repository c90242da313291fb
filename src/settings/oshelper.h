#pragma once

#include <QByteArray>
#include <QString>

/// What the settings ask of the desktop: the entry that starts the program at log-in.
class OsHelper
{
public:
    /// The helper; the first call makes it.
    static OsHelper* instance();

    /// Rewrites the entry at entryPath() as a whole, enabled or disabled by GS::autostart; the file
    /// is never deleted. Where it cannot be opened, which is the rule for an ordinary user, that is
    /// logged and nothing changes, neither there nor in the settings.
    void setAutostart();

    /// "/etc/xdg/autostart/Vireon.desktop".
    static QString entryPath();

    /// The text of an entry; a hidden one takes another one of its name away.
    static QByteArray entry(bool enabled, bool hidden);

private:
    OsHelper() = default;

    static OsHelper* _instance;
};
