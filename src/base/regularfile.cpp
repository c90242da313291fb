#include "base/regularfile.h"

#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr mode_t newFileMode = 0666; // less the umask

int openFlags(QIODevice::OpenMode mode)
{
    if (!mode.testFlag(QIODevice::WriteOnly))
        return O_RDONLY | openWithoutWaiting;
    const int access = mode.testFlag(QIODevice::ReadOnly) ? O_RDWR : O_WRONLY;
    const int create = mode.testFlag(QIODevice::ExistingOnly) ? 0 : O_CREAT;
    return access | create | openWithoutWaiting;
}

bool isRegular(int descriptor)
{
    struct stat opened = {};
    return fstat(descriptor, &opened) == 0 && S_ISREG(opened.st_mode);
}

} // namespace

bool openRegularFile(QFile& file, const QString& path, QIODevice::OpenMode mode)
{
    const int descriptor =
        ::open(QFile::encodeName(path).constData(), openFlags(mode), newFileMode);
    if (descriptor < 0)
        return false;
    // Truncated only once it is known to be a file, by hand since an open descriptor is not.
    if (isRegular(descriptor)
        && (!mode.testFlag(QIODevice::Truncate) || ftruncate(descriptor, 0) == 0)
        && file.open(descriptor, mode, QFileDevice::AutoCloseHandle))
        return true;
    ::close(descriptor);
    return false;
}
