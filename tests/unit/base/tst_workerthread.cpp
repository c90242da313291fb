#include "base/workerthread.h"
#include "support/logrecorder.h"
#include "support/nonewthreads.h"
#include "support/patience.h"
#include "support/threads.h"

#include <QElapsedTimer>
#include <QSemaphore>
#include <QtTest>

#include <atomic>
#include <thread>
#include <unistd.h>

// A table of functions in Qt's core that it calls for tools which follow all objects.
extern "C" Q_DECL_IMPORT quintptr qtHookData[];

namespace {

constexpr int objectMade = 3; // places in that table
constexpr int objectGone = 4;

std::atomic<int> livingObjects {0};

/// Counts the objects of this process while it lives, on all threads.
class ObjectCount
{
public:
    ObjectCount()
    {
        livingObjects = 0;
        qtHookData[objectMade] = reinterpret_cast<quintptr>(+[](QObject*) { ++livingObjects; });
        qtHookData[objectGone] = reinterpret_cast<quintptr>(+[](QObject*) { --livingObjects; });
    }

    ~ObjectCount() { qtHookData[objectMade] = qtHookData[objectGone] = 0; }
    ObjectCount(const ObjectCount&) = delete;
    ObjectCount& operator=(const ObjectCount&) = delete;

    static int surplus() { return livingObjects; }
};

/// Whether a thread of this process waits for something.
bool isWaiting(pid_t thread)
{
    QFile state(QString("/proc/self/task/%1/stat").arg(thread));
    return state.open(QIODevice::ReadOnly) && state.readAll().contains(") S ");
}

} // namespace

/// The slots that the tests let run.
class Receiver : public QObject
{
    Q_OBJECT

public:
    std::atomic<int> runs {0};
    std::atomic<int> lastArg {0};
    std::atomic<int> threadsEnded {0};
    std::atomic<QThread*> lastThread {nullptr};
    QSemaphore arrived;
    QSemaphore goOn;

public slots:
    void work()
    {
        lastThread = QThread::currentThread();
        // By name: a functor's slot object would be freed on another thread than its maker's.
        connect(QThread::currentThread(), SIGNAL(destroyed()), this, SLOT(countEnd()),
                Qt::DirectConnection);
        ++runs;
    }

    void workWith(int arg)
    {
        lastArg = arg;
        ++runs;
    }

    void countEnd() { ++threadsEnded; }

    void meet()
    {
        arrived.release();
        goOn.acquire();
    }
};

class TestWorkerThread : public QObject
{
    Q_OBJECT

private slots:
    void slotWithoutParametersRunsOnceAndAllIsDeleted();
    void noObjectOutlivesItsThread();
    void threadThatCannotBeStartedLeavesNothing();
    void slotGetsTheArgument();
    void twoCallsRunSideBySide();
    void unknownSlotOnlyWarns();
    void stepsAreLogged();
    void sleepLastsItsTime();
    void stopEndsSleepsForGood(); // the last one: there is no way back
};

void TestWorkerThread::slotWithoutParametersRunsOnceAndAllIsDeleted()
{
    const int threadsBefore = threadCount();
    Receiver receiver;
    WorkerThread::doWork(&receiver, SLOT(work()), -1);
    QTRY_COMPARE_WITH_TIMEOUT(receiver.threadsEnded.load(), 1, patienceMs);
    QCOMPARE(receiver.runs.load(), 1);
    QVERIFY(receiver.lastThread != QThread::currentThread());
    QCOMPARE(receiver.thread(), QThread::currentThread());
    QTRY_VERIFY_WITH_TIMEOUT(threadCount() <= threadsBefore, patienceMs);
    QVERIFY(WorkerThread::waitForAll(patienceMs));
}

void TestWorkerThread::noObjectOutlivesItsThread()
{
    Receiver receiver;
    const ObjectCount count;
    for (int i = 1; i <= 5; ++i) {
        QVERIFY(WorkerThread::doWork(&receiver, SLOT(work()), -1));
        QTRY_COMPARE(receiver.threadsEnded.load(), i);
    }
    QVERIFY(WorkerThread::waitForAll(20000));
    QTRY_COMPARE(ObjectCount::surplus(), 0);
}

void TestWorkerThread::threadThatCannotBeStartedLeavesNothing()
{
    const int threadsBefore = threadCount();
    Receiver receiver;
    {
        const ObjectCount count;
        QTest::ignoreMessage(QtSystemMsg, QRegularExpression("Thread creation error"));
        const NoNewThreads none;
        QVERIFY(!WorkerThread::doWork(&receiver, SLOT(work()), -1));
        QCOMPARE(ObjectCount::surplus(), 0);
    }
    QVERIFY(WorkerThread::waitForAll(0)); // nobody is waited for
    QCoreApplication::processEvents();
    QCOMPARE(receiver.runs.load(), 0);
    QCOMPARE(threadCount(), threadsBefore);
    // And the next one runs.
    QVERIFY(WorkerThread::doWork(&receiver, SLOT(work()), -1));
    QTRY_COMPARE(receiver.threadsEnded.load(), 1);
    QVERIFY(WorkerThread::waitForAll(patienceMs));
    QCOMPARE(receiver.runs.load(), 1);
}

void TestWorkerThread::slotGetsTheArgument()
{
    Receiver receiver;
    WorkerThread::doWork(&receiver, SLOT(workWith(int)), 18);
    QTRY_COMPARE_WITH_TIMEOUT(receiver.runs.load(), 1, patienceMs);
    QCOMPARE(receiver.lastArg.load(), 18);
    QVERIFY(WorkerThread::waitForAll(patienceMs));
}

void TestWorkerThread::twoCallsRunSideBySide()
{
    Receiver receiver;
    WorkerThread::doWork(&receiver, SLOT(meet()), -1);
    WorkerThread::doWork(&receiver, SLOT(meet()), -1);
    // Both are inside the slot at the same time, or this never comes.
    QVERIFY(receiver.arrived.tryAcquire(2, patienceMs));
    receiver.goOn.release(2);
    QVERIFY(WorkerThread::waitForAll(patienceMs));
}

void TestWorkerThread::unknownSlotOnlyWarns()
{
    const int threadsBefore = threadCount();
    Receiver receiver;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("No such slot.*noSuch")));
    QVERIFY(!WorkerThread::doWork(&receiver, SLOT(noSuchSlot()), -1));
    QVERIFY(WorkerThread::waitForAll(patienceMs));
    QTRY_VERIFY_WITH_TIMEOUT(threadCount() <= threadsBefore, patienceMs);
}

void TestWorkerThread::stepsAreLogged()
{
    LogRecorder log;
    Receiver receiver;
    WorkerThread::doWork(&receiver, SLOT(work()), -1);
    QTRY_COMPARE_WITH_TIMEOUT(receiver.threadsEnded.load(), 1, patienceMs);
    QVERIFY(WorkerThread::waitForAll(patienceMs));
    QCOMPARE(log.count(QStringLiteral("Do work")), 1);
    QCOMPARE(log.count(QStringLiteral("Thread run")), 1);
}

void TestWorkerThread::sleepLastsItsTime()
{
    QElapsedTimer clock;
    clock.start();
    WorkerThread::msleep(30);
    QVERIFY(clock.elapsed() >= 30);
}

void TestWorkerThread::stopEndsSleepsForGood()
{
    std::atomic<pid_t> thread {0};
    std::thread sleeper([&thread] {
        thread = gettid();
        WorkerThread::msleep(600 * 1000);
    });
    QTRY_VERIFY_WITH_TIMEOUT(thread != 0 && isWaiting(thread), patienceMs);
    QVERIFY(!WorkerThread::isStopping());
    WorkerThread::stopAll();
    QVERIFY(WorkerThread::isStopping());
    sleeper.join();
    WorkerThread::msleep(600 * 1000);
    QVERIFY(WorkerThread::waitForAll(patienceMs));
}

QTEST_GUILESS_MAIN(TestWorkerThread)
#include "tst_workerthread.moc"
