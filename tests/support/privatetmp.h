#pragma once

#include <QTemporaryDir>
#include <QtGlobal>

/// A temporary directory (TMPDIR) of its own for a test and its subjects, and with it a world of
/// its own for all that is known by key files.
class PrivateTmp
{
public:
    PrivateTmp()
        : previous(qgetenv("TMPDIR"))
    {
        qputenv("TMPDIR", directory.path().toLocal8Bit());
    }

    ~PrivateTmp() { qputenv("TMPDIR", previous); }
    PrivateTmp(const PrivateTmp&) = delete;
    PrivateTmp& operator=(const PrivateTmp&) = delete;

    QString path() const { return directory.path(); }

private:
    const QByteArray previous;
    const QTemporaryDir directory;
};
