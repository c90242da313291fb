#include "ipc/runguard.h"

#include "base/attachedsegment.h"
#include "base/filelock.h"
#include "base/keyfile.h"
#include "support/logrecorder.h"
#include "support/patience.h"
#include "support/privatetmp.h"
#include "support/subjectprocess.h"
#include "support/systemcalls.h"

#include <QtTest>

#include <memory>
#include <sys/stat.h>
#include <vector>

namespace {

const QString theKey = QStringLiteral("tst_runguard");
constexpr mode_t openToAll = 01777;

const QString ordinaryUser = QStringLiteral("65534");
const QString otherOrdinaryUser = QStringLiteral("65533");
const QString thirdOrdinaryUser = QStringLiteral("65532");
const QString lockFileMessage = QStringLiteral("vireon.guard: starting without the lock file");

QString hashedKey(const char* salt, const QString& key = theKey)
{
    const QByteArray text = key.toUtf8() + salt;
    return QCryptographicHash::hash(text, QCryptographicHash::Sha1).toHex();
}

QString lockFile(const QString& key = theKey)
{
    return "runguard_" + hashedKey("_memLockKey", key) + ".lock";
}

QString lockPath()
{
    return QDir::tempPath() + '/' + lockFile();
}

QString markerPath()
{
    return KeyFile::segmentPath(hashedKey("_sharedmemKey"));
}

QString semaphorePath()
{
    return KeyFile::semaphorePath(hashedKey("_memLockKey"));
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

/// What starts a program as another user; as this one when @p user is empty.
QStringList asUser(const QString& user)
{
    if (user.isEmpty())
        return {};
    return {"setpriv", "--reuid=" + user, "--regid=" + user, "--clear-groups"};
}

/// Why copies of these users cannot run in the directory at @p path; empty when they can.
QByteArray reasonAgainst(const QStringList& users, const QString& path)
{
    for (const QString& user : users) {
        if (user.isEmpty())
            continue;
        if (geteuid() != 0)
            return "only root can start copies of other users";
        const QStringList command = asUser(user) + QStringList {"test", "-w", path};
        if (QProcess::execute(command.first(), command.mid(1)) != 0)
            return "the build tree is closed to other users";
    }
    return {};
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
    void nothingButTheLockFileStays_data();
    void nothingButTheLockFileStays();
    void releaseLeavesNothingBehind_data();
    void releaseLeavesNothingBehind();
    void everyUseOfTheMarkerIsLocked();

    void exactlyOneOfManyWins_data();
    void exactlyOneOfManyWins();
    void copiesStartWhileTheHolderQuits_data() { oneOrTwoUsers(); }
    void copiesStartWhileTheHolderQuits();
    void nextCopyWinsAfterKillsAtRandom_data() { oneOrTwoUsers(); }
    void nextCopyWinsAfterKillsAtRandom();
    void nextCopyWinsAfterTheLockHolderWasKilled();
    void semaphoresLeftTakenAreFreed();
    void markerOfTheSameMomentIsSeen();

    void lockThatIsHeldDelaysTheStartOnly();
    void lockThatIsHeldDelaysTheQuitOnly();
    void waitsForTheLockAreBounded();
    void whatIsNoLockFileHindersNobody_data();
    void whatIsNoLockFileHindersNobody();
    void namesInUseHinderNobody();
    void keyInUseByAnotherProgramHindersNobody();
    void missingTemporaryDirectoryIsReplaced_data();
    void missingTemporaryDirectoryIsReplaced();
    void cleanedKeyFilesAreMadeAnew_data();
    void cleanedKeyFilesAreMadeAnew();

    void startWaitsForACopyThatIsQuitting_data();
    void startWaitsForACopyThatIsQuitting();
    void waitForAQuitIsBounded();
    void copyThatRunsIsNotWaitedFor();

    void copyOfAnotherUserCounts_data();
    void copyOfAnotherUserCounts();
    void leftOversOfAnotherUserAreNoCopy_data();
    void leftOversOfAnotherUserAreNoCopy();

private:
    static void leaveObjectsBehind(int kind, const QString& user = {});
    void openToOthers() const;
    static void oneOrTwoUsers();

    /// How often a copy in this process has said so; the log is forgotten.
    int timesWithoutLockFile() const
    {
        const int times = log->count("starting without the lock file");
        log->clear();
        return times;
    }

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
    SystemCalls::reset();
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
    if (geteuid() != 0)
        QSKIP("only root may write in a directory where no file can be made");
    qputenv("TMPDIR", "/proc");
    RunGuard guard(theKey);
    QVERIFY(!guard.tryToRun());
    guard.release();
    QCOMPARE(timesWithoutLockFile(), 1);
}

void TestRunGuard::refusesWhenTheSegmentCannotBeMade()
{
    RunGuard guard(theKey);
    SystemCalls::noSpace = true;
    QVERIFY(!guard.tryToRun());
    QVERIFY(!RunGuard(theKey).isAnotherRunning());
    QCOMPARE(SystemVObjects::count(), 0);
    SystemCalls::noSpace = false;
    QVERIFY(guard.tryToRun());
}

void TestRunGuard::nothingButTheLockFileStays_data()
{
    QTest::addColumn<int>("leftOver");
    QTest::newRow("clean start") << -1;
    QTest::newRow("after a killed copy") << 0;
    QTest::newRow("after one that was killed in a step") << 2;
}

void TestRunGuard::nothingButTheLockFileStays()
{
    QFETCH(int, leftOver);
    if (leftOver >= 0)
        leaveObjectsBehind(leftOver);
    {
        RunGuard guard(theKey);
        QVERIFY(guard.tryToRun());
        Copy other;
        QCOMPARE(other.ask("try"), QByteArray("refused"));
        QVERIFY(other.ends());
    }
    QCOMPARE(QDir(temporary->path()).entryList(QDir::Files), QStringList(lockFile()));
    QCOMPARE(SystemVObjects::count(), 0);
    // Nor do looks, of whoever never runs.
    RunGuard looking(theKey);
    QVERIFY(!looking.isAnotherRunning());
    QCOMPARE(QDir(temporary->path()).entryList(QDir::Files), QStringList(lockFile()));
    QCOMPARE(SystemVObjects::count(), 0);
}

void TestRunGuard::releaseLeavesNothingBehind_data()
{
    QTest::addColumn<bool>("isLockFree");
    QTest::newRow("with the lock") << true;
    QTest::newRow("without the lock") << false;
}

void TestRunGuard::releaseLeavesNothingBehind()
{
    QFETCH(bool, isLockFree);
    // As in a program that leaves while threads are alive: nothing is destroyed after it.
    Copy copy;
    QCOMPARE(copy.ask("try"), QByteArray("won"));
    QCOMPARE(SystemVObjects::count(), 3);
    {
        const FileLock lock(isLockFree ? temporary->path() + "/other" : lockPath(), 0);
        QVERIFY(lock.isHeld());
        QCOMPARE(copy.ask("release"), QByteArray("released"));
    }
    QFile::remove(temporary->path() + "/other");
    QCOMPARE(QDir(temporary->path()).entryList(QDir::Files), QStringList(lockFile()));
    QCOMPARE(SystemVObjects::count(), 0);
}

void TestRunGuard::everyUseOfTheMarkerIsLocked()
{
    const QStringList look {"lock", "unlock"};
    const QStringList drop {"lock", "attach", "detach", "unlock"};
    const QStringList take {"lock", "create", "attach", "unlock"};
    const QStringList giveBack {"lock", "detach", "unlock"};
    SystemCalls::isLock = [](int semaphore) {
        semid_ds state = {};
        return semctl(semaphore, 0, IPC_STAT, &state) == 0
            && state.sem_perm.__key == KeyFile::keyOf(semaphorePath());
    };
    leaveObjectsBehind(0);
    RunGuard guard(theKey);
    QCOMPARE(std::exchange(SystemCalls::trace, {}), drop);
    leaveObjectsBehind(0);
    QVERIFY(!guard.isAnotherRunning());
    QCOMPARE(std::exchange(SystemCalls::trace, {}), drop);
    QVERIFY(guard.tryToRun());
    QCOMPARE(std::exchange(SystemCalls::trace, {}), look + take);
    QVERIFY(QFile::remove(markerPath()));
    QTRY_COMPARE(SystemCalls::trace, giveBack + take);
    SystemCalls::trace.clear();
    guard.release();
    QCOMPARE(std::exchange(SystemCalls::trace, {}), giveBack);
}

void TestRunGuard::openToOthers() const
{
    chmod(QFile::encodeName(temporary->path()).constData(), openToAll);
}

void TestRunGuard::leaveObjectsBehind(int kind, const QString& user)
{
    Copy crashing(asUser(user));
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
    QTest::addColumn<bool>("hasLock");
    QTest::addColumn<QStringList>("users");
    const int pairs = rounds("GUARD_PAIRS", 10);
    const int groups = rounds("GUARD_GROUPS", 5);
    const QStringList self {QString()};
    const QStringList two {ordinaryUser, otherOrdinaryUser};
    QTest::newRow("pairs") << 2 << pairs << false << true << self;
    QTest::newRow("pairs, left-overs") << 2 << pairs << true << true << self;
    QTest::newRow("pairs, no lock file") << 2 << pairs << false << false << self;
    QTest::newRow("groups of six") << 6 << groups << false << true << self;
    QTest::newRow("groups of six, left-overs") << 6 << groups << true << true << self;
    QTest::newRow("groups of six, no lock file") << 6 << groups << false << false << self;
    QTest::newRow("pairs of two users") << 2 << pairs << false << true << two;
    QTest::newRow("pairs of two users, left-overs") << 2 << pairs << true << true << two;
    QTest::newRow("pairs of two users, no lock file") << 2 << pairs << true << false << two;
    QTest::newRow("groups of two users") << 6 << groups << false << true << two;
    QTest::newRow("groups of two users, left-overs") << 6 << groups << true << true << two;
}

void TestRunGuard::exactlyOneOfManyWins()
{
    QFETCH(int, count);
    QFETCH(int, repeats);
    QFETCH(bool, stale);
    QFETCH(bool, hasLock);
    QFETCH(QStringList, users);
    openToOthers();
    if (const QByteArray reason = reasonAgainst(users, temporary->path()); !reason.isEmpty())
        QSKIP(reason.constData());
    if (!hasLock)
        QVERIFY(QDir().mkdir(lockPath()));
    const QStringList leaving = users.size() > 1 ? QStringList(thirdOrdinaryUser) + users : users;
    int ended = 0;
    for (int round = 0; round < repeats; ++round) {
        if (stale)
            leaveObjectsBehind(round % (hasLock ? 4 : 2), leaving[round / 4 % leaving.size()]);
        std::vector<std::unique_ptr<Copy>> copies(static_cast<size_t>(count));
        for (size_t index = 0; index < copies.size(); ++index)
            copies[index] = std::make_unique<Copy>(asUser(users[int(index) % users.size()]));
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
            const QByteArray said = copy->log();
            QVERIFY2(hasLock ? said.isEmpty() : said.contains("starting without"),
                     said.constData());
            ++ended;
        }
    }
    qInfo("%d rounds, one winner each; %d copies ended when told", repeats, ended);
}

void TestRunGuard::oneOrTwoUsers()
{
    QTest::addColumn<QString>("one");
    QTest::addColumn<QString>("other");
    QTest::newRow("one user") << QString() << QString();
    QTest::newRow("two users") << ordinaryUser << otherOrdinaryUser;
}

void TestRunGuard::copiesStartWhileTheHolderQuits()
{
    QFETCH(QString, one);
    QFETCH(QString, other);
    openToOthers();
    if (const QByteArray reason = reasonAgainst({one, other}, temporary->path()); !reason.isEmpty())
        QSKIP(reason.constData());
    const int starts = rounds("GUARD_PAIRS", 10);
    for (int round = 0; round < starts; ++round) {
        Copy holder(asUser(one));
        Copy second(asUser(other));
        Copy third(asUser(one));
        QCOMPARE(holder.ask("try"), QByteArray("won"));
        holder.send("end");
        second.send("try");
        third.send("try");
        const QByteArrayList answers {second.answer(), third.answer()};
        QVERIFY(answers.count("won") <= 1);
        QCOMPARE(answers.count("won") + answers.count("refused"), 2);
        second.send("end");
        third.send("end");
        QVERIFY(holder.ends() && second.ends() && third.ends());
    }
    qInfo("%d rounds, never two winners", starts);
}

void TestRunGuard::nextCopyWinsAfterKillsAtRandom()
{
    QFETCH(QString, one);
    QFETCH(QString, other);
    openToOthers();
    if (const QByteArray reason = reasonAgainst({one, other}, temporary->path()); !reason.isEmpty())
        QSKIP(reason.constData());
    const int kills = rounds("GUARD_KILLS", 10);
    for (int round = 0; round < kills; ++round) {
        Copy first(asUser(one));
        Copy second(asUser(other));
        QCOMPARE(first.ask("spin"), QByteArray("spinning"));
        QCOMPARE(second.ask("spin"), QByteArray("spinning"));
        QTest::qSleep(QRandomGenerator::global()->bounded(1, 20));
        first.killHard();
        second.killHard();
        Copy next(asUser(round % 2 == 0 ? one : other));
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

void TestRunGuard::markerOfTheSameMomentIsSeen()
{
    // As when two copies without the lock both saw no other one before they made their markers.
    QVERIFY(QDir().mkdir(lockPath()));
    Copy other;
    SystemCalls::beforeCreation = [&other] { QCOMPARE(other.ask("try"), QByteArray("won")); };
    RunGuard guard(theKey);
    QVERIFY(!guard.tryToRun());
    QVERIFY(!SystemCalls::beforeCreation);
    QCOMPARE(other.ask("ask"), QByteArray("free"));
    other.killHard();
    QVERIFY(guard.tryToRun());
    QCOMPARE(timesWithoutLockFile(), 2);
}

void TestRunGuard::lockThatIsHeldDelaysTheStartOnly()
{
    Copy stopped;
    QCOMPARE(stopped.ask("lock"), QByteArray("locked"));
    stopped.signal(SIGSTOP);
    Copy first;
    QCOMPARE(first.ask("try"), QByteArray("won"));
    const QByteArray said = first.log();
    QVERIFY2(said.contains("gave up waiting for lock file"), said.constData());
    QVERIFY2(said.contains("starting without the lock file"), said.constData());
    Copy second;
    QCOMPARE(second.ask("try"), QByteArray("refused"));
    QCOMPARE(first.ask("end"), QByteArray("ended"));
    QVERIFY(first.ends());
    Copy third;
    QCOMPARE(third.ask("try"), QByteArray("won"));
    stopped.signal(SIGCONT);
    Copy fourth;
    QCOMPARE(fourth.ask("try"), QByteArray("refused"));
}

void TestRunGuard::lockThatIsHeldDelaysTheQuitOnly()
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

void TestRunGuard::waitsForTheLockAreBounded()
{
    // It is tried every 5 ms at most.
    constexpr int triesAtStart = 2500 / 5 + 1;
    constexpr int triesAtEnd = 1000 / 5 + 1;
    constexpr int triesOfALook = 100 / 5 + 1;
    constexpr int triesAllowed = 5000;
    SystemCalls::lockTriesAllowed = triesAllowed;
    RunGuard guard(theKey);
    QCOMPARE(SystemCalls::lockTries.exchange(0), 1);
    QVERIFY(!guard.isAnotherRunning());
    const int look = SystemCalls::lockTries.exchange(0);
    QVERIFY(look > 1 && look <= triesOfALook);
    QVERIFY(guard.tryToRun());
    const int start = SystemCalls::lockTries.exchange(0);
    QVERIFY(start > look && start <= triesAtStart);
    QCOMPARE(timesWithoutLockFile(), 1);
    QVERIFY(RunGuard(theKey).isAnotherRunning());
    QCOMPARE(SystemCalls::lockTries.exchange(0), 1);
    guard.release();
    const int end = SystemCalls::lockTries.exchange(0);
    QVERIFY(end > 1 && end <= triesAtEnd);
}

void TestRunGuard::whatIsNoLockFileHindersNobody_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("a directory") << "directory";
    QTest::newRow("a pipe") << "pipe";
    QTest::newRow("a link") << "link";
    QTest::newRow("a file that cannot be opened") << "closed";
}

void TestRunGuard::whatIsNoLockFileHindersNobody()
{
    QFETCH(QString, kind);
    const QByteArray name = QFile::encodeName(lockPath());
    const QString user = kind == "closed" ? ordinaryUser : QString();
    openToOthers();
    if (const QByteArray reason = reasonAgainst({user}, temporary->path()); !reason.isEmpty())
        QSKIP(reason.constData());
    if (kind == "directory")
        QCOMPARE(mkdir(name.constData(), 0700), 0);
    if (kind == "pipe")
        QCOMPARE(mkfifo(name.constData(), 0600), 0);
    if (kind == "link")
        QCOMPARE(symlink("nowhere", name.constData()), 0);
    if (kind == "closed")
        QCOMPARE(mknod(name.constData(), S_IFREG, 0), 0);
    Copy first(asUser(user));
    QCOMPARE(first.ask("try"), QByteArray("won"));
    const QByteArray said = first.log();
    QVERIFY2(said.contains("starting without the lock file"), said.constData());
    QVERIFY2(!said.contains("gave up waiting"), said.constData());
    Copy second(asUser(user));
    QCOMPARE(second.ask("try"), QByteArray("refused"));
    QCOMPARE(first.ask("end"), QByteArray("ended"));
    QVERIFY(first.ends());
    QCOMPARE(SystemVObjects::count(), 0);
    QVERIFY(QDir(temporary->path()).entryList({"qipc_*"}, QDir::Files).isEmpty());
}

void TestRunGuard::namesInUseHinderNobody()
{
    QVERIFY(QDir().mkdir(markerPath()));
    Copy first;
    QCOMPARE(first.ask("try"), QByteArray("won"));
    QVERIFY(QDir().rmdir(markerPath()));
    Copy second;
    QCOMPARE(second.ask("try"), QByteArray("refused"));
    first.send("end");
    QVERIFY(first.ends());
    QCOMPARE(QDir(temporary->path()).entryList(QDir::Files), QStringList(lockFile()));
    QCOMPARE(SystemVObjects::count(), 0);
}

void TestRunGuard::keyInUseByAnotherProgramHindersNobody()
{
    QVERIFY(KeyFile::prepareSegment(markerPath()));
    const int segment = shmget(KeyFile::keyOf(markerPath()), 4, IPC_CREAT | 0600);
    void* const memory = shmat(segment, nullptr, 0);
    Copy first;
    QCOMPARE(first.ask("ask"), QByteArray("free"));
    QCOMPARE(first.ask("try"), QByteArray("won"));
    Copy second;
    QCOMPARE(second.ask("try"), QByteArray("refused"));
    shmid_ds state = {};
    QCOMPARE(shmctl(segment, IPC_STAT, &state), 0);
    QCOMPARE(int(state.shm_nattch), 1);
    shmdt(memory);
}

void TestRunGuard::missingTemporaryDirectoryIsReplaced_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("user");
    QTest::newRow("missing") << "missing" << QString();
    QTest::newRow("a file") << "file" << QString();
    QTest::newRow("write-protected") << "." << ordinaryUser;
}

void TestRunGuard::missingTemporaryDirectoryIsReplaced()
{
    QFETCH(QString, name);
    QFETCH(QString, user);
    const QString key = theKey + QString::number(getpid());
    if (const QByteArray reason = reasonAgainst({user}, "/tmp"); !reason.isEmpty())
        QSKIP(reason.constData());
    QFile file(temporary->path() + "/file");
    QVERIFY(file.open(QIODevice::WriteOnly));
    qputenv("TMPDIR", QFile::encodeName(temporary->path() + '/' + name));
    const QStringList ofTheRoot = QDir("/").entryList();
    Copy first(asUser(user), key);
    QCOMPARE(first.ask("try"), QByteArray("won"));
    QVERIFY(first.log().contains("TMPDIR is no directory to write in, taking /tmp"));
    QCOMPARE(QDir("/").entryList(), ofTheRoot);
    qputenv("TMPDIR", "/tmp");
    Copy second(asUser(user), key);
    QCOMPARE(second.ask("try"), QByteArray("refused"));
    QCOMPARE(first.ask("end"), QByteArray("ended"));
    QVERIFY(QFile::remove("/tmp/" + lockFile(key)));
}

void TestRunGuard::cleanedKeyFilesAreMadeAnew_data()
{
    QTest::addColumn<QStringList>("patterns");
    QTest::addColumn<bool>("hasLock");
    const QString all = "*";
    const QString marker = "qipc_sharedmemory_*";
    const QString semaphores = "qipc_systemsem_*";
    QTest::newRow("all files") << QStringList {all, all} << true;
    QTest::newRow("the marker's") << QStringList {all, marker} << true;
    QTest::newRow("the semaphores'") << QStringList {all, semaphores} << true;
    QTest::newRow("all, no lock file") << QStringList {all, all} << false;
}

void TestRunGuard::cleanedKeyFilesAreMadeAnew()
{
    QFETCH(QStringList, patterns);
    QFETCH(bool, hasLock);
    if (!hasLock)
        QVERIFY(QDir().mkdir(lockPath()));
    const QDir directory(temporary->path());
    Copy first;
    QCOMPARE(first.ask("try"), QByteArray("won"));
    const QStringList before = directory.entryList({"qipc_*"}, QDir::Files);
    QCOMPARE(before.size(), 3);
    for (const QString& pattern : patterns) {
        for (const QString& name : directory.entryList({pattern}, QDir::Files))
            QVERIFY(QFile::remove(directory.filePath(name)));
        QVERIFY(first.logs("key files are gone"));
        QTRY_COMPARE(directory.entryList({"qipc_*"}, QDir::Files), before);
        Copy second;
        QTRY_COMPARE(second.ask("ask"), QByteArray("running"));
        QCOMPARE(second.ask("try"), QByteArray("refused"));
    }
    QCOMPARE(first.ask("end"), QByteArray("ended"));
    QVERIFY(first.ends());
    QVERIFY(directory.entryList({"qipc_*"}, QDir::Files).isEmpty());
    QCOMPARE(SystemVObjects::count(), 0);
}

void TestRunGuard::startWaitsForACopyThatIsQuitting_data()
{
    QTest::addColumn<QString>("holder");
    QTest::addColumn<QString>("starter");
    QTest::addColumn<bool>("isKilled");
    QTest::newRow("one user") << QString() << QString() << false;
    QTest::newRow("two users") << ordinaryUser << otherOrdinaryUser << false;
    QTest::newRow("killed while it quits") << QString() << QString() << true;
}

void TestRunGuard::startWaitsForACopyThatIsQuitting()
{
    QFETCH(QString, holder);
    QFETCH(QString, starter);
    QFETCH(bool, isKilled);
    openToOthers();
    if (const QByteArray reason = reasonAgainst({holder, starter}, temporary->path());
        !reason.isEmpty())
        QSKIP(reason.constData());
    Copy first(asUser(holder));
    QCOMPARE(first.ask("try"), QByteArray("won"));
    QCOMPARE(first.ask("quit"), QByteArray("quitting"));
    Copy second(asUser(starter));
    second.send("try");
    QVERIFY(second.logs("waiting for the end of a copy that is quitting"));
    if (isKilled)
        first.killHard();
    else
        QCOMPARE(first.ask("end"), QByteArray("ended"));
    QCOMPARE(second.answer(), QByteArray("won"));
}

void TestRunGuard::waitForAQuitIsBounded()
{
    constexpr int mostPolls = 3000 / 20 + 1;
    Copy first;
    QCOMPARE(first.ask("try"), QByteArray("won"));
    QCOMPARE(first.ask("quit"), QByteArray("quitting"));
    RunGuard guard(theKey);
    SystemCalls::mainThreadSleeps = 0;
    QVERIFY(!guard.tryToRun());
    QVERIFY(SystemCalls::mainThreadSleeps > 1);
    QVERIFY(SystemCalls::mainThreadSleeps <= mostPolls);
}

void TestRunGuard::copyThatRunsIsNotWaitedFor()
{
    Copy first;
    QCOMPARE(first.ask("try"), QByteArray("won"));
    RunGuard guard(theKey);
    QVERIFY(!guard.tryToRun());
    QCOMPARE(SystemCalls::mainThreadSleeps.load(), 0);
    RunGuard::announceEnd(); // by one that holds nothing
    QVERIFY(!guard.tryToRun());
    QCOMPARE(SystemCalls::mainThreadSleeps.load(), 0);
}

void TestRunGuard::copyOfAnotherUserCounts_data()
{
    QTest::addColumn<QString>("holding");
    QTest::addColumn<QString>("looking");
    QTest::newRow("root looks") << ordinaryUser << QString();
    QTest::newRow("root holds") << QString() << ordinaryUser;
    QTest::newRow("two ordinary users") << ordinaryUser << otherOrdinaryUser;
}

void TestRunGuard::copyOfAnotherUserCounts()
{
    QFETCH(QString, holding);
    QFETCH(QString, looking);
    openToOthers();
    if (const QByteArray reason =
            reasonAgainst({ordinaryUser, otherOrdinaryUser}, temporary->path());
        !reason.isEmpty())
        QSKIP(reason.constData());
    Copy holder(asUser(holding));
    QCOMPARE(holder.ask("try"), QByteArray("won"));
    const auto marker = RunGuard(theKey).findAnother();
    QVERIFY(marker);
    QCOMPARE(marker->creator, holding.isEmpty() ? geteuid() : holding.toUInt());
    {
        Copy asking(asUser(looking));
        QCOMPARE(asking.ask("ask"), QByteArray("running"));
        Copy other(asUser(looking));
        QCOMPARE(other.ask("try"), QByteArray("refused"));
        QVERIFY(other.ends());
    }
    holder.send("end");
    QVERIFY(holder.ends());
    Copy next(asUser(looking));
    QCOMPARE(next.ask("try"), QByteArray("won"));
}

void TestRunGuard::leftOversOfAnotherUserAreNoCopy_data()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("killed while it ran") << 0;
    QTest::newRow("killed at any moment") << 1;
    QTest::newRow("killed in a step") << 2;
}

void TestRunGuard::leftOversOfAnotherUserAreNoCopy()
{
    QFETCH(int, kind);
    openToOthers();
    if (const QByteArray reason =
            reasonAgainst({ordinaryUser, otherOrdinaryUser}, temporary->path());
        !reason.isEmpty())
        QSKIP(reason.constData());
    leaveObjectsBehind(kind, ordinaryUser);
    const int leftOver = SystemVObjects::count();
    const QStringList files = QDir(temporary->path()).entryList({"qipc_*"}, QDir::Files);
    {
        Copy copy(asUser(otherOrdinaryUser));
        QCOMPARE(copy.ask("ask"), QByteArray("free"));
        QCOMPARE(copy.ask("try"), QByteArray("won"));
        for (const QString& user : {ordinaryUser, otherOrdinaryUser, QString()}) {
            Copy refused(asUser(user));
            QCOMPARE(refused.ask("try"), QByteArray("refused"));
        }
        QCOMPARE(copy.ask("end"), QByteArray("ended"));
    }
    QCOMPARE(SystemVObjects::count(), leftOver);
    QCOMPARE(QDir(temporary->path()).entryList({"qipc_*"}, QDir::Files), files);
    Copy next(asUser(ordinaryUser));
    QCOMPARE(next.ask("try"), QByteArray("won"));
    QCOMPARE(next.ask("end"), QByteArray("ended"));
    QVERIFY(next.ends());
    QCOMPARE(SystemVObjects::count(), 0);
}

QTEST_GUILESS_MAIN(TestRunGuard)
#include "tst_runguard.moc"
