#include "base/filelock.h"

#include "support/patience.h"
#include "support/permissionchecks.h"

#include <QtTest>

#include <array>
#include <atomic>
#include <memory>
#include <sys/stat.h>
#include <thread>

class TestFileLock : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void onlyOneHoldsItAtATime();
    void sharedOnesHoldItTogether();
    void waitIsBounded();
    void waiterGetsItWhenTheHolderLetsGo();
    void threadsExcludeEachOther();
    void fileStaysAndIsOpenToAll();
    void fileThatWasRemovedIsMadeAgain();
    void isNotHeldWithoutAProperFile_data();
    void isNotHeldWithoutAProperFile();
    void noLockInAForbiddenDirectoryIsNoTakenOne();

private:
    QString path() const { return temporary->filePath("lock"); }

    std::unique_ptr<QTemporaryDir> temporary;
};

void TestFileLock::init()
{
    temporary = std::make_unique<QTemporaryDir>();
}

void TestFileLock::onlyOneHoldsItAtATime()
{
    {
        const FileLock first(path(), 0);
        QVERIFY(first.isHeld());
        QVERIFY(!FileLock(path(), 0).isHeld());
        QVERIFY(FileLock(temporary->filePath("other"), 0).isHeld());
        QVERIFY(!FileLock(path(), 0).isHeld());
    }
    QVERIFY(FileLock(path(), 0).isHeld());
}

void TestFileLock::sharedOnesHoldItTogether()
{
    constexpr auto shared = FileLock::Kind::Shared;
    {
        const FileLock first(path(), 0, shared);
        QVERIFY(first.isHeld());
        QVERIFY(FileLock(path(), 0, shared).isHeld());
        QVERIFY(FileLock(path(), 0).isTaken());
    }
    const FileLock alone(path(), 0);
    QVERIFY(alone.isHeld() && !alone.isTaken());
    QVERIFY(FileLock(path(), 0, shared).isTaken());
}

void TestFileLock::waitIsBounded()
{
    const FileLock holder(path(), 0);
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!FileLock(path(), 200).isHeld());
    QVERIFY(timer.elapsed() >= 200);
    QVERIFY(timer.elapsed() < patienceMs);
}

void TestFileLock::waiterGetsItWhenTheHolderLetsGo()
{
    auto holder = std::make_unique<FileLock>(path(), 0);
    std::atomic<bool> got {false};
    std::thread waiter([this, &got] { got = FileLock(path(), patienceMs).isHeld(); });
    QTest::qSleep(50);
    holder.reset();
    waiter.join();
    QVERIFY(got);
}

void TestFileLock::threadsExcludeEachOther()
{
    int plainCounter = 0;
    std::array<std::thread, 4> threads;
    for (std::thread& thread : threads) {
        thread = std::thread([this, &plainCounter] {
            for (int round = 0; round < 100; ++round) {
                const FileLock lock(path(), patienceMs);
                if (lock.isHeld())
                    ++plainCounter;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    QCOMPARE(plainCounter, 400);
}

void TestFileLock::fileStaysAndIsOpenToAll()
{
    const mode_t usual = umask(077);
    QVERIFY(FileLock(path(), 0).isHeld());
    umask(usual);
    struct stat state = {};
    QCOMPARE(stat(QFile::encodeName(path()).constData(), &state), 0);
    QCOMPARE(state.st_mode & 0444U, 0444U);
}

void TestFileLock::fileThatWasRemovedIsMadeAgain()
{
    auto holder = std::make_unique<FileLock>(path(), 0);
    std::atomic<bool> got {false};
    std::thread waiter([this, &got] {
        const FileLock lock(path(), patienceMs);
        got = lock.isHeld() && !FileLock(path(), 0).isHeld();
    });
    QTest::qSleep(50); // the waiter has the old file open by now, most likely
    QVERIFY(QFile::remove(path()));
    holder.reset();
    waiter.join();
    QVERIFY2(got, "the waiter holds the lock that later ones see");
}

void TestFileLock::isNotHeldWithoutAProperFile_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("no directory") << "missing";
    QTest::newRow("a directory") << "directory";
    QTest::newRow("a pipe") << "pipe";
    QTest::newRow("a link") << "link";
}

void TestFileLock::isNotHeldWithoutAProperFile()
{
    QFETCH(QString, kind);
    const QByteArray name = QFile::encodeName(path());
    if (kind == "directory")
        QVERIFY(QDir().mkdir(path()));
    if (kind == "pipe")
        QCOMPARE(mkfifo(name.constData(), 0600), 0);
    if (kind == "link")
        QVERIFY(QFile::link(temporary->filePath("elsewhere"), path()));
    QElapsedTimer timer;
    timer.start();
    const FileLock lock(kind == "missing" ? path() + "/lock" : path(), patienceMs);
    QVERIFY(!lock.isHeld() && !lock.isTaken());
    QVERIFY(timer.elapsed() < patienceMs / 2);
    QVERIFY(!QFile::exists(temporary->filePath("elsewhere")));
}

/// One who tries again while a lock is taken would do so for nothing here, with a log line each.
void TestFileLock::noLockInAForbiddenDirectoryIsNoTakenOne()
{
    const auto readable = QFile::ReadOwner | QFile::ExeOwner;
    QVERIFY(QFile::setPermissions(temporary->path(), readable));
    const PermissionChecks checks;
    const FileLock lock(path(), 0);
    QVERIFY(!lock.isHeld() && !lock.isTaken());
    QVERIFY(QFile::setPermissions(temporary->path(), readable | QFile::WriteOwner));
}

QTEST_GUILESS_MAIN(TestFileLock)
#include "tst_filelock.moc"
