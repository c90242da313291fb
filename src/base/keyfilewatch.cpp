#include "base/keyfilewatch.h"

#include <QFile>

#include <algorithm>

KeyFileWatch::KeyFileWatch()
{
    connect(&watcher, &QFileSystemWatcher::fileChanged, this, &KeyFileWatch::check);
}

void KeyFileWatch::watch(const QStringList& paths)
{
    // Also where the names stay: behind them are other files now.
    const QStringList old = watcher.files();
    if (!old.isEmpty())
        watcher.removePaths(old);
    files = paths;
    watcher.addPaths(files);
}

void KeyFileWatch::check()
{
    const auto isThere = [](const QString& path) { return QFile::exists(path); };
    if (!std::all_of(files.cbegin(), files.cend(), isThere))
        emit isIncomplete();
}
