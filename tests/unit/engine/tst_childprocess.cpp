#include "engine/childprocess.h"
#include "engine/graceperiod.h"
#include "support/logrecorder.h"

#include <QtTest>

#include <csignal>
#include <memory>
#include <unistd.h>
#include <vector>

/// Children are the system's own programs. What outlives this process is looked at from outside.
class TestChildProcess : public QObject
{
    Q_OBJECT

private slots:
    void runsInTheApplicationDirectory();
    void endsAtOnce();
    void endingWhatNeverRanDoesNothing();
    void discardedWhileRunningEndsWithoutComplaint();
    void discardedAfterItsEndIsDeleted();
    void handleIsHeldWhileItRuns();
    void missingProgramHasNoHandle();
    void moreChildrenThanPlaces();

private:
    static int openDescriptors() { return QDir("/proc/self/fd").entryList().size(); }
    static bool isGone(qint64 pid) { return kill(static_cast<pid_t>(pid), 0) != 0; }
};

void TestChildProcess::runsInTheApplicationDirectory()
{
    ChildProcess child;
    child.launch("pwd");
    QVERIFY(child.waitForFinished());
    QCOMPARE(QString::fromUtf8(child.readAllStandardOutput()).trimmed(),
             QCoreApplication::applicationDirPath());
}

void TestChildProcess::endsAtOnce()
{
    ChildProcess child;
    child.launch("sleep", {"600"});
    QVERIFY(child.waitForStarted());
    const qint64 pid = child.processId();
    child.endNow();
    QCOMPARE(child.state(), QProcess::NotRunning);
    QVERIFY(isGone(pid));
}

void TestChildProcess::endingWhatNeverRanDoesNothing()
{
    LogRecorder log;
    ChildProcess child;
    child.endNow();
    QCOMPARE(child.state(), QProcess::NotRunning);
    QVERIFY(log.lines().isEmpty());
}

void TestChildProcess::discardedWhileRunningEndsWithoutComplaint()
{
    LogRecorder log;
    QPointer<ChildProcess> child = new ChildProcess;
    child->launch("sleep", {"600"});
    QVERIFY(child->waitForStarted());
    const qint64 pid = child->processId();
    child->discard();
    QVERIFY(isGone(pid));
    QTRY_VERIFY(!child);
    QVERIFY(log.lines().isEmpty());
}

void TestChildProcess::discardedAfterItsEndIsDeleted()
{
    QPointer<ChildProcess> child = new ChildProcess;
    child->launch("true");
    QVERIFY(child->waitForFinished());
    child->discard();
    QVERIFY(child);
    QTRY_VERIFY(!child);
}

void TestChildProcess::handleIsHeldWhileItRuns()
{
    const int before = openDescriptors();
    {
        ChildProcess child;
        child.launch("sleep", {"600"});
        QVERIFY(child.waitForStarted());
        QVERIFY(openDescriptors() > before);
        child.endNow();
        QCOMPARE(openDescriptors(), before);
    }
    QCOMPARE(openDescriptors(), before);
}

void TestChildProcess::missingProgramHasNoHandle()
{
    const int before = openDescriptors();
    auto child = std::make_unique<ChildProcess>();
    child->launch("./no-such-program");
    QVERIFY(!child->waitForStarted());
    child.reset();
    QCOMPARE(openDescriptors(), before);
}

void TestChildProcess::moreChildrenThanPlaces()
{
    const int before = openDescriptors();
    std::vector<int> handles;
    for (int handle = GracePeriod::remember(getpid()); handle >= 0;
         handle = GracePeriod::remember(getpid())) {
        handles.push_back(handle);
        QVERIFY(handles.size() <= 64);
    }
    QVERIFY(handles.size() > 60);
    for (const int handle : handles)
        GracePeriod::forget(handle);
    const int again = GracePeriod::remember(getpid());
    QVERIFY(again >= 0);
    GracePeriod::forget(again);
    QCOMPARE(openDescriptors(), before); // the one too many is closed
}

QTEST_GUILESS_MAIN(TestChildProcess)
#include "tst_childprocess.moc"
