#include "base/workerthread.h"
#include "display/resolutionchangenotifier.h"
#include "engine/sdkhelper.h"
#include "engine/statuslistener.h"
#include "ipc/ipclistener.h"
#include "ipc/updaterstatelistener.h"
#include "settings/globalsettings.h"
#include "support/logrecorder.h"
#include "support/sleeps.h"

#include <QScreen>
#include <QSemaphore>
#include <QtTest>

#include <atomic>
#include <functional>
#include <memory>
#include <numeric>
#include <thread>

namespace {

constexpr int patienceMs = 60000;

std::atomic<int> looksAtTheScreen {0};
std::atomic<int> screenEdge {0}; ///< 0: the real size
std::atomic<int> awaitedMs {0}; ///< by all waits for a semaphore

} // namespace

// --- What the linker puts in the place of two calls of Qt's ------------------------------------

QSize realSize(const QScreen* screen) __asm__("__real__ZNK7QScreen4sizeEv");
QSize countedSize(const QScreen* screen) __asm__("__wrap__ZNK7QScreen4sizeEv");
bool realTryAcquire(QSemaphore* semaphore, int n,
                    int timeout) __asm__("__real__ZN10QSemaphore10tryAcquireEii");
bool countedTryAcquire(QSemaphore* semaphore, int n,
                       int timeout) __asm__("__wrap__ZN10QSemaphore10tryAcquireEii");

/// A square that is another one at every look, once there is an edge.
QSize countedSize(const QScreen* screen)
{
    ++looksAtTheScreen;
    if (screenEdge == 0)
        return realSize(screen);
    const int edge = ++screenEdge;
    return {edge, edge};
}

bool countedTryAcquire(QSemaphore* semaphore, int n, int timeout)
{
    awaitedMs += timeout;
    return realTryAcquire(semaphore, n, timeout);
}

// ------------------------------------------------------------------------------------------------

/// How often each loop looks: the sleeps that it asks for, counted against its rounds.
class TestPace : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void mailboxIsLookedAtEverySixtyMs();
    void mailboxIsLeftAloneDuringAReply();
    void statusFileIsReadThreeTimesASecond();
    void waitingCommandLooksTenTimesASecond();
    void updaterIsLookedForOnceASecond();
    void screenIsLookedAtOnceASecond();
    void screenSizeIsOneValue();
    void answerAboutTheScreenIsAwaitedFor200Ms();
    void cleanupTestCase();

private:
    /// The thread that begins to sleep because of @p start.
    int threadOf(const std::function<void()>& start) const;

    /// What the thread @p loop has slept in one of its rounds, on average of many.
    static int pace(int loop, const std::function<int()>& rounds);

    static int slept(int thread);

    QTemporaryDir folder;
    std::unique_ptr<LogRecorder> log;
    std::unique_ptr<IpcListener> mailbox;
    std::unique_ptr<UpdaterStateListener> updater;
    std::atomic<int> sizes {0}; ///< told of the screen
    std::atomic<int> halvedSizes {0}; ///< those of two looks
    int mailboxLoop = 0;
    int screenLoop = 0;
};

int TestPace::slept(int thread)
{
    const QVector<int> all = Sleeps::of(thread);
    return std::accumulate(all.begin(), all.end(), 0);
}

int TestPace::threadOf(const std::function<void()>& start) const
{
    const QSet<int> before = Sleeps::threads() + QSet<int> {Sleeps::thisThread()};
    start();
    const auto fresh = [&before] { return Sleeps::threads() - before; };
    return QTest::qWaitFor([&] { return !fresh().isEmpty(); }, patienceMs) ? *fresh().begin() : -1;
}

int TestPace::pace(int loop, const std::function<int()>& rounds)
{
    const int sleptBefore = slept(loop);
    const int roundsBefore = rounds();
    if (!QTest::qWaitFor([&] { return rounds() >= roundsBefore + 100; }, patienceMs))
        return -1;
    // A round that goes on while this is read is a hundredth and is rounded away.
    return qRound(double(slept(loop) - sleptBefore) / (rounds() - roundsBefore) / 10) * 10;
}

void TestPace::initTestCase()
{
    GS* settings = GS::instance();
    settings->fifo1Path = folder.filePath("fifo1");
    settings->refifoPath = folder.filePath("refifo");
    settings->penSettingsPath = folder.filePath("pensettings.ini").toStdString();
}

void TestPace::init()
{
    log = std::make_unique<LogRecorder>();
}

void TestPace::cleanup()
{
    log.reset();
}

void TestPace::mailboxIsLookedAtEverySixtyMs()
{
    QFile empty(GS::instance()->fifo1Path);
    QVERIFY(empty.open(QIODevice::WriteOnly));
    mailboxLoop = threadOf([this] { mailbox = std::make_unique<IpcListener>(); });
    QVERIFY(mailboxLoop > 0);
    QCOMPARE(pace(mailboxLoop, [this] { return log->count("ipc read:"); }), 60);
    QVERIFY(empty.remove());
    // Nothing is logged of a look that finds no file.
    const int before = Sleeps::of(mailboxLoop).size();
    QTRY_VERIFY_WITH_TIMEOUT(Sleeps::of(mailboxLoop).size() >= before + 20, patienceMs);
    const QVector<int> sleeps = Sleeps::of(mailboxLoop).mid(before, 20);
    QCOMPARE(sleeps.count(50), 10);
    QCOMPARE(sleeps.count(10), 10);
}

void TestPace::mailboxIsLeftAloneDuringAReply()
{
    QVERIFY(mailbox);
    std::atomic<int> received {0};
    connect(
        mailbox.get(), &IpcListener::received, mailbox.get(), [&] { ++received; },
        Qt::DirectConnection);
    Sleeps::hold(mailboxLoop);
    std::atomic<int> replyThread {0};
    std::thread reply([&] {
        replyThread = Sleeps::thisThread();
        Sleeps::hold(replyThread);
        mailbox->writeDone();
    });
    // The reply has begun, and waits for the loop's pause as long as the test wants.
    QTRY_VERIFY_WITH_TIMEOUT(Sleeps::of(replyThread).size() == 1, patienceMs);
    QFile command(GS::instance()->fifo1Path);
    const bool written = command.open(QIODevice::WriteOnly) && command.write("e") == 1;
    command.close();
    const int before = Sleeps::of(mailboxLoop).size();
    Sleeps::release(mailboxLoop);
    const bool paused =
        QTest::qWaitFor([&] { return Sleeps::of(mailboxLoop).size() >= before + 50; }, patienceMs);
    const int receivedMeanwhile = received;
    const QVector<int> sleeps = Sleeps::of(mailboxLoop).mid(before + 1, 40);
    Sleeps::release(replyThread);
    reply.join();
    QVERIFY(written && paused);
    QCOMPARE(receivedMeanwhile, 0);
    QCOMPARE(sleeps, QVector<int>(40, 10));
    QCOMPARE(Sleeps::of(replyThread).first(), 10);
    QTRY_COMPARE_WITH_TIMEOUT(received.load(), 1, patienceMs);
}

void TestPace::statusFileIsReadThreeTimesASecond()
{
    const int reader = threadOf([] { StatusListener::instance(); });
    QVERIFY(reader > 0);
    QCOMPARE(pace(reader, [this] { return log->count("Could not open the file!"); }), 300);
    QCOMPARE(Sleeps::of(reader).mid(0, 50), QVector<int>(50, 300));
    // The hand-over to the next reader looks for the end of this one in short steps.
    const int thisThread = Sleeps::thisThread();
    Sleeps::hold(reader);
    std::thread other([=] {
        while (Sleeps::of(thisThread).size() < 20)
            QThread::msleep(1);
        Sleeps::release(reader);
    });
    const int next = threadOf([] { StatusListener::instance()->injectStatus(StatusUnknown); });
    other.join();
    QVERIFY(next > 0);
    QCOMPARE(Sleeps::of(thisThread).mid(0, 20), QVector<int>(20, 10));
}

void TestPace::waitingCommandLooksTenTimesASecond()
{
    QCOMPARE(StatusListener::instance()->currentStatus(), int(StatusUnknown));
    const int command = threadOf([] { SdkHelper::instance()->trigger(3); });
    QVERIFY(command > 0);
    QTRY_VERIFY_WITH_TIMEOUT(Sleeps::of(command).size() > 20, patienceMs);
    QCOMPARE(Sleeps::of(command).mid(0, 20), QVector<int>(20, 100));
    // The next reader is on its way when the next test looks for a new thread.
    QVERIFY(threadOf([] { StatusListener::instance()->injectStatus(StatusReady); }) > 0);
    QTRY_COMPARE_WITH_TIMEOUT(log->count("[SdKHelper] no argument found for:"), 1, patienceMs);
}

void TestPace::updaterIsLookedForOnceASecond()
{
    const int loop =
        threadOf([this] { updater = std::make_unique<UpdaterStateListener>("no-such-updater"); });
    QVERIFY(loop > 0);
    QTRY_VERIFY_WITH_TIMEOUT(Sleeps::of(loop).size() > 20, patienceMs);
    QCOMPARE(Sleeps::of(loop).mid(0, 20), QVector<int>(20, 1000));
}

void TestPace::screenIsLookedAtOnceASecond()
{
    screenLoop = threadOf([this] { ResolutionChangeNotifier::instance(this); });
    QVERIFY(screenLoop > 0);
    QCOMPARE(pace(screenLoop, [] { return looksAtTheScreen.load(); }), 1000);
}

void TestPace::screenSizeIsOneValue()
{
    QVERIFY(screenLoop > 0);
    connect(
        ResolutionChangeNotifier::instance(), &ResolutionChangeNotifier::resolutionChanged, this,
        [this](int width, int height) {
            halvedSizes += width == height ? 0 : 1;
            ++sizes;
        },
        Qt::DirectConnection);
    screenEdge = 1000;
    QTRY_VERIFY_WITH_TIMEOUT(sizes >= 20, patienceMs);
    QCOMPARE(halvedSizes.load(), 0);
    screenEdge = 0;
}

void TestPace::answerAboutTheScreenIsAwaitedFor200Ms()
{
    QVERIFY(screenLoop > 0);
    // This is the thread that should answer: it handles no events here.
    Sleeps::hold(screenLoop);
    const int awaitedBefore = awaitedMs;
    const int sleepsBefore = Sleeps::of(screenLoop).size();
    Sleeps::release(screenLoop);
    const QDeadlineTimer deadline(patienceMs);
    while (Sleeps::of(screenLoop).size() < sleepsBefore + 3 && !deadline.hasExpired())
        QThread::msleep(1);
    QVERIFY2(!deadline.hasExpired(), "the watcher waits for one answer for ever");
    Sleeps::hold(screenLoop);
    const int rounds = Sleeps::of(screenLoop).size() - sleepsBefore;
    const int awaited = awaitedMs - awaitedBefore;
    Sleeps::release(screenLoop);
    QCOMPARE(awaited, rounds * 200);
}

void TestPace::cleanupTestCase()
{
    WorkerThread::stopAll();
    QVERIFY(WorkerThread::waitForAll(patienceMs));
}

QTEST_MAIN(TestPace)
#include "tst_pace.moc"
