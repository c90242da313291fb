#include "ipc/runguard.h"

#include "base/filelock.h"
#include "base/keyfile.h"

#include <QCryptographicHash>
#include <QDir>

namespace {

constexpr int waitAtStartMs = 2500; // for each turn; a start takes two of them at most
constexpr int waitAtEndMs = 1000;
constexpr int markerSize = sizeof(qint64); // bytes; the content is never used

QString generateKeyHash(QString const& key, QString const& salt)
{
    const QByteArray data = key.toUtf8() + salt.toUtf8();
    return QString::fromLatin1(QCryptographicHash::hash(data, QCryptographicHash::Sha1).toHex());
}

} // namespace

RunGuard::RunGuard(QString const& guardKey)
    : key(guardKey)
    , memLockKey(generateKeyHash(key, QStringLiteral("_memLockKey")))
    , sharedmemKey(generateKeyHash(key, QStringLiteral("_sharedmemKey")))
{
    const FileLock turn(lockPath(), waitAtStartMs);
    if (!prepare(turn))
        return;
    memLock->acquire();
    {
        // The last one to leave a segment removes it, also one that a crashed copy left behind.
        QSharedMemory stale(sharedmemKey);
        stale.attach();
    }
    memLock->release();
}

RunGuard::~RunGuard()
{
    if (!memLock)
        return;
    const FileLock turn(lockPath(), waitAtEndMs);
    if (turn.isHeld()) {
        detachMarker(turn);
        memLock.reset();
        sharedMem.reset();
    } else {
        // Their destructors could wait for ever for a process that is stopped.
        static_cast<void>(memLock.release());
        static_cast<void>(sharedMem.release());
    }
}

bool RunGuard::isAnotherRunning()
{
    if (holdsMarker)
        return false;
    const FileLock turn(lockPath(), waitAtStartMs);
    if (!prepare(turn))
        return true;
    const bool locked = memLock->acquire();
    const bool attached = sharedMem->attach();
    const bool foreign = memLock->error() == QSystemSemaphore::PermissionDenied
        || sharedMem->error() == QSharedMemory::PermissionDenied;
    if (attached)
        sharedMem->detach();
    if (locked)
        memLock->release();
    return attached || foreign;
}

bool RunGuard::tryToRun()
{
    if (isAnotherRunning())
        return false;
    if (!createMarker()) {
        release();
        return false;
    }
    return true;
}

bool RunGuard::createMarker()
{
    const FileLock turn(lockPath(), waitAtStartMs);
    if (!prepare(turn))
        return false;
    KeyFile::prepareSegment(sharedMem->nativeKey());
    memLock->acquire();
    holdsMarker = sharedMem->create(markerSize);
    memLock->release();
    return holdsMarker;
}

void RunGuard::release()
{
    const FileLock turn(lockPath(), waitAtEndMs);
    detachMarker(turn);
}

void RunGuard::detachMarker(const FileLock& turn)
{
    if (!holdsMarker || !prepare(turn))
        return;
    memLock->acquire();
    if (sharedMem->isAttached())
        sharedMem->detach();
    memLock->release();
    holdsMarker = false;
}

/// To be called first in every turn: makes the objects when there are none, and sees to it that
/// none of Qt's waits on them can last. False when the turn was not granted.
bool RunGuard::prepare(const FileLock& turn)
{
    if (!turn.isHeld())
        return false;
    // A used object would remove its key files and make them again while it attaches.
    if (!holdsMarker)
        sharedMem.reset();
    KeyFile::prepareSemaphore(KeyFile::semaphorePath(memLockKey));
    KeyFile::prepareSemaphore(KeyFile::semaphorePath(sharedmemKey));
    if (!sharedMem)
        sharedMem = std::make_unique<QSharedMemory>(sharedmemKey);
    if (!memLock)
        memLock = std::make_unique<QSystemSemaphore>(memLockKey, 1, QSystemSemaphore::Open);
    return true;
}

QString RunGuard::lockPath() const
{
    return QDir::tempPath() + QLatin1String("/runguard_") + memLockKey + QLatin1String(".lock");
}
