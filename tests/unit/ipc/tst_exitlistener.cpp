#include "ipc/exitlistener.h"

#include "base/workerthread.h"
#include "settings/globalsettings.h"
#include "support/logrecorder.h"
#include "support/patience.h"
#include "support/privatetmp.h"
#include "support/signalcounter.h"
#include "support/subjectprocess.h"
#include "support/systemcalls.h"
#include "support/threads.h"

#include <QtTest>

#include <memory>

namespace {

constexpr int pauseMs = 10;
const QString exitText = QStringLiteral("Detected app is not running anymore");

class Application : public SubjectProcess
{
public:
    Application()
        : SubjectProcess(QStringLiteral("guardsubject"), {GS::instance()->appName})
    {
    }
};

} // namespace

class TestExitListener : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void tellsWhenTheApplicationHasEnded();
    void tellsWhenTheApplicationWasKilled();
    void tellsWhenTheApplicationNeverRan();
    void applicationKilledInAStepCountsAsGone();
    void neitherStartNorEndWaits();
    void looksOnceASecond();
    void isAnotherRunningAnswersBesideThePoll();
    void deletedListenerIsSilent();
    void stoppingTheWorkersEndsIt(); // last: there is no way back

private:
    std::unique_ptr<PrivateTmp> temporary;
    std::unique_ptr<LogRecorder> log;
    std::unique_ptr<Application> application;
    std::unique_ptr<ExitListener> listener;
    int threadsBefore = 0;
};

void TestExitListener::initTestCase()
{
    GS::instance()->appName = "tst_exitlistener";
}

void TestExitListener::init()
{
    temporary = std::make_unique<PrivateTmp>();
    log = std::make_unique<LogRecorder>();
    threadsBefore = threadCount();
}

void TestExitListener::cleanup()
{
    application.reset(); // ends the listener, too
    QTRY_COMPARE_WITH_TIMEOUT(threadCount(), threadsBefore, patienceMs);
    listener.reset();
    log.reset();
    SystemVObjects::removeAll();
    temporary.reset();
}

void TestExitListener::tellsWhenTheApplicationHasEnded()
{
    application = std::make_unique<Application>();
    QCOMPARE(application->ask("try"), QByteArray("won"));
    listener.reset(ExitListener::instance());
    QCOMPARE(ExitListener::instance(), listener.get());
    const SignalCounter exits(listener.get(), &ExitListener::hasExited);
    QTest::qWait(2500); // two looks at the running application
    QCOMPARE(exits.count(), 0);
    QVERIFY(listener->isAnotherRunning());
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(application->ask("end"), QByteArray("ended"));
    for (const QDeadlineTimer limit(patienceMs); !workersHaveEnded() && !limit.hasExpired();)
        QTest::qSleep(pauseMs);
    QVERIFY2(timer.elapsed() < 20000, "about a second");
    QVERIFY2(exits.count() == 0, "emitted on another thread, hence queued");
    QCoreApplication::processEvents();
    QCOMPARE(exits.count(), 1);
    QCOMPARE(log->count(exitText), 1);
    QVERIFY(!listener->isAnotherRunning());
}

void TestExitListener::tellsWhenTheApplicationWasKilled()
{
    application = std::make_unique<Application>();
    QCOMPARE(application->ask("try"), QByteArray("won"));
    listener.reset(ExitListener::instance());
    const SignalCounter exits(listener.get(), &ExitListener::hasExited);
    application->killHard();
    QTRY_COMPARE_WITH_TIMEOUT(exits.count(), 1, patienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(workersHaveEnded(), patienceMs);
    QCoreApplication::processEvents();
    QCOMPARE(exits.count(), 1);
}

void TestExitListener::tellsWhenTheApplicationNeverRan()
{
    QElapsedTimer timer;
    timer.start();
    listener.reset(ExitListener::instance());
    const SignalCounter exits(listener.get(), &ExitListener::hasExited);
    QTRY_COMPARE_WITH_TIMEOUT(exits.count(), 1, patienceMs);
    QVERIFY2(timer.elapsed() >= 900, "the listener sleeps first");
}

void TestExitListener::applicationKilledInAStepCountsAsGone()
{
    application = std::make_unique<Application>();
    QCOMPARE(application->ask("try"), QByteArray("won"));
    Application other;
    QCOMPARE(other.ask("lock"), QByteArray("locked"));
    listener.reset(ExitListener::instance());
    const SignalCounter exits(listener.get(), &ExitListener::hasExited);
    application->killHard();
    QVERIFY(!ExitListener::instance()->isAnotherRunning());
    other.killHard();
    QTRY_COMPARE_WITH_TIMEOUT(exits.count(), 1, patienceMs);
}

void TestExitListener::neitherStartNorEndWaits()
{
    application = std::make_unique<Application>();
    QCOMPARE(application->ask("try"), QByteArray("won"));
    Application other;
    QCOMPARE(other.ask("lock"), QByteArray("locked"));
    other.signal(SIGSTOP);
    SystemCalls::reset();
    listener.reset(ExitListener::instance());
    QVERIFY(listener->isAnotherRunning());
    QCOMPARE(SystemCalls::mainThreadSleeps.load(), 0);
    application->killHard();
    // Its thread is in the middle of a look, which waits for the lock.
    SystemCalls::lockTries = 0;
    QTRY_VERIFY_WITH_TIMEOUT(SystemCalls::lockTries > 1, patienceMs);
    SystemCalls::mainThreadSleeps = 0;
    listener.reset();
    listener.reset(ExitListener::instance()); // with nothing that runs, and a lock that is held
    QCOMPARE(SystemCalls::mainThreadSleeps.load(), 0);
}

void TestExitListener::looksOnceASecond()
{
    application = std::make_unique<Application>();
    QCOMPARE(application->ask("try"), QByteArray("won"));
    SystemCalls::reset();
    listener.reset(ExitListener::instance());
    QTRY_VERIFY_WITH_TIMEOUT(SystemCalls::longestPoll > 0, patienceMs);
    QVERIFY(SystemCalls::longestPoll <= 1000);
}

void TestExitListener::isAnotherRunningAnswersBesideThePoll()
{
    application = std::make_unique<Application>();
    QCOMPARE(application->ask("try"), QByteArray("won"));
    listener.reset(ExitListener::instance());
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < 2500)
        QVERIFY(listener->isAnotherRunning());
}

void TestExitListener::deletedListenerIsSilent()
{
    application = std::make_unique<Application>();
    QCOMPARE(application->ask("try"), QByteArray("won"));
    for (int round = 0; round < 20; ++round) {
        auto parent = std::make_unique<QObject>();
        QCOMPARE(ExitListener::instance(parent.get())->parent(), parent.get());
        QTest::qSleep(1 + round % 3);
    }
    application->killHard();
    QTRY_VERIFY_WITH_TIMEOUT(workersHaveEnded(), patienceMs);
    QCOMPARE(log->count(exitText), 0);
}

void TestExitListener::stoppingTheWorkersEndsIt()
{
    application = std::make_unique<Application>();
    QCOMPARE(application->ask("try"), QByteArray("won"));
    listener.reset(ExitListener::instance());
    const SignalCounter exits(listener.get(), &ExitListener::hasExited);
    WorkerThread::stopAll();
    QTRY_VERIFY_WITH_TIMEOUT(workersHaveEnded(), patienceMs);
    QCoreApplication::processEvents();
    QCOMPARE(exits.count(), 0);
}

QTEST_GUILESS_MAIN(TestExitListener)
#include "tst_exitlistener.moc"
