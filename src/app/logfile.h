#pragma once

#include <QFile>
#include <QString>

#include <mutex>

/**
 * The log in a file, which begins anew when it has grown to its limit; the older ones are kept
 * beside it as "FILE.1" (the last one), "FILE.2" and so on.
 *
 * Lines are appended to what is there at the start. When a line cannot be written, be it that the
 * disk is full, that a new file cannot be begun or that there is no regular file at the path, that
 * is told once on standard error, and nothing more is written. Any thread.
 */
class LogFile
{
public:
    /// Up to @p limit bytes in @p path and in each of the @p kept older ones.
    LogFile(const QString& path, qint64 limit, qint64 kept);

    /// Writes @p line and a line break, at once.
    void write(const QString& line);

private:
    bool open();
    bool beginAnew();
    void giveUp(const QString& reason);

    const QString path;
    const qint64 limit;
    const qint64 kept;
    std::mutex mutex;
    QFile file;
    qint64 size = 0; ///< of the file that is open
};
