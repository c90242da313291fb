#include "base/keyfile.h"

#include <QFile>
#include <QSharedMemory>

#include <fcntl.h>
#include <sys/ipc.h>
#include <sys/sem.h>
#include <sys/shm.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int triesForFreeKey = 32;
constexpr mode_t keyFileMode = 0640; // as Qt makes it

key_t plainKeyOf(const QByteArray& name)
{
    return ftok(name.constData(), 'Q');
}

int semaphoreOf(key_t key)
{
    return semget(key, 0, 0);
}

int segmentOf(key_t key)
{
    return shmget(key, 0, 0);
}

bool isOwnSemaphore(int id)
{
    semid_ds state = {};
    return semctl(id, 0, IPC_STAT, &state) == 0 && state.sem_perm.cuid == geteuid();
}

bool isOwnSegment(int id)
{
    shmid_ds state = {};
    return shmctl(id, IPC_STAT, &state) == 0 && state.shm_perm.cuid == geteuid();
}

bool isOwnFile(const QByteArray& name)
{
    struct stat state = {};
    return lstat(name.constData(), &state) == 0 && S_ISREG(state.st_mode)
        && state.st_uid == geteuid();
}

/// Makes the file at @p name, where there is none, with a key of which @p objectOf knows nothing.
bool makeWithFreeKey(const QByteArray& name, int (*objectOf)(key_t))
{
    std::vector<int> refused; // held open, so that their inode numbers do not come again
    bool isMade = false;
    while (!isMade && refused.size() < triesForFreeKey) {
        const int made = open(name.constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, keyFileMode);
        if (made < 0)
            break;
        refused.push_back(made);
        isMade = objectOf(plainKeyOf(name)) < 0;
        if (!isMade)
            unlink(name.constData());
    }
    for (const int descriptor : refused)
        close(descriptor);
    return isMade;
}

} // namespace

bool KeyFile::prepareSemaphore(const QString& path)
{
    removeSemaphore(path);
    return makeWithFreeKey(QFile::encodeName(path), semaphoreOf);
}

bool KeyFile::prepareSegment(const QString& path)
{
    const QByteArray name = QFile::encodeName(path);
    if (isOwnFile(name)) {
        const int segment = segmentOf(plainKeyOf(name));
        if (segment < 0 || isOwnSegment(segment))
            return true;
        unlink(name.constData());
    }
    return makeWithFreeKey(name, segmentOf);
}

void KeyFile::removeSemaphore(const QString& path)
{
    const QByteArray name = QFile::encodeName(path);
    if (!isOwnFile(name))
        return;
    const int semaphore = semaphoreOf(plainKeyOf(name));
    if (semaphore >= 0 && isOwnSemaphore(semaphore))
        semctl(semaphore, 0, IPC_RMID);
    unlink(name.constData());
}

void KeyFile::removeSegment(const QString& path)
{
    const QByteArray name = QFile::encodeName(path);
    if (!isOwnFile(name))
        return;
    const int segment = segmentOf(plainKeyOf(name));
    if (segment >= 0 && isOwnSegment(segment))
        shmctl(segment, IPC_RMID, nullptr);
    unlink(name.constData());
}

QString KeyFile::semaphorePath(const QString& key)
{
    return segmentPath(key).replace(QLatin1String("/qipc_sharedmemory_"),
                                    QLatin1String("/qipc_systemsem_"));
}

QString KeyFile::segmentPath(const QString& key)
{
    return QSharedMemory(key).nativeKey();
}

key_t KeyFile::keyOf(const QString& path)
{
    return plainKeyOf(QFile::encodeName(path));
}
