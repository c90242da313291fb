#include "ipc/runguard.h"

#include "base/attachedsegment.h"
#include "base/filelock.h"
#include "base/keyfile.h"
#include "base/keyfilewatch.h"
#include "base/logcategories.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QThread>

#include <sys/shm.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

constexpr int waitAtStartMs = 2500;
constexpr int waitForLookMs = 100;
constexpr int waitAtEndMs = 1000;
constexpr int waitForQuitMs = 3000;
constexpr unsigned long quitPollMs = 20;
constexpr int triesAtStart = 10;
constexpr int markerSize = sizeof(qint64); // bytes; the content is never used
const QString memLockSalt = QStringLiteral("_memLockKey");
const QString sharedmemSalt = QStringLiteral("_sharedmemKey");

QString generateKeyHash(QString const& key, QString const& salt)
{
    const QByteArray data = key.toUtf8() + salt.toUtf8();
    return QString::fromLatin1(QCryptographicHash::hash(data, QCryptographicHash::Sha1).toHex());
}

/// The key of a copy that cannot use the common objects.
QString ownKey(QString const& key, uid_t user, pid_t process)
{
    return key + QStringLiteral("_%1_%2").arg(user).arg(process);
}

key_t markerKey(QString const& key)
{
    return KeyFile::keyOf(KeyFile::segmentPath(generateKeyHash(key, sharedmemSalt)));
}

/// Where TMPDIR is no directory to write in, Qt would put the key files into the root directory.
void ensureTemporaryDirectory()
{
    const QString path = qEnvironmentVariable("TMPDIR");
    const QFileInfo directory(path);
    if (path.isEmpty() || (directory.isDir() && directory.isWritable()))
        return;
    qCWarning(guardLog).noquote() << "TMPDIR is no directory to write in, taking /tmp:" << path;
    qputenv("TMPDIR", "/tmp");
}

} // namespace

RunGuard* RunGuard::holder = nullptr;

RunGuard::RunGuard(QString const& guardKey)
    : key(guardKey)
    , memLockKey(generateKeyHash(key, memLockSalt))
    , sharedmemKey(generateKeyHash(key, sharedmemSalt))
{
    ensureTemporaryDirectory();
    clearStaleMarker(FileLock(lockPath(), 0));
}

RunGuard::~RunGuard()
{
    release();
}

std::optional<AttachedSegment> RunGuard::findAnother()
{
    if (holdsMarker)
        return std::nullopt;
    if (const auto marker = findMarker())
        return marker;
    // It may be gone for a moment, while its key files are made anew.
    return findAnother(FileLock(lockPath(), waitForLookMs));
}

std::optional<AttachedSegment> RunGuard::findAnother(const FileLock& turn)
{
    const auto marker = findMarker();
    if (!marker)
        clearStaleMarker(turn);
    return marker;
}

bool RunGuard::isAnotherRunning()
{
    return findAnother().has_value();
}

bool RunGuard::tryToRun()
{
    if (holdsMarker)
        return true;
    awaitEndOfQuitting();
    const FileLock turn(lockPath(), waitAtStartMs);
    if (!turn.isHeld())
        qCWarning(guardLog).noquote() << "starting without the lock file" << lockPath();
    for (int round = 0; round < triesAtStart; ++round) {
        if (findAnother(turn) || !createMarker(turn))
            return false;
        if (!findMarker())
            return true;
        // One that had no lock either made its own at the same moment.
        detachMarker();
        QThread::msleep(QRandomGenerator::global()->bounded(10U, 100U));
    }
    return false;
}

void RunGuard::release()
{
    if (!holdsMarker)
        return;
    watch.reset();
    const FileLock turn(lockPath(), waitAtEndMs);
    if (turn.isHeld())
        detachMarker();
    else
        abandonMarker();
}

void RunGuard::announceEnd()
{
    if (holder)
        AttachedSegment::flag(holder->markerId);
}

void RunGuard::awaitEndOfQuitting() const
{
    const QDeadlineTimer deadline(waitForQuitMs);
    std::optional<AttachedSegment> marker = findMarker();
    if (marker && marker->isFlagged)
        qCDebug(guardLog) << "waiting for the end of a copy that is quitting";
    while (marker && marker->isFlagged && !deadline.hasExpired()) {
        QThread::msleep(quitPollMs);
        marker = findMarker();
    }
}

/// The marker of another copy that runs.
std::optional<AttachedSegment> RunGuard::findMarker() const
{
    const key_t common = markerKey(key);
    for (const AttachedSegment& segment : AttachedSegment::all()) {
        if (segment.size != markerSize || segment.id == markerId)
            continue;
        if (segment.key == common
            || segment.key == markerKey(ownKey(key, segment.creator, segment.creatorPid)))
            return segment;
    }
    return std::nullopt;
}

/// The last one to leave a segment removes it, also one that a crashed copy left behind.
void RunGuard::clearStaleMarker(const FileLock& turn)
{
    if (!turn.isHeld() || findMarker() || !prepareLock(key))
        return;
    memLock->acquire();
    {
        QSharedMemory stale(sharedmemKey);
        stale.attach();
    }
    memLock->release();
    memLock.reset();
}

bool RunGuard::createMarker(const FileLock& turn)
{
    const bool isCreated =
        (turn.isHeld() && createMarker(key)) || createMarker(ownKey(key, geteuid(), getpid()));
    if (!isCreated)
        return false;
    holder = this;
    markerId = shmget(KeyFile::keyOf(sharedMem->nativeKey()), 0, 0);
    if (!watch) {
        watch = std::make_unique<KeyFileWatch>();
        QObject::connect(watch.get(), &KeyFileWatch::isIncomplete, [this] { renewMarker(); });
    }
    watch->watch({KeyFile::segmentPath(sharedmemKey), KeyFile::semaphorePath(memLockKey),
                  KeyFile::semaphorePath(sharedmemKey)});
    return true;
}

bool RunGuard::createMarker(QString const& variant)
{
    if (!prepareMarker(variant))
        return false;
    memLock->acquire();
    holdsMarker = sharedMem->create(markerSize);
    memLock->release();
    if (!holdsMarker)
        detachMarker();
    return holdsMarker;
}

/// Makes the lock, and the key file of the marker's own. False when their names are of no use.
bool RunGuard::prepareLock(QString const& variant)
{
    memLock.reset();
    memLockKey = generateKeyHash(variant, memLockSalt);
    sharedmemKey = generateKeyHash(variant, sharedmemSalt);
    if (!KeyFile::prepareSemaphore(KeyFile::semaphorePath(memLockKey)))
        return false;
    // Before the other one's key is chosen, which must differ.
    memLock = std::make_unique<QSystemSemaphore>(memLockKey, 1, QSystemSemaphore::Open);
    return KeyFile::prepareSemaphore(KeyFile::semaphorePath(sharedmemKey));
}

bool RunGuard::prepareMarker(QString const& variant)
{
    if (prepareLock(variant) && KeyFile::prepareSegment(KeyFile::segmentPath(sharedmemKey))) {
        sharedMem = std::make_unique<QSharedMemory>(sharedmemKey);
        return true;
    }
    KeyFile::removeSemaphore(KeyFile::semaphorePath(sharedmemKey));
    memLock.reset();
    return false;
}

/// To be called when a key file is gone.
void RunGuard::renewMarker()
{
    qCDebug(guardLog) << "key files are gone, making them anew";
    const FileLock turn(lockPath(), waitForLookMs);
    detachMarker();
    if (!createMarker(turn))
        qCWarning(guardLog) << "other copies can no longer find this one";
}

void RunGuard::detachMarker()
{
    memLock->acquire();
    if (sharedMem->isAttached())
        sharedMem->detach();
    memLock->release();
    memLock.reset();
    sharedMem.reset();
    forgetMarker();
}

/// Without the file lock: Qt's steps could wait for a process that is stopped in its own.
void RunGuard::abandonMarker()
{
    KeyFile::removeSegment(KeyFile::segmentPath(sharedmemKey));
    shmdt(sharedMem->constData());
    for (const QString& lock : {memLockKey, sharedmemKey})
        KeyFile::removeSemaphore(KeyFile::semaphorePath(lock));
    struct Abandoned
    {
        std::unique_ptr<QSystemSemaphore> lock;
        std::unique_ptr<QSharedMemory> marker;
    };
    static auto* const kept = new std::vector<Abandoned>; // never destroyed, like what it holds
    kept->push_back({std::move(memLock), std::move(sharedMem)});
    forgetMarker();
}

void RunGuard::forgetMarker()
{
    markerId = -1;
    holdsMarker = false;
    if (holder == this)
        holder = nullptr;
}

QString RunGuard::lockPath() const
{
    return QDir::tempPath() + QLatin1String("/runguard_") + generateKeyHash(key, memLockSalt)
        + QLatin1String(".lock");
}
