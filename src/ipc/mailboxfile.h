#pragma once

#include <QFile>
#include <QString>

#include <sys/types.h>

/**
 * One look at the mailbox's command file: what it held, and the way to delete that and no more.
 *
 * What cannot be opened, a directory, a pipe or a device among it, is not open and holds nothing.
 */
class MailboxFile
{
public:
    /// What one look has found. Two are equal as long as nobody has written the file or put
    /// another one in its place.
    struct Content
    {
        dev_t device = 0;
        ino_t inode = 0;
        qint64 size = -1; ///< bytes
        timespec written {}; ///< the last time
        QString line; ///< the first one

        bool operator==(const Content& other) const;
    };

    /// Opens the file at @p path, without waiting, and reads its first line.
    MailboxFile(const QString& path, QIODevice::OpenMode mode);

    bool isOpen() const { return file.isOpen(); }
    const Content& content() const { return found; }

    /// Deletes the file if it is still what was read; a newer one that has come meanwhile stays,
    /// and so does one that was written anew. True when it is gone.
    bool remove();

private:
    bool isAt(const QString& name);

    const QString path;
    QFile file;
    Content found;
};
