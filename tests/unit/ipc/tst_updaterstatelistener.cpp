#include "ipc/updaterstatelistener.h"

#include "base/keyfile.h"
#include "base/workerthread.h"
#include "support/logrecorder.h"
#include "support/patience.h"
#include "support/privatetmp.h"
#include "support/signalcounter.h"
#include "support/subjectprocess.h"
#include "support/systemcalls.h"
#include "support/threads.h"

#include <QtTest>

#include <limits>
#include <memory>

namespace {

constexpr int pauseMs = 10;
const QString theKey = QStringLiteral("tst_updaterstatelistener");
const QString seenText = QStringLiteral("updater is running now");

class Updater : public SubjectProcess
{
public:
    Updater()
        : SubjectProcess(QStringLiteral("updatersubject"), {theKey})
    {
    }
};

} // namespace

class TestUpdaterStateListener : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void signalsEachSecondWhileAnUpdateIsInProgress();
    void statesAreFollowed_data();
    void statesAreFollowed();
    void endsWhenTheUpdaterNeedsNothing();
    void waitsQuietlyForAnUpdater();
    void endsWhenTheSegmentIsGone();
    void endsWhenTheUpdaterCrashed_data();
    void endsWhenTheUpdaterCrashed();
    void segmentTooSmallForAStateIsIgnored();
    void stateIsReadUnderItsLock();
    void looksOnceASecond();
    void deletedListenerDoesNotWaitForAStoppedUpdater();
    void canBeDeletedAtAnyMoment();
    void stoppingTheWorkersEndsIt(); // last: there is no way back

private:
    std::unique_ptr<PrivateTmp> temporary;
    std::unique_ptr<LogRecorder> log;
    std::unique_ptr<Updater> updater;
    std::unique_ptr<UpdaterStateListener> listener;
    int threadsBefore = 0;
};

void TestUpdaterStateListener::init()
{
    temporary = std::make_unique<PrivateTmp>();
    log = std::make_unique<LogRecorder>();
    threadsBefore = threadCount();
}

void TestUpdaterStateListener::cleanup()
{
    updater.reset(); // ends the listener, too
    QTRY_COMPARE_WITH_TIMEOUT(threadCount(), threadsBefore, patienceMs);
    listener.reset();
    log.reset();
    SystemVObjects::removeAll();
    temporary.reset();
}

void TestUpdaterStateListener::signalsEachSecondWhileAnUpdateIsInProgress()
{
    updater = std::make_unique<Updater>();
    QCOMPARE(updater->ask("make 64"), QByteArray("made"));
    QCOMPARE(updater->ask("state 1"), QByteArray("written"));
    listener = std::make_unique<UpdaterStateListener>(theKey);
    const SignalCounter inProcess(listener.get(), &UpdaterStateListener::updateInProcess);
    const QDeadlineTimer limit(patienceMs);
    while (log->count("update is in progress") < 2 && !limit.hasExpired())
        QTest::qSleep(pauseMs);
    QVERIFY2(inProcess.count() == 0, "emitted on another thread, hence queued");
    QTRY_COMPARE_WITH_TIMEOUT(inProcess.count(), 5, patienceMs);
    QVERIFY2(inProcess.timeOf(4) >= 4700, "a second before the first one and between any two");
    QCOMPARE(updater->ask("state -1"), QByteArray("written"));
    QTRY_VERIFY_WITH_TIMEOUT(workersHaveEnded(), patienceMs);
    QCoreApplication::processEvents();
    QCOMPARE(inProcess.count(), log->count("update is in progress"));
    QCOMPARE(log->count(seenText), inProcess.count() + 1);
    QCOMPARE(log->count("QSharedMemory::lock: already locked"), 0); // it was given back each time
}

void TestUpdaterStateListener::statesAreFollowed_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isInProcess");
    QTest::newRow("in progress") << 1 << "update is in progress" << true;
    QTest::newRow("busy") << 2 << "wait updater is doing something" << false;
    QTest::newRow("nothing written yet") << 0 << "" << false;
    QTest::newRow("unknown") << 3 << "" << false;
    QTest::newRow("lowest") << std::numeric_limits<int>::min() << "" << false;
}

void TestUpdaterStateListener::statesAreFollowed()
{
    QFETCH(int, state);
    QFETCH(QString, text);
    QFETCH(bool, isInProcess);
    updater = std::make_unique<Updater>();
    QCOMPARE(updater->ask("make 4"), QByteArray("made"));
    QCOMPARE(updater->ask("state " + QByteArray::number(state)), QByteArray("written"));
    listener = std::make_unique<UpdaterStateListener>(theKey);
    QCOMPARE(log->count("update listener "), 1);
    const SignalCounter inProcess(listener.get(), &UpdaterStateListener::updateInProcess);
    QTRY_VERIFY_WITH_TIMEOUT(log->count(seenText) >= 2, patienceMs);
    QVERIFY(!workersHaveEnded());
    QCoreApplication::processEvents();
    QCOMPARE(inProcess.count() > 0, isInProcess);
    for (const QString line :
         {"update is in progress", "wait updater is doing something", "updater has quit"})
        QCOMPARE(log->count(line) > 0, text == line);
}

void TestUpdaterStateListener::endsWhenTheUpdaterNeedsNothing()
{
    updater = std::make_unique<Updater>();
    QCOMPARE(updater->ask("make 4"), QByteArray("made"));
    QCOMPARE(updater->ask("state -1"), QByteArray("written"));
    listener = std::make_unique<UpdaterStateListener>(theKey);
    QTRY_VERIFY_WITH_TIMEOUT(workersHaveEnded(), patienceMs);
    QCOMPARE(log->count("updater has quit or will not need vireon to quit"), 1);
    QCOMPARE(log->count(seenText), 1);
}

void TestUpdaterStateListener::waitsQuietlyForAnUpdater()
{
    listener = std::make_unique<UpdaterStateListener>(theKey);
    const SignalCounter inProcess(listener.get(), &UpdaterStateListener::updateInProcess);
    QTest::qWait(2500); // nothing can be seen of rounds without an updater
    QVERIFY(!workersHaveEnded());
    QCOMPARE(log->count(QString()), 3); // of the construction and of the thread
    QVERIFY(QDir(temporary->path()).isEmpty());
    updater = std::make_unique<Updater>();
    QCOMPARE(updater->ask("make 4"), QByteArray("made"));
    QCOMPARE(updater->ask("state 1"), QByteArray("written"));
    QTRY_VERIFY_WITH_TIMEOUT(inProcess.count() > 0, patienceMs);
}

void TestUpdaterStateListener::endsWhenTheSegmentIsGone()
{
    updater = std::make_unique<Updater>();
    QCOMPARE(updater->ask("make 4"), QByteArray("made"));
    listener = std::make_unique<UpdaterStateListener>(theKey);
    QTRY_VERIFY_WITH_TIMEOUT(log->count(seenText) >= 1, patienceMs);
    QCOMPARE(updater->ask("end"), QByteArray("ended"));
    QVERIFY(updater->ends());
    QTRY_VERIFY_WITH_TIMEOUT(workersHaveEnded(), patienceMs);
    QCOMPARE(log->count("updater has quit"), 0);
}

void TestUpdaterStateListener::endsWhenTheUpdaterCrashed_data()
{
    QTest::addColumn<bool>("holdsLock");
    QTest::newRow("without the lock") << false;
    QTest::newRow("while it holds the lock") << true;
}

void TestUpdaterStateListener::endsWhenTheUpdaterCrashed()
{
    QFETCH(bool, holdsLock);
    updater = std::make_unique<Updater>();
    QCOMPARE(updater->ask("make 4"), QByteArray("made"));
    listener = std::make_unique<UpdaterStateListener>(theKey);
    QTRY_VERIFY_WITH_TIMEOUT(log->count(seenText) >= 1, patienceMs);
    if (holdsLock)
        QCOMPARE(updater->ask("lock"), QByteArray("locked"));
    updater->killHard();
    QTRY_VERIFY_WITH_TIMEOUT(workersHaveEnded(), patienceMs);
    // Nothing of the segment is left to mislead the next updater.
    Updater next;
    QCOMPARE(next.ask("make 4"), QByteArray("made"));
}

void TestUpdaterStateListener::segmentTooSmallForAStateIsIgnored()
{
    // A whole page is mapped, but only the first three bytes are the updater's.
    updater = std::make_unique<Updater>();
    QCOMPARE(updater->ask("make 3"), QByteArray("made"));
    QCOMPARE(updater->ask("state -1"), QByteArray("written"));
    listener = std::make_unique<UpdaterStateListener>(theKey);
    QTRY_VERIFY_WITH_TIMEOUT(log->count(seenText) >= 2, patienceMs);
    QVERIFY(!workersHaveEnded());
}

void TestUpdaterStateListener::stateIsReadUnderItsLock()
{
    QSharedMemory segment(theKey);
    QVERIFY(segment.create(4));
    const int lock = semget(KeyFile::keyOf(KeyFile::semaphorePath(theKey)), 1, 0);
    // Between its attaching and its reading the updater begins to write, and has not done yet.
    log->hold(seenText);
    listener = std::make_unique<UpdaterStateListener>(theKey);
    QTRY_COMPARE_WITH_TIMEOUT(log->count(seenText), 1, patienceMs);
    QVERIFY(segment.lock());
    *static_cast<int*>(segment.data()) = 1;
    log->release();
    QTRY_VERIFY_WITH_TIMEOUT(
        semctl(lock, 0, GETNCNT) == 1 || log->count("update is in progress") > 0, patienceMs);
    *static_cast<int*>(segment.data()) = -1;
    segment.unlock();
    QTRY_VERIFY_WITH_TIMEOUT(workersHaveEnded(), patienceMs);
    QCOMPARE(log->count("update is in progress"), 0);
    QCOMPARE(log->count("updater has quit or will not need vireon to quit"), 1);
}

void TestUpdaterStateListener::looksOnceASecond()
{
    SystemCalls::reset();
    listener = std::make_unique<UpdaterStateListener>(theKey);
    QTRY_VERIFY_WITH_TIMEOUT(SystemCalls::longestPoll > 0, patienceMs);
    QVERIFY(SystemCalls::longestPoll <= 1000);
    updater = std::make_unique<Updater>();
    QCOMPARE(updater->ask("make 4"), QByteArray("made"));
    QTRY_VERIFY_WITH_TIMEOUT(log->count(seenText) > 0, patienceMs);
}

void TestUpdaterStateListener::deletedListenerDoesNotWaitForAStoppedUpdater()
{
    updater = std::make_unique<Updater>();
    QCOMPARE(updater->ask("make 4"), QByteArray("made"));
    QCOMPARE(updater->ask("state 1"), QByteArray("written"));
    QCOMPARE(updater->ask("lock"), QByteArray("locked"));
    updater->signal(SIGSTOP);
    listener = std::make_unique<UpdaterStateListener>(theKey);
    const QString lockFile = KeyFile::semaphorePath(theKey);
    const int lock = semget(ftok(QFile::encodeName(lockFile), 'Q'), 1, 0);
    QTRY_COMPARE_WITH_TIMEOUT(semctl(lock, 0, GETNCNT), 1, patienceMs); // the worker waits for it
    listener.reset();
    QVERIFY(!workersHaveEnded());
    updater->killHard();
    QTRY_VERIFY_WITH_TIMEOUT(workersHaveEnded(), patienceMs);
    QCOMPARE(log->count("update is in progress"), 0);
}

void TestUpdaterStateListener::canBeDeletedAtAnyMoment()
{
    updater = std::make_unique<Updater>();
    QCOMPARE(updater->ask("make 4"), QByteArray("made"));
    QCOMPARE(updater->ask("state 1"), QByteArray("written"));
    for (int round = 0; round < 50; ++round) {
        const UpdaterStateListener gone(theKey);
        QTest::qSleep(1 + round % 3);
    }
    // Deleted around the moment of the first emission.
    for (int round = 0; round < 20; ++round) {
        auto* brief = new UpdaterStateListener(theKey);
        QTimer::singleShot(990 + round, brief, &QObject::deleteLater);
    }
    QTRY_VERIFY_WITH_TIMEOUT(workersHaveEnded(), patienceMs);
}

void TestUpdaterStateListener::stoppingTheWorkersEndsIt()
{
    listener = std::make_unique<UpdaterStateListener>(theKey);
    QVERIFY(!workersHaveEnded());
    WorkerThread::stopAll();
    QTRY_VERIFY_WITH_TIMEOUT(workersHaveEnded(), patienceMs);
}

QTEST_GUILESS_MAIN(TestUpdaterStateListener)
#include "tst_updaterstatelistener.moc"
