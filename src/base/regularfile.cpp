#include "base/regularfile.h"

#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr mode_t newFileMode = 0666; // less the umask
constexpr int mostLinks = 40; // that the kernel follows for one name

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

/// Where the links at @p path lead, whether or not anything is there.
QString endOfLinks(QString path)
{
    for (int links = 0; links < mostLinks && QFileInfo(path).isSymLink(); ++links)
        path = QFileInfo(path).symLinkTarget();
    return path;
}

bool writeNewFile(const QString& path, const QByteArray& content)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(),
                                  O_WRONLY | O_CREAT | O_EXCL | openWithoutWaiting, newFileMode);
    if (descriptor < 0)
        return false;
    const bool written =
        ::write(descriptor, content.constData(), static_cast<std::size_t>(content.size()))
        == content.size();
    return ::close(descriptor) == 0 && written;
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

std::optional<QByteArray> beginOfRegularFile(const QString& path, int most)
{
    const int descriptor =
        ::open(QFile::encodeName(path).constData(), openFlags(QIODevice::ReadOnly));
    if (descriptor < 0)
        return std::nullopt;
    const bool regular = isRegular(descriptor);
    QByteArray content(most, Qt::Uninitialized);
    const ssize_t length =
        regular ? ::read(descriptor, content.data(), static_cast<std::size_t>(most)) : 0;
    ::close(descriptor);
    if (!regular)
        return std::nullopt;
    content.truncate(static_cast<int>(qMax<ssize_t>(length, 0)));
    return content;
}

bool renameUnlessTaken(const QString& from, const QString& to)
{
    const QByteArray source = QFile::encodeName(from);
    const QByteArray target = QFile::encodeName(to);
    if (renameat2(AT_FDCWD, source.constData(), AT_FDCWD, target.constData(), RENAME_NOREPLACE)
        == 0)
        return true;
    // Some network file systems only know the older way: a second name, then the first one less.
    return errno == EINVAL && ::link(source.constData(), target.constData()) == 0
        && ::unlink(source.constData()) == 0;
}

bool createRegularFile(const QString& path, const QByteArray& content)
{
    const QString target = endOfLinks(path);
    const QString unfinished = target + QLatin1String(".new");
    QFile::remove(unfinished);
    if (writeNewFile(unfinished, content) && renameUnlessTaken(unfinished, target))
        return true;
    QFile::remove(unfinished);
    return false;
}
