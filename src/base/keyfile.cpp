#include "base/keyfile.h"

#include <QFile>
#include <QSharedMemory>

#include <fcntl.h>
#include <sys/ipc.h>
#include <sys/sem.h>
#include <sys/shm.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int triesForFreeKey = 32;
constexpr mode_t keyFileMode = 0640; // as Qt makes it

/// The key that Qt makes from the file; -1 when there is none.
key_t keyOf(const QByteArray& name)
{
    return ftok(name.constData(), 'Q');
}

bool isSemaphore(key_t key)
{
    return semget(key, 0, 0) >= 0;
}

bool isSegment(key_t key)
{
    return shmget(key, 0, 0) >= 0;
}

/// Makes the file at @p name, if there is none, with a key for which @p isUsed is false.
void makeWithFreeKey(const QByteArray& name, bool (*isUsed)(key_t))
{
    std::vector<int> refused; // held open, so that their inode numbers do not come again
    while (refused.size() < triesForFreeKey) {
        const int made = open(name.constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, keyFileMode);
        if (made < 0)
            break;
        refused.push_back(made);
        if (!isUsed(keyOf(name)))
            break;
        unlink(name.constData());
    }
    for (const int descriptor : refused)
        close(descriptor);
}

} // namespace

void KeyFile::prepareSemaphore(const QString& path)
{
    const QByteArray name = QFile::encodeName(path);
    makeWithFreeKey(name, isSemaphore);
    const int semaphore = semget(keyOf(name), 1, 0);
    if (semaphore >= 0 && semctl(semaphore, 0, GETVAL) == 0)
        semctl(semaphore, 0, SETVAL, 1);
}

void KeyFile::prepareSegment(const QString& path)
{
    makeWithFreeKey(QFile::encodeName(path), isSegment);
}

QString KeyFile::semaphorePath(const QString& key)
{
    return QSharedMemory(key).nativeKey().replace(QLatin1String("/qipc_sharedmemory_"),
                                                  QLatin1String("/qipc_systemsem_"));
}
