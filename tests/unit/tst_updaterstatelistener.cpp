#include "ipc/updaterstatelistener.h"

#include "base/keyfile.h"
#include "base/workerthread.h"
#include "subjects/logcapture.h"
#include "subjects/privatetmp.h"
#include "subjects/signalcounter.h"
#include "subjects/subjectprocess.h"
#include "subjects/systemcalls.h"
#include "subjects/threads.h"

#include <QtTest>

#include <limits>
#include <memory>

namespace {

constexpr int longMs = 60000;
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

bool hasEnded()
{
    return WorkerThread::waitForAll(0);
}

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
    std::unique_ptr<LogCapture> log;
    std::unique_ptr<Updater> updater;
    std::unique_ptr<UpdaterStateListener> listener;
    int threadsBefore = 0;
};

void TestUpdaterStateListener::init()
{
    temporary = std::make_unique<PrivateTmp>();
    log = std::make_unique<LogCapture>();
    threadsBefore = threadCount();
}

void TestUpdaterStateListener::cleanup()
{
    updater.reset(); // ends the listener, too
    QTRY_COMPARE_WITH_TIMEOUT(threadCount(), threadsBefore, longMs);
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
    const QDeadlineTimer limit(longMs);
    while (LogCapture::count("update is in progress") < 2 && !limit.hasExpired())
        QTest::qSleep(pauseMs);
    QVERIFY2(inProcess.count() == 0, "emitted on another thread, hence queued");
    QTRY_COMPARE_WITH_TIMEOUT(inProcess.count(), 5, longMs);
    QVERIFY2(inProcess.timeOf(4) >= 4700, "a second before the first one and between any two");
    QCOMPARE(updater->ask("state -1"), QByteArray("written"));
    QTRY_VERIFY_WITH_TIMEOUT(hasEnded(), longMs);
    QCoreApplication::processEvents();
    QCOMPARE(inProcess.count(), LogCapture::count("update is in progress"));
    QCOMPARE(LogCapture::count(seenText), inProcess.count() + 1);
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
    QCOMPARE(LogCapture::count("update listener "), 1);
    const SignalCounter inProcess(listener.get(), &UpdaterStateListener::updateInProcess);
    QTRY_VERIFY_WITH_TIMEOUT(LogCapture::count(seenText) >= 2, longMs);
    QVERIFY(!hasEnded());
    QCoreApplication::processEvents();
    QCOMPARE(inProcess.count() > 0, isInProcess);
    for (const QString line :
         {"update is in progress", "wait updater is doing something", "updater has quit"})
        QCOMPARE(LogCapture::count(line) > 0, text == line);
}

void TestUpdaterStateListener::endsWhenTheUpdaterNeedsNothing()
{
    updater = std::make_unique<Updater>();
    QCOMPARE(updater->ask("make 4"), QByteArray("made"));
    QCOMPARE(updater->ask("state -1"), QByteArray("written"));
    listener = std::make_unique<UpdaterStateListener>(theKey);
    QTRY_VERIFY_WITH_TIMEOUT(hasEnded(), longMs);
    QCOMPARE(LogCapture::count("updater has quit or will not need vireon to quit"), 1);
    QCOMPARE(LogCapture::count(seenText), 1);
}

void TestUpdaterStateListener::waitsQuietlyForAnUpdater()
{
    listener = std::make_unique<UpdaterStateListener>(theKey);
    const SignalCounter inProcess(listener.get(), &UpdaterStateListener::updateInProcess);
    QTest::qWait(2500); // nothing can be seen of rounds without an updater
    QVERIFY(!hasEnded());
    QCOMPARE(LogCapture::count(QString()), 3); // of the construction and of the thread
    QVERIFY(QDir(temporary->path()).isEmpty());
    updater = std::make_unique<Updater>();
    QCOMPARE(updater->ask("make 4"), QByteArray("made"));
    QCOMPARE(updater->ask("state 1"), QByteArray("written"));
    QTRY_VERIFY_WITH_TIMEOUT(inProcess.count() > 0, longMs);
}

void TestUpdaterStateListener::endsWhenTheSegmentIsGone()
{
    updater = std::make_unique<Updater>();
    QCOMPARE(updater->ask("make 4"), QByteArray("made"));
    listener = std::make_unique<UpdaterStateListener>(theKey);
    QTRY_VERIFY_WITH_TIMEOUT(LogCapture::count(seenText) >= 1, longMs);
    QCOMPARE(updater->ask("end"), QByteArray("ended"));
    QVERIFY(updater->ends());
    QTRY_VERIFY_WITH_TIMEOUT(hasEnded(), longMs);
    QCOMPARE(LogCapture::count("updater has quit"), 0);
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
    QTRY_VERIFY_WITH_TIMEOUT(LogCapture::count(seenText) >= 1, longMs);
    if (holdsLock)
        QCOMPARE(updater->ask("lock"), QByteArray("locked"));
    updater->killHard();
    QTRY_VERIFY_WITH_TIMEOUT(hasEnded(), longMs);
    // Nothing of the segment is left to mislead the next updater->
    Updater next;
    QCOMPARE(next.ask("make 4"), QByteArray("made"));
}

void TestUpdaterStateListener::segmentTooSmallForAStateIsIgnored()
{
    // A whole page is mapped, yet nothing beyond the size belongs to the updater->
    updater = std::make_unique<Updater>();
    QCOMPARE(updater->ask("make 3"), QByteArray("made"));
    QCOMPARE(updater->ask("state -1"), QByteArray("written"));
    listener = std::make_unique<UpdaterStateListener>(theKey);
    QTRY_VERIFY_WITH_TIMEOUT(LogCapture::count(seenText) >= 2, longMs);
    QVERIFY(!hasEnded());
}

void TestUpdaterStateListener::stateIsReadUnderItsLock()
{
    static QSharedMemory* segment = nullptr;
    static QtMessageHandler next = nullptr;
    QSharedMemory updaterMemory(theKey);
    segment = &updaterMemory;
    QVERIFY(segment->create(4));
    const int lock = semget(KeyFile::keyOf(KeyFile::semaphorePath(theKey)), 1, 0);
    // Between its attaching and its reading the updater begins to write, and has not done yet.
    next = qInstallMessageHandler([](QtMsgType type, const QMessageLogContext& context,
                                     const QString& text) {
        if (text.contains(seenText) && LogCapture::count(seenText) == 0) {
            segment->lock();
            *static_cast<int*>(segment->data()) = 1;
        }
        next(type, context, text);
    });
    listener = std::make_unique<UpdaterStateListener>(theKey);
    QTRY_VERIFY_WITH_TIMEOUT(semctl(lock, 0, GETNCNT) == 1
                                 || LogCapture::count("update is in progress") > 0,
                             longMs);
    *static_cast<int*>(segment->data()) = -1;
    segment->unlock();
    QTRY_VERIFY_WITH_TIMEOUT(hasEnded(), longMs);
    qInstallMessageHandler(next);
    QCOMPARE(LogCapture::count("update is in progress"), 0);
    QCOMPARE(LogCapture::count("updater has quit or will not need vireon to quit"), 1);
}

void TestUpdaterStateListener::looksOnceASecond()
{
    SystemCalls::reset();
    listener = std::make_unique<UpdaterStateListener>(theKey);
    QTRY_VERIFY_WITH_TIMEOUT(SystemCalls::longestPoll > 0, longMs);
    QVERIFY(SystemCalls::longestPoll <= 1000);
    updater = std::make_unique<Updater>();
    QCOMPARE(updater->ask("make 4"), QByteArray("made"));
    QTRY_VERIFY_WITH_TIMEOUT(LogCapture::count(seenText) > 0, longMs);
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
    QTRY_COMPARE_WITH_TIMEOUT(semctl(lock, 0, GETNCNT), 1, longMs); // the worker waits for it
    listener.reset();
    QVERIFY(!hasEnded());
    updater->killHard();
    QTRY_VERIFY_WITH_TIMEOUT(hasEnded(), longMs);
    QCOMPARE(LogCapture::count("update is in progress"), 0);
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
    QTRY_VERIFY_WITH_TIMEOUT(hasEnded(), longMs);
}

void TestUpdaterStateListener::stoppingTheWorkersEndsIt()
{
    listener = std::make_unique<UpdaterStateListener>(theKey);
    QVERIFY(!hasEnded());
    WorkerThread::stopAll();
    QTRY_VERIFY_WITH_TIMEOUT(hasEnded(), longMs);
}

QTEST_GUILESS_MAIN(TestUpdaterStateListener)
#include "tst_updaterstatelistener.moc"
