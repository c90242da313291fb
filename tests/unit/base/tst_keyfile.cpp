#include "base/keyfile.h"

#include "support/privatetmp.h"
#include "support/systemvobjects.h"

#include <QSharedMemory>
#include <QSystemSemaphore>
#include <QtTest>

#include <memory>

namespace {

const QString theKey = QStringLiteral("tst_keyfile");

/// The key of the file at @p path, which is made when missing.
key_t plainKey(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadWrite) ? ftok(QFile::encodeName(path), 'Q') : -1;
}

} // namespace

class TestKeyFile : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void pathsAreThoseOfQt();
    void semaphoreGetsAKeyOfItsOwn();
    void segmentGetsAKeyOfItsOwn();
    void presentFilesStay();
    void takenSemaphoreIsFreed();
    void freeSemaphoreStaysAsItIs();

private:
    std::unique_ptr<PrivateTmp> temporary;
};

void TestKeyFile::init()
{
    temporary = std::make_unique<PrivateTmp>();
}

void TestKeyFile::cleanup()
{
    SystemVObjects::removeAll();
    temporary.reset();
}

void TestKeyFile::pathsAreThoseOfQt()
{
    const QString path = KeyFile::semaphorePath(theKey);
    QCOMPARE(QFileInfo(path).path(), temporary->path());
    QVERIFY(!QFile::exists(path));
    const QSystemSemaphore semaphore(theKey, 1);
    QVERIFY(QFile::exists(path));
    QVERIFY(semget(plainKey(path), 1, 0) >= 0);
}

void TestKeyFile::semaphoreGetsAKeyOfItsOwn()
{
    const QString path = KeyFile::semaphorePath(theKey);
    const key_t used = plainKey(path);
    QVERIFY(semget(used, 1, IPC_CREAT | 0600) >= 0);
    QVERIFY(QFile::remove(path));
    if (plainKey(path) != used)
        QSKIP("this file system does not give the same inode number again");
    QVERIFY(QFile::remove(path));
    KeyFile::prepareSemaphore(path);
    QVERIFY(QFile::exists(path));
    QVERIFY(plainKey(path) != used);
    semctl(semget(used, 1, 0), 0, IPC_RMID);
}

void TestKeyFile::segmentGetsAKeyOfItsOwn()
{
    const QString path = QSharedMemory(theKey).nativeKey();
    const key_t used = plainKey(path);
    const int segment = shmget(used, 1, IPC_CREAT | 0600);
    QVERIFY(segment >= 0);
    QVERIFY(QFile::remove(path));
    if (plainKey(path) != used)
        QSKIP("this file system does not give the same inode number again");
    QVERIFY(QFile::remove(path));
    KeyFile::prepareSegment(path);
    QVERIFY(QFile::exists(path));
    QVERIFY(plainKey(path) != used);
    shmctl(segment, IPC_RMID, nullptr);
}

void TestKeyFile::presentFilesStay()
{
    const QString path = temporary->path() + "/present";
    const key_t used = plainKey(path);
    const int semaphore = semget(used, 1, IPC_CREAT | 0600);
    const int segment = shmget(used, 1, IPC_CREAT | 0600);
    KeyFile::prepareSemaphore(path);
    KeyFile::prepareSegment(path);
    QCOMPARE(plainKey(path), used);
    QCOMPARE(semctl(semaphore, 0, IPC_RMID), 0);
    QCOMPARE(shmctl(segment, IPC_RMID, nullptr), 0);
}

void TestKeyFile::takenSemaphoreIsFreed()
{
    QSystemSemaphore semaphore(theKey, 1, QSystemSemaphore::Create);
    QVERIFY(semaphore.acquire());
    KeyFile::prepareSemaphore(KeyFile::semaphorePath(theKey));
    QVERIFY(semaphore.acquire()); // would wait for ever
}

void TestKeyFile::freeSemaphoreStaysAsItIs()
{
    const QSystemSemaphore semaphore(theKey, 2, QSystemSemaphore::Create);
    const QString path = KeyFile::semaphorePath(theKey);
    KeyFile::prepareSemaphore(path);
    QCOMPARE(semctl(semget(plainKey(path), 1, 0), 0, GETVAL), 2);
}

QTEST_GUILESS_MAIN(TestKeyFile)
#include "tst_keyfile.moc"
