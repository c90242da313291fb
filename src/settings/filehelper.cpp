#include "settings/filehelper.h"

#include "base/regularfile.h"
#include "settings/globalsettings.h"

#include <QDir>
#include <QFile>

#include <cstdio>
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
    const int descriptor = ::open(path, O_RDONLY | openWithoutWaiting);
    if (descriptor < 0)
        return false;
    struct stat opened = {};
    const bool known = fstat(descriptor, &opened) == 0;
    ::close(descriptor);
    return known && (S_ISREG(opened.st_mode) || S_ISDIR(opened.st_mode));
}

int FileHelper::cleanVireonCalibFiles()
{
    const std::string& path = GS::instance()->calibIniPath;
    return fileExists(path.c_str()) ? std::remove(path.c_str()) : 0;
}
