#include "engine/exitlistener.h"

#include "engine/workerthread.h"
#include "settings/globalsettings.h"
#include "subjects/logcapture.h"
#include "subjects/privatetmp.h"
#include "subjects/signalcounter.h"
#include "subjects/subjectprocess.h"

#include <QtTest>

#include <atomic>
#include <memory>

namespace {

constexpr int longMs = 60000;
const QString exitText = QStringLiteral("Detected app is not running anymore");

class Application : public SubjectProcess
{
public:
    Application()
        : SubjectProcess(QStringLiteral("guardsubject"), {GS::instance()->appName})
    {
    }
};

bool hasEnded()
{
    return WorkerThread::waitForAll(0);
}

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
    void isAnotherRunningAnswersBesideThePoll();
    void deletedListenerIsSilent();
    void stoppingTheWorkersEndsIt(); // last: there is no way back

private:
    std::unique_ptr<PrivateTmp> temporary;
    std::unique_ptr<LogCapture> log;
};

void TestExitListener::initTestCase()
{
    GS::instance()->appName = "tst_exitlistener";
}

void TestExitListener::init()
{
    temporary = std::make_unique<PrivateTmp>();
    log = std::make_unique<LogCapture>();
}

void TestExitListener::cleanup()
{
    delete ExitListener::instance();
    QTRY_VERIFY_WITH_TIMEOUT(hasEnded(), longMs);
    log.reset();
    SystemVObjects::removeAll();
    temporary.reset();
}

void TestExitListener::tellsWhenTheApplicationHasEnded()
{
    Application application;
    QCOMPARE(application.ask("try"), QByteArray("won"));
    ExitListener* listener = ExitListener::instance();
    QCOMPARE(ExitListener::instance(), listener);
    const SignalCounter exits(listener, &ExitListener::hasExited);
    std::atomic<QThread*> sender {nullptr};
    connect(
        listener, &ExitListener::hasExited, listener,
        [&sender] { sender = QThread::currentThread(); }, Qt::DirectConnection);
    QTest::qWait(2500); // two looks at the running application
    QCOMPARE(exits.count(), 0);
    QVERIFY(listener->isAnotherRunning());
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(application.ask("end"), QByteArray("ended"));
    QTRY_COMPARE_WITH_TIMEOUT(exits.count(), 1, longMs);
    QVERIFY2(timer.elapsed() < 20000, "about a second");
    QVERIFY(sender != thread());
    QTRY_VERIFY_WITH_TIMEOUT(hasEnded(), longMs);
    QCoreApplication::processEvents();
    QCOMPARE(exits.count(), 1);
    QCOMPARE(LogCapture::count(exitText), 1);
    QVERIFY(!listener->isAnotherRunning());
}

void TestExitListener::tellsWhenTheApplicationWasKilled()
{
    Application application;
    QCOMPARE(application.ask("try"), QByteArray("won"));
    const SignalCounter exits(ExitListener::instance(), &ExitListener::hasExited);
    application.killHard();
    QTRY_COMPARE_WITH_TIMEOUT(exits.count(), 1, longMs);
    QTRY_VERIFY_WITH_TIMEOUT(hasEnded(), longMs);
    QCoreApplication::processEvents();
    QCOMPARE(exits.count(), 1);
}

void TestExitListener::tellsWhenTheApplicationNeverRan()
{
    QElapsedTimer timer;
    timer.start();
    const SignalCounter exits(ExitListener::instance(), &ExitListener::hasExited);
    QTRY_COMPARE_WITH_TIMEOUT(exits.count(), 1, longMs);
    QVERIFY2(timer.elapsed() >= 900, "the listener sleeps first");
}

void TestExitListener::applicationKilledInAStepCountsAsGone()
{
    Application application;
    QCOMPARE(application.ask("try"), QByteArray("won"));
    Application other;
    QCOMPARE(other.ask("lock"), QByteArray("locked"));
    const SignalCounter exits(ExitListener::instance(), &ExitListener::hasExited);
    application.killHard();
    QVERIFY(ExitListener::instance()->isAnotherRunning()); // nobody can look while it is held
    other.killHard();
    QTRY_COMPARE_WITH_TIMEOUT(exits.count(), 1, longMs);
}

void TestExitListener::isAnotherRunningAnswersBesideThePoll()
{
    Application application;
    QCOMPARE(application.ask("try"), QByteArray("won"));
    ExitListener* listener = ExitListener::instance();
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < 2500)
        QVERIFY(listener->isAnotherRunning());
}

void TestExitListener::deletedListenerIsSilent()
{
    Application application;
    QCOMPARE(application.ask("try"), QByteArray("won"));
    for (int round = 0; round < 20; ++round) {
        auto parent = std::make_unique<QObject>();
        ExitListener* listener = ExitListener::instance(parent.get());
        QCOMPARE(listener->parent(), parent.get());
        QTest::qSleep(1 + round % 3);
    }
    application.killHard();
    QTRY_VERIFY_WITH_TIMEOUT(hasEnded(), longMs);
    QCOMPARE(LogCapture::count(exitText), 0);
}

void TestExitListener::stoppingTheWorkersEndsIt()
{
    Application application;
    QCOMPARE(application.ask("try"), QByteArray("won"));
    const SignalCounter exits(ExitListener::instance(), &ExitListener::hasExited);
    WorkerThread::stopAll();
    QTRY_VERIFY_WITH_TIMEOUT(hasEnded(), longMs);
    QCoreApplication::processEvents();
    QCOMPARE(exits.count(), 0);
}

QTEST_GUILESS_MAIN(TestExitListener)
#include "tst_exitlistener.moc"
