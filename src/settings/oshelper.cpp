#include "settings/oshelper.h"

#include "base/regularfile.h"
#include "settings/globalsettings.h"

#include <QDebug>
#include <QFile>

#include <array>

namespace {

std::array<const char*, 8> entryLines(bool enabled, bool hidden)
{
    return {
        "[Desktop Entry]",
        "Type=Application",
        "Exec=/usr/local/bin/Vireon/Vireon.sh",
        hidden ? "Hidden=true" : "Hidden=false",
        "NoDisplay=false",
        enabled ? "X-GNOME-Autostart-enabled=true" : "X-GNOME-Autostart-enabled=false",
        "Name=Vireon",
        "Comment=",
    };
}

} // namespace

OsHelper* OsHelper::_instance = nullptr;

OsHelper* OsHelper::instance()
{
    if (!_instance)
        _instance = new OsHelper;
    return _instance;
}

void OsHelper::setAutostart()
{
    QFile file;
    if (!openRegularFile(file, entryPath(), QIODevice::WriteOnly | QIODevice::Truncate)) {
        qDebug() << "failed to set autostart Desktop entry doesn't exists or no permission to "
                    "write";
        return;
    }
    for (const char* line : entryLines(GS::instance()->autostart, false)) {
        file.write(line);
        file.write("\n");
        file.flush();
    }
}

QString OsHelper::entryPath()
{
    return QStringLiteral("/etc/xdg/autostart/Vireon.desktop");
}

QByteArray OsHelper::entry(bool enabled, bool hidden)
{
    QByteArray text;
    for (const char* line : entryLines(enabled, hidden))
        text.append(line).append('\n');
    return text;
}
