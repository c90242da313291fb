#include "datadirectory.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>

#include <fcntl.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

constexpr int longestSocketPath = sizeof(sockaddr_un::sun_path) - 1;

QString socketName()
{
    return QStringLiteral("engine.sock");
}

} // namespace

DataDirectory::DataDirectory()
{
    const QString documents = QStandardPaths::locate(QStandardPaths::DocumentsLocation, QString(),
                                                     QStandardPaths::LocateDirectory);
    directory = QFileInfo(documents + QStringLiteral("Vireon")).absoluteFilePath();
}

DataDirectory::~DataDirectory()
{
    if (handle >= 0)
        ::close(handle);
}

bool DataDirectory::exists() const
{
    return QFileInfo(directory).isDir();
}

bool DataDirectory::create() const
{
    return QDir().mkpath(directory);
}

QStringList DataDirectory::names() const
{
    QStringList result = QDir(directory).entryList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::NoSort);
    std::sort(result.begin(), result.end());
    return result;
}

QString DataDirectory::filePath(const QString& name) const
{
    return directory + QLatin1Char('/') + name;
}

QString DataDirectory::statusFile() const
{
    return filePath(QStringLiteral("pensettings.ini"));
}

QString DataDirectory::socketAddress() const
{
    if (QFile::encodeName(socketFile()).size() <= longestSocketPath)
        return socketFile();
    if (handle < 0)
        handle = ::open(QFile::encodeName(directory).constData(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0)
        return QString();
    return QStringLiteral("/proc/self/fd/%1/%2").arg(QString::number(handle), socketName());
}

QString DataDirectory::socketFile() const
{
    return filePath(socketName());
}
