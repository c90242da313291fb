#include "ipc/mailboxfile.h"

#include "base/regularfile.h"
#include "ipc/mailboxcommand.h"

#include <cstdio>
#include <sys/stat.h>

namespace {

bool isSameTime(const timespec& a, const timespec& b)
{
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

} // namespace

bool MailboxFile::Content::operator==(const Content& other) const
{
    return inode == other.inode && device == other.device && size == other.size
        && isSameTime(written, other.written) && line == other.line;
}

MailboxFile::MailboxFile(const QString& filePath, QIODevice::OpenMode mode)
    : path(filePath)
{
    struct stat opened = {};
    if (!openRegularFile(file, path, mode) || fstat(file.handle(), &opened) != 0)
        return;
    // The line comes after the rest: what is written in between makes the next look differ.
    found = {opened.st_dev, opened.st_ino, opened.st_size, opened.st_mtim,
             MailboxCommand::readFirstLine(file)};
}

bool MailboxFile::remove()
{
    if (!isAt(path))
        return false;
    // No call deletes a name only while it is a certain file's. A rename takes whatever has the
    // name, at once; a newer file that came after the look above is found out then and given back.
    const QString taken = path + QLatin1String(".taken");
    if (std::rename(QFile::encodeName(path).constData(), QFile::encodeName(taken).constData()) != 0)
        return false;
    if (!isAt(taken) && renameUnlessTaken(taken, path))
        return false;
    return QFile::remove(taken);
}

bool MailboxFile::isAt(const QString& name)
{
    struct stat there = {};
    if (stat(QFile::encodeName(name).constData(), &there) != 0 || there.st_ino != found.inode
        || there.st_dev != found.device)
        return false;
    if (there.st_size == found.size && isSameTime(there.st_mtim, found.written))
        return true;
    // Its sender may write a line in several pieces: one that has only grown is the one read.
    return there.st_size > found.size && file.seek(0)
        && MailboxCommand::readFirstLine(file).startsWith(found.line);
}
