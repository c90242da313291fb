#include "base/filelock.h"

#include "base/logcategories.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QThread>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr unsigned long pollIntervalMs = 5;
constexpr mode_t lockFileMode = 0644; // reading is enough to lock

/// Passed on with the lock from thread to thread: it makes the order that flock() gives visible to
/// the memory model as well.
std::atomic<unsigned> handOver {0};

/// The open lock file, made when missing; -1 with errno set on failure.
int openLockFile(const QByteArray& name)
{
    const int flags = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    int descriptor = -1;
    do {
        // Two calls: with O_CREAT the kernel may refuse another user's file in a sticky directory.
        descriptor = open(name.constData(), flags);
        if (descriptor >= 0 || errno != ENOENT)
            return descriptor;
        descriptor = open(name.constData(), flags | O_CREAT | O_EXCL, lockFileMode);
    } while (descriptor < 0 && errno == EEXIST);
    if (descriptor >= 0)
        fchmod(descriptor, lockFileMode); // against a strict umask
    return descriptor;
}

bool isRegular(int descriptor)
{
    struct stat opened = {};
    return fstat(descriptor, &opened) == 0 && S_ISREG(opened.st_mode);
}

/// Whether the open file is still the one at @p name: it may have been tidied away meanwhile.
bool isFileAt(int descriptor, const QByteArray& name)
{
    struct stat opened = {};
    struct stat present = {};
    return fstat(descriptor, &opened) == 0 && stat(name.constData(), &present) == 0
        && opened.st_dev == present.st_dev && opened.st_ino == present.st_ino;
}

} // namespace

FileLock::FileLock(const QString& path, int waitMs, Kind kind)
{
    const QByteArray name = QFile::encodeName(path);
    const QDeadlineTimer deadline(waitMs);
    while (!isHeld()) {
        const int opened = openLockFile(name);
        if (opened < 0) {
            qCDebug(guardLog) << "cannot open lock file" << path << std::strerror(errno);
            return;
        }
        if (!isRegular(opened)) {
            qCDebug(guardLog) << "no file, hence no lock:" << path;
            close(opened);
            return;
        }
        if (!lockBefore(deadline, opened, kind)) {
            if (waitMs > 0)
                qCDebug(guardLog) << "gave up waiting for lock file" << path;
            close(opened);
            return;
        }
        if (isFileAt(opened, name)) {
            descriptor = opened;
        } else {
            close(opened);
            if (deadline.hasExpired())
                return;
        }
    }
    handOver.fetch_add(1, std::memory_order_acq_rel);
}

FileLock::~FileLock()
{
    if (!isHeld())
        return;
    handOver.fetch_add(1, std::memory_order_acq_rel);
    close(descriptor);
}

bool FileLock::lockBefore(const QDeadlineTimer& deadline, int file, Kind kind)
{
    const int operation = (kind == Kind::Shared ? LOCK_SH : LOCK_EX) | LOCK_NB;
    while (flock(file, operation) != 0) {
        taken = errno == EWOULDBLOCK;
        if ((!taken && errno != EINTR) || deadline.hasExpired())
            return false;
        QThread::msleep(pollIntervalMs);
    }
    taken = false;
    return true;
}
