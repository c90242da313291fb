#include "ipc/runguard.h"

#include "base/keyfile.h"
#include "support/logrecorder.h"
#include "support/patience.h"
#include "support/privatetmp.h"
#include "support/subjectprocess.h"

#include <QtTest>

#include <memory>
#include <sys/stat.h>
#include <vector>

namespace {

const QString theKey = QStringLiteral("tst_runguard");
constexpr mode_t openToAll = 01777;

QString hashedKey(const char* salt)
{
    const QByteArray text = theKey.toUtf8() + salt;
    return QCryptographicHash::hash(text, QCryptographicHash::Sha1).toHex();
}

/// How often a race is run: few times with the other tests, often by bench/guard_contention.
int rounds(const char* variable, int usual)
{
    return qEnvironmentVariableIsSet(variable) ? qEnvironmentVariableIntValue(variable) : usual;
}

class Copy : public SubjectProcess
{
public:
    explicit Copy(const QStringList& prefix = {}, const QString& key = theKey)
        : SubjectProcess(QStringLiteral("guardsubject"), {key}, prefix)
    {
    }
};

QStringList asUser(const char* user)
{
    return {"setpriv", QString("--reuid=") + user, QString("--regid=") + user, "--clear-groups"};
}

/// Whether a process that is started with @p prefix reaches the directory at @p path.
bool mayWrite(const QStringList& prefix, const QString& path)
{
    const QStringList command = prefix + QStringList {"test", "-w", path};
    return QProcess::execute(command.first(), command.mid(1)) == 0;
}

} // namespace

class TestRunGuard : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void secondCopyIsRefusedUntilTheFirstEnds();
    void nextCopyWinsAfterTheFirstWasKilled();
    void copyThatLooksOnSeesTheHolderGo();
    void holderSeesNoOther();
    void differentKeysDoNotBlock();
    void guardThatHoldsNothingReleasesNothing();
    void objectsAreKnownByHashes();
    void refusesWhenNoFileCanBeMade();
    void refusesWhenTheSegmentCannotBeMade();
    void nothingButTheLockFileStays();

    void exactlyOneOfManyWins_data();
    void exactlyOneOfManyWins();
    void copiesStartWhileTheHolderQuits();
    void nextCopyWinsAfterKillsAtRandom();
    void nextCopyWinsAfterTheLockHolderWasKilled();
    void stoppedLockHolderDelaysTheStartOnly();
    void stoppedLockHolderDelaysTheQuitOnly();
    void semaphoresLeftTakenAreFreed();
    void copyOfAnotherUserCounts_data();
    void copyOfAnotherUserCounts();

private:
    static void leaveObjectsBehind(int kind);

    std::unique_ptr<PrivateTmp> temporary;
    std::unique_ptr<QTemporaryDir> working;
    std::unique_ptr<LogRecorder> log;
};

void TestRunGuard::init()
{
    working = std::make_unique<QTemporaryDir>();
    temporary = std::make_unique<PrivateTmp>();
    QDir::setCurrent(working->path());
    log = std::make_unique<LogRecorder>(LogRecorder::Messages::PassedOn);
}

void TestRunGuard::cleanup()
{
    const QStringList warnings = log->warnings();
    log.reset();
    QDir::setCurrent(QDir::homePath());
    SystemVObjects::removeAll();
    temporary.reset();
    QCOMPARE(warnings, QStringList());
    QVERIFY(QDir(working->path()).isEmpty());
}

void TestRunGuard::secondCopyIsRefusedUntilTheFirstEnds()
{
    Copy first;
    QCOMPARE(first.ask("try"), QByteArray("won"));
    Copy second;
    QCOMPARE(second.ask("try"), QByteArray("refused"));
    QVERIFY(second.ends());
    QCOMPARE(first.ask("end"), QByteArray("ended"));
    QVERIFY(first.ends());
    Copy third;
    QCOMPARE(third.ask("try"), QByteArray("won"));
}

void TestRunGuard::nextCopyWinsAfterTheFirstWasKilled()
{
    Copy first;
    QCOMPARE(first.ask("try"), QByteArray("won"));
    first.killHard();
    Copy second;
    QCOMPARE(second.ask("try"), QByteArray("won"));
}

void TestRunGuard::copyThatLooksOnSeesTheHolderGo()
{
    Copy first;
    QCOMPARE(first.ask("try"), QByteArray("won"));
    RunGuard guard(theKey);
    QVERIFY(guard.isAnotherRunning());
    QVERIFY(guard.isAnotherRunning());
    first.killHard();
    // The first look finds the marker that the killed copy left, and drops it.
    QTRY_VERIFY_WITH_TIMEOUT(!guard.isAnotherRunning(), patienceMs);
    QVERIFY(guard.tryToRun());
}

void TestRunGuard::holderSeesNoOther()
{
    RunGuard guard(theKey);
    QVERIFY(guard.tryToRun());
    QVERIFY(!guard.isAnotherRunning());
    Copy other;
    QCOMPARE(other.ask("ask"), QByteArray("running"));
    guard.release();
    QCOMPARE(other.ask("ask"), QByteArray("free"));
    QVERIFY(!guard.isAnotherRunning());
    QVERIFY(guard.tryToRun());
}

void TestRunGuard::differentKeysDoNotBlock()
{
    RunGuard guard(theKey);
    QVERIFY(guard.tryToRun());
    Copy other({}, theKey + "2");
    QCOMPARE(other.ask("ask"), QByteArray("free"));
    QCOMPARE(other.ask("try"), QByteArray("won"));
}

void TestRunGuard::guardThatHoldsNothingReleasesNothing()
{
    RunGuard guard(theKey);
    QVERIFY(guard.tryToRun());
    {
        RunGuard other(theKey);
        QVERIFY(!other.tryToRun());
        other.release();
    }
    QVERIFY(RunGuard(theKey).isAnotherRunning());
}

void TestRunGuard::objectsAreKnownByHashes()
{
    RunGuard guard(theKey);
    QVERIFY(guard.tryToRun());
    QSharedMemory marker(hashedKey("_sharedmemKey"));
    QVERIFY(marker.attach(QSharedMemory::ReadOnly));
    QVERIFY(marker.size() >= 8);
    QVERIFY(QFile::exists(KeyFile::semaphorePath(hashedKey("_memLockKey"))));
}

void TestRunGuard::refusesWhenNoFileCanBeMade()
{
    qputenv("TMPDIR", "/proc");
    RunGuard guard(theKey);
    QVERIFY(!guard.tryToRun());
    guard.release();
}

void TestRunGuard::refusesWhenTheSegmentCannotBeMade()
{
    RunGuard guard(theKey);
    // A directory takes the place of the key file, which Qt must have for a segment.
    const QString path = QSharedMemory(hashedKey("_sharedmemKey")).nativeKey();
    QVERIFY(QDir().mkpath(path));
    const int segment = shmget(ftok(QFile::encodeName(path), 'Q'), 1, IPC_CREAT | IPC_EXCL);
    QVERIFY(segment >= 0); // without permissions, for ordinary users
    QVERIFY(!guard.tryToRun());
    shmctl(segment, IPC_RMID, nullptr);
}

void TestRunGuard::nothingButTheLockFileStays()
{
    {
        RunGuard guard(theKey);
        QVERIFY(guard.tryToRun());
        Copy other;
        QCOMPARE(other.ask("try"), QByteArray("refused"));
        QVERIFY(other.ends());
    }
    const QString lockFile = "runguard_" + hashedKey("_memLockKey") + ".lock";
    QCOMPARE(QDir(temporary->path()).entryList(QDir::Files), QStringList(lockFile));
}

void TestRunGuard::leaveObjectsBehind(int kind)
{
    Copy crashing;
    crashing.ask(kind == 0 ? "try" : kind == 1 ? "spin" : "lock");
    crashing.killHard();
    if (kind == 3) {
        // As when something has tidied the directory: the objects stay, their names are gone.
        const QDir directory(QDir::tempPath());
        for (const QString& name : directory.entryList({"qipc_*"}))
            QFile::remove(directory.filePath(name));
    }
}

void TestRunGuard::exactlyOneOfManyWins_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("repeats");
    QTest::addColumn<bool>("stale");
    const int pairs = rounds("GUARD_PAIRS", 10);
    const int groups = rounds("GUARD_GROUPS", 5);
    QTest::newRow("pairs") << 2 << pairs << false;
    QTest::newRow("pairs, left-overs") << 2 << pairs << true;
    QTest::newRow("groups of six") << 6 << groups << false;
    QTest::newRow("groups of six, left-overs") << 6 << groups << true;
}

void TestRunGuard::exactlyOneOfManyWins()
{
    QFETCH(int, count);
    QFETCH(int, repeats);
    QFETCH(bool, stale);
    int ended = 0;
    for (int round = 0; round < repeats; ++round) {
        if (stale)
            leaveObjectsBehind(round % 4);
        std::vector<std::unique_ptr<Copy>> copies(static_cast<size_t>(count));
        for (auto& copy : copies)
            copy = std::make_unique<Copy>();
        for (const auto& copy : copies)
            copy->send("try");
        QByteArrayList answers;
        for (const auto& copy : copies)
            answers << copy->answer();
        QCOMPARE(answers.count("won"), 1);
        QCOMPARE(answers.count("refused"), count - 1);
        copies[static_cast<size_t>(answers.indexOf("won"))]->send("end");
        for (const auto& copy : copies) {
            QVERIFY(copy->ends());
            QCOMPARE(copy->log(), QByteArray());
            ++ended;
        }
    }
    qInfo("%d rounds, one winner each; %d copies ended when told", repeats, ended);
}

void TestRunGuard::copiesStartWhileTheHolderQuits()
{
    for (int round = 0; round < rounds("GUARD_PAIRS", 10); ++round) {
        Copy holder;
        Copy second;
        Copy third;
        QCOMPARE(holder.ask("try"), QByteArray("won"));
        holder.send("end");
        second.send("try");
        third.send("try");
        const QByteArrayList answers {second.answer(), third.answer()};
        QVERIFY(answers.count("won") <= 1);
        second.send("end");
        third.send("end");
        QVERIFY(holder.ends() && second.ends() && third.ends());
    }
}

void TestRunGuard::nextCopyWinsAfterKillsAtRandom()
{
    const int kills = rounds("GUARD_KILLS", 10);
    for (int round = 0; round < kills; ++round) {
        Copy first;
        Copy second;
        QCOMPARE(first.ask("spin"), QByteArray("spinning"));
        QCOMPARE(second.ask("spin"), QByteArray("spinning"));
        QTest::qSleep(QRandomGenerator::global()->bounded(1, 20));
        first.killHard();
        second.killHard();
        Copy next;
        QCOMPARE(next.ask("try"), QByteArray("won"));
        next.send("end");
        QVERIFY(next.ends());
        QCOMPARE(next.log(), QByteArray());
    }
    qInfo("%d kills, the next copy won each time", kills);
}

void TestRunGuard::nextCopyWinsAfterTheLockHolderWasKilled()
{
    Copy holder;
    QCOMPARE(holder.ask("lock"), QByteArray("locked"));
    holder.killHard();
    Copy next;
    QCOMPARE(next.ask("try"), QByteArray("won"));
}

void TestRunGuard::stoppedLockHolderDelaysTheStartOnly()
{
    Copy stopped;
    QCOMPARE(stopped.ask("lock"), QByteArray("locked"));
    stopped.signal(SIGSTOP);
    Copy waiting;
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(waiting.ask("try"), QByteArray("refused"));
    QVERIFY(waiting.ends());
    QVERIFY(timer.elapsed() >= 4900);
    QVERIFY(waiting.log().contains("gave up waiting for lock file"));
    stopped.killHard();
    Copy next;
    QCOMPARE(next.ask("try"), QByteArray("won"));
}

void TestRunGuard::stoppedLockHolderDelaysTheQuitOnly()
{
    Copy holder;
    QCOMPARE(holder.ask("try"), QByteArray("won"));
    Copy stopped;
    QCOMPARE(stopped.ask("lock"), QByteArray("locked"));
    stopped.signal(SIGSTOP);
    QCOMPARE(holder.ask("end"), QByteArray("ended"));
    QVERIFY(holder.ends());
    stopped.killHard();
    Copy next;
    QCOMPARE(next.ask("try"), QByteArray("won"));
}

void TestRunGuard::semaphoresLeftTakenAreFreed()
{
    // What a copy leaves that was killed between making a semaphore and giving it its value.
    for (const char* salt : {"_memLockKey", "_sharedmemKey"}) {
        QFile keyFile(KeyFile::semaphorePath(hashedKey(salt)));
        QVERIFY(keyFile.open(QIODevice::WriteOnly));
        const key_t systemKey = ftok(QFile::encodeName(keyFile.fileName()), 'Q');
        const int semaphore = semget(systemKey, 1, IPC_CREAT | 0600);
        QVERIFY(semctl(semaphore, 0, SETVAL, 0) == 0);
    }
    Copy copy;
    QCOMPARE(copy.ask("try"), QByteArray("won"));
    copy.send("end");
    QVERIFY(copy.ends());
}

void TestRunGuard::copyOfAnotherUserCounts_data()
{
    QTest::addColumn<QStringList>("holderPrefix");
    QTest::addColumn<QStringList>("otherPrefix");
    QTest::newRow("root looks") << asUser("65534") << QStringList();
    QTest::newRow("root holds") << QStringList() << asUser("65534");
    QTest::newRow("two ordinary users") << asUser("65534") << asUser("65533");
}

void TestRunGuard::copyOfAnotherUserCounts()
{
    QFETCH(QStringList, holderPrefix);
    QFETCH(QStringList, otherPrefix);
    if (geteuid() != 0)
        QSKIP("only root can start copies of other users");
    chmod(QFile::encodeName(temporary->path()).constData(), openToAll);
    for (const QStringList& prefix : {holderPrefix, otherPrefix}) {
        if (!mayWrite(prefix, temporary->path()))
            QSKIP("the build tree is closed to other users");
    }
    Copy holder(holderPrefix);
    QCOMPARE(holder.ask("try"), QByteArray("won"));
    {
        Copy asking(otherPrefix);
        QCOMPARE(asking.ask("ask"), QByteArray("running"));
        Copy other(otherPrefix);
        QCOMPARE(other.ask("try"), QByteArray("refused"));
        QVERIFY(other.ends());
    }
    holder.send("end");
    QVERIFY(holder.ends());
    Copy next(otherPrefix);
    QCOMPARE(next.ask("try"), QByteArray("won"));
}

QTEST_GUILESS_MAIN(TestRunGuard)
#include "tst_runguard.moc"
