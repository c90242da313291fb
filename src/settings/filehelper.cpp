#include "filehelper.h"

#include "globalsettings.h"

#include <QDir>

#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Without O_NONBLOCK, opening a pipe would wait for its other end.
constexpr int neverWait = O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

/// The file type bits of what is open as @p descriptor; 0 if they are not known.
mode_t fileKind(int descriptor)
{
    struct stat status
    {
    };
    return fstat(descriptor, &status) == 0 ? status.st_mode : 0;
}

/// What QFile makes of @p mode when it opens a file by its name.
QIODevice::OpenMode completed(QIODevice::OpenMode mode)
{
    if (mode & (QIODevice::Append | QIODevice::NewOnly))
        mode |= QIODevice::WriteOnly;
    const bool writesAlone = (mode & QIODevice::ReadWrite) == QIODevice::WriteOnly;
    if (writesAlone && !(mode & (QIODevice::Append | QIODevice::NewOnly)))
        mode |= QIODevice::Truncate;
    return mode;
}

int openFlags(QIODevice::OpenMode mode)
{
    if (!mode.testFlag(QIODevice::WriteOnly))
        return O_RDONLY | neverWait;
    int flags = neverWait | (mode.testFlag(QIODevice::ReadOnly) ? O_RDWR : O_WRONLY);
    if (!mode.testFlag(QIODevice::ExistingOnly))
        flags |= O_CREAT;
    if (mode.testFlag(QIODevice::NewOnly))
        flags |= O_EXCL;
    if (mode.testFlag(QIODevice::Append))
        flags |= O_APPEND;
    return flags;
}

} // namespace

void FileHelper::cleanWorkingDirectory()
{
    const QString dataDir = GS::instance()->dataDir;
    std::printf("directory %s \n", dataDir.toUtf8().constData());
    if (!QDir(dataDir).exists()) {
        std::puts("creating directory ");
        QDir().mkdir(dataDir);
    }
    for (const char* name : {"fifo1", "fifo2", "refifo"})
        QFile::remove(dataDir + QDir::separator() + QLatin1String(name));
}

bool FileHelper::fileExists(char const* path)
{
    const int descriptor = ::open(path, O_RDONLY | neverWait);
    if (descriptor < 0)
        return false;
    const mode_t kind = fileKind(descriptor);
    ::close(descriptor);
    return S_ISREG(kind) || S_ISDIR(kind);
}

int FileHelper::cleanVireonCalibFiles()
{
    const std::string& path = GS::instance()->calibIniPath;
    return fileExists(path.c_str()) ? std::remove(path.c_str()) : 0;
}

bool FileHelper::openRegularFile(QFile& file, const QString& path, QIODevice::OpenMode mode)
{
    const QIODevice::OpenMode complete = completed(mode);
    const int descriptor = ::open(QFile::encodeName(path).constData(), openFlags(complete), 0666);
    if (descriptor < 0)
        return false;
    // Truncated only once it is known to be a file, by hand since an open descriptor is not.
    if (S_ISREG(fileKind(descriptor))
        && (!complete.testFlag(QIODevice::Truncate) || ftruncate(descriptor, 0) == 0)
        && file.open(descriptor, complete, QFileDevice::AutoCloseHandle))
        return true;
    ::close(descriptor);
    return false;
}
