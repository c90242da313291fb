#include "settings/autostartentry.h"

#include "base/regularfile.h"
#include "settings/globalsettings.h"
#include "settings/oshelper.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

constexpr qint64 longestEntry = 65536; // bytes

/// Whether the entry at @p path starts its program.
bool starts(const QString& path)
{
    QFile file;
    if (!openRegularFile(file, path, QIODevice::ReadOnly))
        return false;
    const QList<QByteArray> lines = file.read(longestEntry).split('\n');
    return !lines.contains("Hidden=true") && !lines.contains("X-GNOME-Autostart-enabled=false");
}

/// Whether the file can be written, or made where there is none.
bool isWritable(const QString& path)
{
    const QFileInfo file(path);
    return file.exists() ? file.isFile() && file.isWritable() : QFileInfo(file.path()).isWritable();
}

void writeOwn(const QString& path, bool on)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file;
    if (openRegularFile(file, path, QIODevice::WriteOnly | QIODevice::Truncate))
        file.write(OsHelper::entry(on, !on));
}

} // namespace

bool AutostartEntry::isOn()
{
    return starts(QFileInfo::exists(ownPath()) ? ownPath() : OsHelper::entryPath());
}

void AutostartEntry::write()
{
    const bool system = isWritable(OsHelper::entryPath());
    if (system)
        OsHelper::instance()->setAutostart();
    if (!system || QFileInfo::exists(ownPath()))
        writeOwn(ownPath(), GS::instance()->autostart);
}

QString AutostartEntry::ownPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + QLatin1String("/autostart/Vireon.desktop");
}
