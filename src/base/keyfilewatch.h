#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QStringList>

/**
 * Tells when a file of a set is no longer there, because somebody cleaned the directory.
 *
 * It costs nothing while nothing happens to the files. Needs the event loop of its thread.
 */
class KeyFileWatch : public QObject
{
    Q_OBJECT

public:
    KeyFileWatch();

    /// Watches the files at @p paths from now on, and none of those before.
    void watch(const QStringList& paths);

signals:
    /// One of the files is gone; again for every further one.
    void isIncomplete();

private:
    void check();

    QFileSystemWatcher watcher;
    QStringList files;
};
