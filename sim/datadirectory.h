#pragma once

#include <QString>
#include <QStringList>

/**
 * The engine's data directory: "Vireon" in the user's documents directory, or in the current
 * directory where there is none. The controller looks for it in the same way.
 */
class DataDirectory
{
public:
    DataDirectory();
    ~DataDirectory();
    Q_DISABLE_COPY(DataDirectory)

    /// Absolute, whatever the current directory becomes later.
    QString path() const { return directory; }

    bool exists() const;

    /// Creates the directory and its parents where they are missing; false on failure.
    bool create() const;

    /// The names of all that is in it, hidden files too, sorted by code point.
    QStringList names() const;

    QString filePath(const QString& name) const;

    /// The status file that the controller reads.
    QString statusFile() const;

    /// The address of the engine's socket. A path that is too long for a socket is reached through
    /// a handle of the directory, which must exist then; empty when it does not.
    QString socketAddress() const;

    /// The file of that socket.
    QString socketFile() const;

private:
    QString directory;
    mutable int handle = -1;
};
