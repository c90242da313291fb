#include "filehelper.h"

#include "globalsettings.h"

#include <QDir>

#include <cstdio>
#include <fcntl.h>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

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
    return std::ifstream(path).is_open();
}

int FileHelper::cleanVireonCalibFiles()
{
    const std::string& path = GS::instance()->calibIniPath;
    return fileExists(path.c_str()) ? std::remove(path.c_str()) : 0;
}

bool FileHelper::openRegularFile(QFile& file, const QString& path, QIODevice::OpenMode mode)
{
    // Without O_NONBLOCK, opening a pipe would wait for its other end.
    int flags = O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    if (mode.testFlag(QIODevice::WriteOnly)) {
        flags |= mode.testFlag(QIODevice::ReadOnly) ? O_RDWR : O_WRONLY;
        flags |= mode.testFlag(QIODevice::ExistingOnly) ? 0 : O_CREAT;
    }
    const int descriptor = ::open(QFile::encodeName(path).constData(), flags, 0666);
    if (descriptor < 0)
        return false;
    struct stat status
    {
    };
    // Truncated only once it is known to be a file, by hand since an open descriptor is not.
    if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)
        && (!mode.testFlag(QIODevice::Truncate) || ftruncate(descriptor, 0) == 0)
        && file.open(descriptor, mode, QFileDevice::AutoCloseHandle))
        return true;
    ::close(descriptor);
    return false;
}
