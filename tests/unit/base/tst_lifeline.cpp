#include "base/lifeline.h"
#include "base/workerthread.h"
#include "display/resolutionchangenotifier.h"
#include "ipc/updaterstatelistener.h"
#include "support/nonewthreads.h"

#include <QtTest>

#include <atomic>
#include <memory>
#include <thread>

namespace {

constexpr int patienceMs = 60000;

/// Long enough for another thread to do what it must not do yet.
void giveOthersTime()
{
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
}

} // namespace

class TestLifeline : public QObject
{
    Q_OBJECT

private slots:
    void holdIsRefusedBeforeTheBeginning();
    void holdLastsAsLongAsItsObject();
    void holdIsRefusedAfterTheCut();
    void cutWaitsForTheHold();
    void cutWaitsForTheBeginning();
    void holdsAndCutNeverOverlap();
    void lineThatWasBegunForASlotThatNeverRunsIsCutAtOnce();
    void watcherWithoutAThreadCanBeDeleted_data();
    void watcherWithoutAThreadCanBeDeleted();
    void cleanupTestCase();
};

void TestLifeline::holdIsRefusedBeforeTheBeginning()
{
    Lifeline line;
    const Lifeline::Hold hold(line);
    QVERIFY(!hold);
}

void TestLifeline::holdLastsAsLongAsItsObject()
{
    Lifeline line;
    line.begin();
    for (int i = 0; i < 3; ++i) {
        const Lifeline::Hold hold(line);
        QVERIFY(hold);
        const Lifeline::Hold second(line);
        QVERIFY(!second);
    }
    const Lifeline::Hold again(line);
    QVERIFY(again);
}

void TestLifeline::holdIsRefusedAfterTheCut()
{
    Lifeline line;
    line.begin();
    line.cut();
    {
        const Lifeline::Hold hold(line);
        QVERIFY(!hold);
    }
    // A hold that was not granted gives nothing back.
    const Lifeline::Hold again(line);
    QVERIFY(!again);
}

void TestLifeline::cutWaitsForTheHold()
{
    Lifeline line;
    line.begin();
    std::atomic<bool> held {false};
    bool over = false; // guarded by the line, as the object is
    std::thread loop([&] {
        const Lifeline::Hold hold(line);
        held = true;
        giveOthersTime();
        over = true;
    });
    while (!held)
        std::this_thread::yield();
    line.cut();
    QVERIFY(over);
    loop.join();
}

void TestLifeline::cutWaitsForTheBeginning()
{
    Lifeline line;
    bool over = false;
    std::thread loop([&] {
        giveOthersTime();
        over = true;
        line.begin();
    });
    line.cut();
    QVERIFY(over);
    loop.join();
}

void TestLifeline::holdsAndCutNeverOverlap()
{
    for (int i = 0; i < 200; ++i) {
        Lifeline line;
        auto object = std::make_unique<int>(0);
        std::atomic<int> rounds {0};
        std::thread loop([&] {
            line.begin();
            for (;;) {
                const Lifeline::Hold hold(line);
                if (!hold)
                    return;
                ++*object;
                ++rounds;
            }
        });
        while (rounds < i)
            std::this_thread::yield();
        line.cut();
        QCOMPARE(*object, rounds.load());
        object.reset();
        loop.join();
    }
}

void TestLifeline::lineThatWasBegunForASlotThatNeverRunsIsCutAtOnce()
{
    Lifeline line;
    line.begin(); // by the object itself
    line.cut();
    const Lifeline::Hold hold(line);
    QVERIFY(!hold);
}

void TestLifeline::watcherWithoutAThreadCanBeDeleted_data()
{
    QTest::addColumn<QString>("watcher");
    QTest::newRow("updater") << "updater";
    QTest::newRow("screens") << "screens";
}

void TestLifeline::watcherWithoutAThreadCanBeDeleted()
{
    QFETCH(QString, watcher);
    QTest::ignoreMessage(QtSystemMsg, QRegularExpression("Thread creation error"));
    std::unique_ptr<QObject> object;
    {
        const NoNewThreads none;
        if (watcher == "updater")
            object = std::make_unique<UpdaterStateListener>("no-such-updater");
        else
            object.reset(ResolutionChangeNotifier::instance());
    }
    // With a line that waits for its beginning this never returns.
    object.reset();
    QVERIFY(WorkerThread::waitForAll(0));
}

void TestLifeline::cleanupTestCase()
{
    WorkerThread::stopAll();
    QVERIFY(WorkerThread::waitForAll(patienceMs));
}

QTEST_MAIN(TestLifeline)
#include "tst_lifeline.moc"
