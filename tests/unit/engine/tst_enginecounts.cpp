#include "base/workerthread.h"
#include "engine/sdkhelper.h"
#include "engine/statuslistener.h"
#include "settings/globalsettings.h"
#include "support/logrecorder.h"
#include "support/peakmemory.h"
#include "support/scriptedengine.h"
#include "support/sleeps.h"

#include <QtTest>

#include <memory>
#include <thread>

/// What the supervisor counts and in what order it acts, on engines and tools that are scripts.
/// Its sleeps last a millisecond.
class TestEngineCounts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void finishedToolGivesBackAllReSends();
    void reportGivesBackAllReSends();
    void droppedCommandGivesBackAllReSends();
    void waitingCommandIsNotPending_data();
    void waitingCommandIsNotPending();
    void engineStartsAfterTheReset();
    void outputOfTheToolIsNotKept();

    // Endings: they use up the restarts that the supervisor grants
    void restartWithACommandPendingCounts();
    void explicitStartAfterGivingUpIsNotRepeated();
    void cleanupTestCase();

private:
    bool isLogged(const QString& start, int times) const;
    bool startEngine();
    bool sendCommandThatHangs();
    bool dieNotReady();
    bool useUpReSends();

    static constexpr int patienceMs = 30000;
    static constexpr int readyStatus = 0;
    const char* const hang = "exec sleep 600";
    const QString sentAgain = "Send last action again";
    const QString dropped = "Maximum retry exceeded, will not start the last action again";

    std::unique_ptr<ScriptedEngine> scripts;
    std::unique_ptr<LogRecorder> log;
    StatusListener* listener = nullptr;
    SdkHelper* sdk = nullptr;
};

// --- Steps ------------------------------------------------------------------------------------

bool TestEngineCounts::isLogged(const QString& start, int times) const
{
    return QTest::qWaitFor([&] { return log->count(start) == times; }, patienceMs);
}

bool TestEngineCounts::startEngine()
{
    const int before = scripts->starts();
    sdk->startVireon();
    return QTest::qWaitFor([&] { return scripts->starts() == before + 1; }, patienceMs);
}

/// Returns once the tool runs: the command is pending from then on.
bool TestEngineCounts::sendCommandThatHangs()
{
    const int before = scripts->tools();
    if (!scripts->installTool(hang))
        return false;
    sdk->trigger(SdkHelper::ManualCalibration);
    return QTest::qWaitFor([&] { return scripts->tools() == before + 1; }, patienceMs);
}

/// The engine says that it is not ready and dies; the next one runs when this returns.
bool TestEngineCounts::dieNotReady()
{
    const int starts = scripts->starts();
    const int exits = log->count("lastAction:");
    listener->injectStatus(StatusNotReady);
    scripts->killEngine();
    return isLogged("lastAction:", exits + 1)
        && QTest::qWaitFor([&] { return scripts->starts() == starts + 1; }, patienceMs);
}

/// The pending command is sent again three times, and hangs each time.
bool TestEngineCounts::useUpReSends()
{
    for (int i = 0; i < 3; ++i) {
        const int before = scripts->tools();
        const int sent = log->count(sentAgain);
        if (!dieNotReady() || log->count(sentAgain) != sent + 1)
            return false;
        listener->injectStatus(readyStatus);
        if (!QTest::qWaitFor([&] { return scripts->tools() == before + 1; }, patienceMs))
            return false;
    }
    return true;
}

// --- Frame ------------------------------------------------------------------------------------

void TestEngineCounts::initTestCase()
{
    scripts = std::make_unique<ScriptedEngine>();
    GS::instance()->penSettingsPath = scripts->path("pensettings.ini").toStdString();
    log = std::make_unique<LogRecorder>();
    listener = StatusListener::instance();
    sdk = SdkHelper::instance();
}

void TestEngineCounts::init()
{
    QVERIFY(scripts->installEngine());
    QVERIFY(scripts->installTool("exit 0"));
    listener->injectStatus(readyStatus);
    // A command that succeeds gives the supervisor back all restarts.
    log->clear();
    sdk->trigger(SdkHelper::SensorViewer);
    QVERIFY(isLogged("Sdk successful", 1));
    scripts->clear();
    log->clear();
}

void TestEngineCounts::cleanup()
{
    listener->injectStatus(readyStatus);
    sdk->stopVireon();
    // Every command comes to its end; one that still waited starts its tool only now.
    const auto areOver = [this] {
        scripts->killTools();
        return log->count("returned from") + log->count("[SdKHelper]") == log->count("Action:");
    };
    QTRY_VERIFY_WITH_TIMEOUT(areOver(), patienceMs);
    scripts->clear();
}

// --- Re-sends -----------------------------------------------------------------------------------

void TestEngineCounts::finishedToolGivesBackAllReSends()
{
    QVERIFY(startEngine());
    QVERIFY(sendCommandThatHangs());
    QVERIFY(useUpReSends());
    QVERIFY(scripts->installTool("exit 0"));
    sdk->trigger(SdkHelper::SensorViewer);
    QVERIFY(isLogged("Sdk successful", 1));
    QVERIFY(sendCommandThatHangs());
    QVERIFY(dieNotReady());
    QCOMPARE(log->count(dropped), 0);
    QCOMPARE(log->count(sentAgain), 4);
}

void TestEngineCounts::reportGivesBackAllReSends()
{
    QVERIFY(startEngine());
    QVERIFY(sendCommandThatHangs());
    QVERIFY(useUpReSends());
    sdk->resetLastAction(); // what the main window does on every report
    QVERIFY(sendCommandThatHangs());
    QVERIFY(dieNotReady());
    QCOMPARE(log->count(dropped), 0);
    QCOMPARE(log->count(sentAgain), 4);
}

void TestEngineCounts::droppedCommandGivesBackAllReSends()
{
    QVERIFY(startEngine());
    QVERIFY(sendCommandThatHangs());
    QVERIFY(useUpReSends());
    QVERIFY(dieNotReady());
    QCOMPARE(log->count(dropped), 1);
    listener->injectStatus(readyStatus);
    QVERIFY(sendCommandThatHangs());
    QVERIFY(dieNotReady());
    QCOMPARE(log->count(dropped), 1);
    QCOMPARE(log->count(sentAgain), 4);
}

void TestEngineCounts::waitingCommandIsNotPending_data()
{
    QTest::addColumn<int>("status");
    for (const int status : {StatusUnknown, StatusEngineRestarting, StatusNotReady})
        QTest::addRow("%d", status) << status;
}

void TestEngineCounts::waitingCommandIsNotPending()
{
    QFETCH(int, status);
    QVERIFY(startEngine());
    listener->injectStatus(status);
    const QSet<int> before = Sleeps::threads();
    sdk->trigger(SdkHelper::ManualCalibration);
    // It has gone to sleep: all that comes before the wait is done.
    const auto isAsleep = [&] {
        const QSet<int> fresh = Sleeps::threads() - before;
        return std::any_of(fresh.begin(), fresh.end(),
                           [](int thread) { return Sleeps::of(thread).contains(100); });
    };
    QTRY_VERIFY_WITH_TIMEOUT(isAsleep(), patienceMs);
    sdk->trigger(3);
    QVERIFY(isLogged("Action:  3  last:  -1 ", 1));
    listener->injectStatus(StatusNotReady);
    QVERIFY(dieNotReady());
    QVERIFY(isLogged("lastAction:  -1", 1));
    QCOMPARE(log->count(sentAgain), 0);
    QCOMPARE(scripts->tools(), 0);
}

// --- Order and output -------------------------------------------------------------------------

void TestEngineCounts::engineStartsAfterTheReset()
{
    const QString statusFile = scripts->path("pensettings.ini");
    QFile old(statusFile);
    QVERIFY(startEngine());
    QVERIFY(old.open(QIODevice::WriteOnly) && old.write("Result=5\n") > 0 && old.flush());
    QTRY_COMPARE_WITH_TIMEOUT(listener->currentStatus(), 5, patienceMs);
    log->clear();
    log->hold("starting");
    bool fileWasGone = false;
    int statusThen = 0;
    std::thread watcher([&] {
        while (log->count("starting") == 0)
            QThread::msleep(1);
        fileWasGone = !QFile::exists(statusFile);
        statusThen = listener->currentStatus();
        log->release();
    });
    scripts->killEngine();
    QVERIFY(isLogged("lastAction:", 1));
    watcher.join();
    QVERIFY2(fileWasGone, "the first report of the new engine may be taken for an old one");
    QCOMPARE(statusThen, int(StatusEngineRestarting));
}

void TestEngineCounts::outputOfTheToolIsNotKept()
{
    const PeakMemory memory;
    QVERIFY(scripts->installTool("exec head -c 100000000 /dev/zero"));
    sdk->trigger(SdkHelper::SensorViewer);
    QVERIFY(isLogged("Sdk successful", 1));
    QVERIFY2(memory.grownMb() < 30, "the process object has kept the tool's output");
}

// --- Endings ----------------------------------------------------------------------------------

void TestEngineCounts::restartWithACommandPendingCounts()
{
    QSignalSpy verdicts(sdk, &SdkHelper::statusChanged);
    QVERIFY(startEngine());
    QVERIFY(sendCommandThatHangs());
    QVERIFY(useUpReSends());
    QVERIFY(dieNotReady()); // with the command dropped
    listener->injectStatus(readyStatus);
    QVERIFY(scripts->installEngine("exit 1"));
    scripts->killEngine();
    QVERIFY(verdicts.wait(patienceMs));
    QCOMPARE(verdicts.first().first().toInt(), int(StatusEngineGaveUp));
    QCOMPARE(scripts->starts(), 37);
}

void TestEngineCounts::explicitStartAfterGivingUpIsNotRepeated()
{
    QSignalSpy verdicts(sdk, &SdkHelper::statusChanged);
    QVERIFY(scripts->installEngine("exit 1"));
    sdk->startVireon();
    QTRY_COMPARE_WITH_TIMEOUT(verdicts.size(), 1, patienceMs);
    QCOMPARE(scripts->starts(), 37);
    QVERIFY(scripts->installEngine());
    QVERIFY(startEngine());
    QCOMPARE(scripts->starts(), 38);
    QCOMPARE(verdicts.size(), 1);
    scripts->killEngine();
    QTRY_COMPARE_WITH_TIMEOUT(verdicts.size(), 2, patienceMs);
    QCOMPARE(verdicts.last().first().toInt(), int(StatusEngineGaveUp));
    QCoreApplication::processEvents();
    QCOMPARE(scripts->starts(), 38);
    QCOMPARE(log->count("starting"), 38);
    // A command that succeeds gives all restarts back, also now.
    QVERIFY(startEngine());
    listener->injectStatus(readyStatus);
    sdk->trigger(SdkHelper::SensorViewer);
    QVERIFY(isLogged("Sdk successful", 1));
    scripts->killEngine();
    QTRY_COMPARE_WITH_TIMEOUT(scripts->starts(), 40, patienceMs);
}

void TestEngineCounts::cleanupTestCase()
{
    // No worker may outlive what it logs to and reads from.
    WorkerThread::stopAll();
    QVERIFY(WorkerThread::waitForAll(patienceMs));
    log.reset();
    scripts.reset();
}

QTEST_GUILESS_MAIN(TestEngineCounts)
#include "tst_enginecounts.moc"
