#include "base/keyfile.h"

#include "support/privatetmp.h"
#include "support/systemvobjects.h"

#include <QSharedMemory>
#include <QSystemSemaphore>
#include <QtTest>

#include <memory>
#include <sys/stat.h>
#include <vector>

namespace {

const QString theKey = QStringLiteral("tst_keyfile");
constexpr uid_t otherUser = 65534;

/// The key of the file at @p path, which is made when missing.
key_t plainKey(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadWrite) ? KeyFile::keyOf(path) : -1;
}

/// The key of a new file at @p path, of which this machine knows no object yet.
key_t unusedKey(const QString& path)
{
    std::vector<std::unique_ptr<QFile>> refused; // their inode numbers do not come again
    key_t key = plainKey(path);
    while (key != -1 && (semget(key, 0, 0) >= 0 || shmget(key, 0, 0) >= 0)) {
        refused.push_back(std::make_unique<QFile>(path));
        if (!refused.back()->open(QIODevice::ReadOnly) || unlink(QFile::encodeName(path)) != 0)
            return -1;
        key = plainKey(path);
    }
    return key;
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
    void leftOverSemaphoreGoes();
    void segmentOfThisUserStays();
    void namesOfAnotherUserAreOfNoUse_data();
    void namesOfAnotherUserAreOfNoUse();
    void keyOfAnotherUsersObjectIsNotTaken();
    void objectsAreRemovedWithTheirFiles();

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
    const key_t used = unusedKey(path);
    QVERIFY(semget(used, 1, IPC_CREAT | 0600) >= 0);
    QVERIFY(QFile::remove(path));
    if (plainKey(path) != used)
        QSKIP("this file system does not give the same inode number again");
    QVERIFY(QFile::remove(path));
    QVERIFY(KeyFile::prepareSemaphore(path));
    QVERIFY(QFile::exists(path));
    QVERIFY(plainKey(path) != used);
    semctl(semget(used, 1, 0), 0, IPC_RMID);
}

void TestKeyFile::segmentGetsAKeyOfItsOwn()
{
    const QString path = QSharedMemory(theKey).nativeKey();
    const key_t used = unusedKey(path);
    const int segment = shmget(used, 1, IPC_CREAT | 0600);
    QVERIFY(segment >= 0);
    QVERIFY(QFile::remove(path));
    if (plainKey(path) != used)
        QSKIP("this file system does not give the same inode number again");
    QVERIFY(QFile::remove(path));
    QVERIFY(KeyFile::prepareSegment(path));
    QVERIFY(QFile::exists(path));
    QVERIFY(plainKey(path) != used);
    shmctl(segment, IPC_RMID, nullptr);
}

void TestKeyFile::leftOverSemaphoreGoes()
{
    const QString path = KeyFile::semaphorePath(theKey);
    const int old = semget(unusedKey(path), 1, IPC_CREAT | 0600); // and taken: its value is 0
    QVERIFY(old >= 0);
    QVERIFY(KeyFile::prepareSemaphore(path));
    QVERIFY(QFile::exists(path));
    QVERIFY(semctl(old, 0, GETVAL) < 0);
    QVERIFY(semget(KeyFile::keyOf(path), 0, 0) < 0);
    QSystemSemaphore semaphore(theKey, 1);
    QVERIFY(semaphore.acquire());
}

void TestKeyFile::segmentOfThisUserStays()
{
    const QString path = KeyFile::segmentPath(theKey);
    const key_t used = unusedKey(path);
    const int segment = shmget(used, 1, IPC_CREAT | 0600);
    QVERIFY(KeyFile::prepareSegment(path));
    QCOMPARE(KeyFile::keyOf(path), used);
    QCOMPARE(shmget(used, 0, 0), segment);
    QCOMPARE(shmctl(segment, IPC_RMID, nullptr), 0);
    QVERIFY(KeyFile::prepareSegment(path));
    QCOMPARE(KeyFile::keyOf(path), used);
}

void TestKeyFile::namesOfAnotherUserAreOfNoUse_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("a file") << "file";
    QTest::newRow("a directory") << "directory";
    QTest::newRow("a link to nothing") << "link";
}

void TestKeyFile::namesOfAnotherUserAreOfNoUse()
{
    QFETCH(QString, kind);
    const QString path = temporary->path() + "/key";
    const QByteArray name = QFile::encodeName(path);
    if (kind == "directory")
        QVERIFY(QDir().mkdir(path));
    if (kind == "link")
        QVERIFY(QFile::link(temporary->path() + "/missing", path));
    if (kind == "file") {
        QVERIFY(plainKey(path) != -1);
        if (chown(name.constData(), otherUser, otherUser) != 0)
            QSKIP("only root can make files of other users");
    }
    QVERIFY(!KeyFile::prepareSemaphore(path));
    QVERIFY(!KeyFile::prepareSegment(path));
    KeyFile::removeSemaphore(path);
    KeyFile::removeSegment(path);
    struct stat state = {};
    QCOMPARE(lstat(name.constData(), &state), 0);
}

void TestKeyFile::keyOfAnotherUsersObjectIsNotTaken()
{
    if (geteuid() != 0)
        QSKIP("only root can make objects of other users");
    const QString path = temporary->path() + "/key";
    const QString segmentsPath = temporary->path() + "/other";
    const key_t used = unusedKey(path);
    const key_t usedBySegment = unusedKey(segmentsPath);
    QVERIFY(seteuid(otherUser) == 0);
    const int segment = shmget(usedBySegment, 1, IPC_CREAT | 0600);
    const int semaphore = semget(used, 1, IPC_CREAT | 0600);
    QVERIFY(seteuid(0) == 0);
    QVERIFY(segment >= 0 && semaphore >= 0);
    QVERIFY(KeyFile::prepareSemaphore(path));
    QVERIFY(KeyFile::keyOf(path) != used);
    QCOMPARE(semget(used, 0, 0), semaphore);
    QVERIFY(KeyFile::prepareSegment(segmentsPath));
    QVERIFY(KeyFile::keyOf(segmentsPath) != usedBySegment);
    QCOMPARE(shmget(usedBySegment, 0, 0), segment);
    QCOMPARE(semctl(semaphore, 0, IPC_RMID), 0);
    QCOMPARE(shmctl(segment, IPC_RMID, nullptr), 0);
}

void TestKeyFile::objectsAreRemovedWithTheirFiles()
{
    const QString path = temporary->path() + "/key";
    const int semaphore = semget(unusedKey(path), 1, IPC_CREAT | 0600);
    KeyFile::removeSemaphore(path);
    QVERIFY(!QFile::exists(path));
    QVERIFY(semctl(semaphore, 0, GETVAL) < 0);
    const int segment = shmget(unusedKey(path), 1, IPC_CREAT | 0600);
    KeyFile::removeSegment(path);
    QVERIFY(!QFile::exists(path));
    shmid_ds state = {};
    QVERIFY(shmctl(segment, IPC_STAT, &state) < 0);
}

QTEST_GUILESS_MAIN(TestKeyFile)
#include "tst_keyfile.moc"
