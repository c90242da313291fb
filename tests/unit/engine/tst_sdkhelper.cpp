#include "base/workerthread.h"
#include "engine/sdkhelper.h"
#include "engine/statuslistener.h"
#include "settings/globalsettings.h"
#include "support/files.h"
#include "support/logrecorder.h"
#include "support/memory.h"
#include "support/patience.h"

#include <QtTest>

#include <csignal>
#include <memory>
#include <thread>

/// Runs the one supervisor of the process against engines and tools that are small scripts beside
/// the test program. They append what happens to a journal: "start PID", "tool LETTER".
class TestSdkHelper : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    // Engine
    void engineRunsInTheApplicationDirectory();
    void outputIsLoggedLineByLine();
    void killedEngineIsStartedAgain();
    void killedDuringCommandWithAReportResendsNothing();
    void stopEndsTheEngineWithoutRestart();
    void stopIsToldWhenTheEngineHasEnded();
    void stopWithoutEngineDoesNothing();
    void startWhileRunningReplacesTheEngine();
    void missingEngineIsNotTriedAgain();
    void standardErrorDoesNotPileUp();

    // Commands
    void everyActionHasItsLetter_data();
    void everyActionHasItsLetter();
    void codesWithoutLetterRunNothing_data();
    void codesWithoutLetterRunNothing();
    void commandWaitsUntilTheEngineIsReady_data();
    void commandWaitsUntilTheEngineIsReady();
    void exitCodeIsNotLookedAt();
    void missingToolStaysPending();
    void twoCommandsRunSideBySide();

    // Endings; each leaves the counters of the supervisor behind
    void pendingCommandIsSentAgainThreeTimes();
    void thirtySeventhExitIsTheLast();
    void cleanupTestCase();

private:
    bool installEngine(const QByteArray& script) const;
    bool installTool(const QByteArray& script) const;
    QStringList journal(const QString& start) const;
    qint64 enginePid() const;
    bool startEngine(const QByteArray& script = "exec sleep 600");
    void killEngine() const { kill(static_cast<pid_t>(enginePid()), SIGKILL); }

    static constexpr int readyStatus = 0;

    QTemporaryDir folder;
    QString journalPath;
    std::unique_ptr<LogRecorder> log;
    StatusListener* listener = nullptr;
    SdkHelper* sdk = nullptr;
};

// --- Scripts ----------------------------------------------------------------------------------

static QString besideTheTest(const QString& name)
{
    return QCoreApplication::applicationDirPath() + QLatin1Char('/') + name;
}

bool TestSdkHelper::installEngine(const QByteArray& script) const
{
    return writeScript(besideTheTest(QStringLiteral("vireon-main")),
                       "#!/bin/sh\necho \"start $$\" >> \"" + QFile::encodeName(journalPath)
                           + "\"\n" + script + "\n");
}

bool TestSdkHelper::installTool(const QByteArray& script) const
{
    return writeScript(besideTheTest(QStringLiteral("vireon-sdk")),
                       "#!/bin/sh\necho \"tool $*\" >> \"" + QFile::encodeName(journalPath) + "\"\n"
                           + script + "\n");
}

QStringList TestSdkHelper::journal(const QString& start) const
{
    const QStringList lines =
        QString::fromUtf8(contentOf(journalPath, {})).split(QLatin1Char('\n'));
    return lines.filter(QRegularExpression(QLatin1Char('^') + start));
}

qint64 TestSdkHelper::enginePid() const
{
    const QStringList starts = journal(QStringLiteral("start"));
    return starts.isEmpty() ? -1 : starts.last().section(QLatin1Char(' '), 1).toLongLong();
}

bool TestSdkHelper::startEngine(const QByteArray& script)
{
    if (!installEngine(script))
        return false;
    const int before = journal(QStringLiteral("start")).size();
    sdk->startVireon();
    return QTest::qWaitFor([&] { return journal(QStringLiteral("start")).size() > before; },
                           patienceMs);
}

// --- Frame ------------------------------------------------------------------------------------

void TestSdkHelper::initTestCase()
{
    journalPath = folder.filePath(QStringLiteral("journal"));
    GS::instance()->penSettingsPath =
        folder.filePath(QStringLiteral("pensettings.ini")).toStdString();
    log = std::make_unique<LogRecorder>();
    listener = StatusListener::instance();
    sdk = SdkHelper::instance();
    QCOMPARE(SdkHelper::instance(this), sdk);
}

void TestSdkHelper::init()
{
    QFile::remove(journalPath);
    QVERIFY(installTool("exit 0"));
    listener->injectStatus(readyStatus);
    sdk->resetLastAction();
    log->clear();
}

void TestSdkHelper::cleanup()
{
    sdk->stopVireon();
}

// --- Engine -----------------------------------------------------------------------------------

void TestSdkHelper::engineRunsInTheApplicationDirectory()
{
    const QString told = besideTheTest(QStringLiteral("vireon-main.cwd"));
    QFile::remove(told); // of a run that was broken off
    QVERIFY(startEngine("pwd >> \"$0.cwd\"; echo \"arguments $#\"; exec sleep 600"));
    QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("[vireon] \"arguments 0")), 1, patienceMs);
    QCOMPARE(QString::fromUtf8(contentOf(told)).trimmed(),
             QDir(QCoreApplication::applicationDirPath()).canonicalPath());
    QVERIFY(QFile::remove(told));
    QCOMPARE(log->count(QStringLiteral("starting ./vireon-main")), 1);
}

void TestSdkHelper::outputIsLoggedLineByLine()
{
    QVERIFY(startEngine("printf 'one\\ntwo\\n\\nthree\\npart'; exec sleep 600"));
    QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("[vireon]")), 5, patienceMs);
    const auto lines = log->linesWith(QStringLiteral("[vireon]"));
    QCOMPARE(lines.at(0).text, QStringLiteral("[vireon] \"one\\n\""));
    QCOMPARE(lines.at(1).text, QStringLiteral("[vireon] \"two\\n\""));
    QCOMPARE(lines.at(2).text, QStringLiteral("[vireon] \"\\n\""));
    QCOMPARE(lines.at(3).text, QStringLiteral("[vireon] \"three\\n\""));
    QCOMPARE(lines.at(4).text, QStringLiteral("[vireon] \"part\""));
}

void TestSdkHelper::killedEngineIsStartedAgain()
{
    QVERIFY(startEngine());
    QSignalSpy reports(listener, &StatusListener::statusChanged);
    killEngine();
    QTRY_COMPARE_WITH_TIMEOUT(journal(QStringLiteral("start")).size(), 2, patienceMs);
    QCOMPARE(reports.count(), 1);
    QCOMPARE(reports.first().first().toInt(), int(StatusEngineRestarting));
    QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("lastAction:  -1")), 1, patienceMs);
    QCOMPARE(log->linesWith(QStringLiteral("Vireon exited")).first().text.simplified(),
             QStringLiteral("Vireon exited, code = 9 status = QProcess::CrashExit"));
    QCOMPARE(log->count(QStringLiteral("Send last action again")), 0);
    QCOMPARE(journal(QStringLiteral("tool")), QStringList());
}

void TestSdkHelper::killedDuringCommandWithAReportResendsNothing()
{
    // What the main window does on every report.
    QObject window;
    connect(listener, &StatusListener::statusChanged, &window, [this] { sdk->resetLastAction(); });
    QVERIFY(installTool("exec sleep 5"));
    QVERIFY(startEngine());
    sdk->trigger(SdkHelper::ManualCalibration);
    QTRY_COMPARE_WITH_TIMEOUT(journal(QStringLiteral("tool m")).size(), 1, patienceMs);
    killEngine();
    QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("lastAction:  -1")), 1, patienceMs);
    QCOMPARE(log->count(QStringLiteral("Send last action again")), 0);
    QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("returned from")), 1, patienceMs);
}

void TestSdkHelper::stopEndsTheEngineWithoutRestart()
{
    QVERIFY(startEngine());
    const auto pid = static_cast<pid_t>(enginePid());
    QSignalSpy reports(listener, &StatusListener::statusChanged);
    sdk->stopVireon();
    QTRY_VERIFY_WITH_TIMEOUT(kill(pid, 0) != 0, patienceMs);
    QTest::qWait(400); // longer than a restart takes, which must not come
    QCOMPARE(journal(QStringLiteral("start")).size(), 1);
    QCOMPARE(reports.count(), 0);
    QCOMPARE(log->count(QStringLiteral("Vireon exited")), 0);
}

void TestSdkHelper::stopIsToldWhenTheEngineHasEnded()
{
    const QSignalSpy told(sdk, &SdkHelper::engineStopped);
    QVERIFY(startEngine());
    QVERIFY(startEngine()); // in place of the first, which is no stop
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(told.count(), 0);
    sdk->stopVireon();
    QCOMPARE(told.count(), 0); // not before the event loop has seen the end
    QTRY_COMPARE_WITH_TIMEOUT(told.count(), 1, patienceMs);
    QVERIFY(kill(static_cast<pid_t>(enginePid()), 0) != 0);
    sdk->stopVireon();
    QCOMPARE(told.count(), 2);
}

void TestSdkHelper::stopWithoutEngineDoesNothing()
{
    sdk->stopVireon();
    sdk->stopVireon();
    QCOMPARE(log->lines().size(), 0);
}

void TestSdkHelper::startWhileRunningReplacesTheEngine()
{
    QVERIFY(startEngine());
    const auto first = static_cast<pid_t>(enginePid());
    QVERIFY(startEngine());
    QTRY_VERIFY_WITH_TIMEOUT(kill(first, 0) != 0, patienceMs);
    QCOMPARE(kill(static_cast<pid_t>(enginePid()), 0), 0);
    QTest::qWait(400);
    QCOMPARE(journal(QStringLiteral("start")).size(), 2);
    QCOMPARE(log->count(QStringLiteral("Vireon exited")), 0);
}

void TestSdkHelper::missingEngineIsNotTriedAgain()
{
    QVERIFY(QFile::remove(QCoreApplication::applicationDirPath() + QStringLiteral("/vireon-main")));
    sdk->startVireon();
    QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("cannot start ./vireon-main")), 1,
                              patienceMs);
    QTest::qWait(500);
    QCOMPARE(log->count(QStringLiteral("starting ./vireon-main")), 1);
    QCOMPARE(log->count(QStringLiteral("Vireon exited")), 0);
}

void TestSdkHelper::standardErrorDoesNotPileUp()
{
    const qint64 before = residentKiB();
    // 50 MB, into a pipe of our own in place of the test's standard error.
    int ends[2] = {-1, -1};
    QCOMPARE(pipe(ends), 0);
    const int saved = dup(STDERR_FILENO);
    dup2(ends[1], STDERR_FILENO);
    close(ends[1]);
    installEngine("head -c 50000000 /dev/zero >&2; echo done; exec sleep 600");
    sdk->startVireon();
    dup2(saved, STDERR_FILENO);
    close(saved);
    qint64 forwarded = 0;
    std::thread drain([&] {
        char buffer[65536];
        while (forwarded < 50000000) {
            const ssize_t count = read(ends[0], buffer, sizeof buffer);
            if (count <= 0)
                break;
            forwarded += count;
        }
    });
    const bool done = QTest::qWaitFor(
        [&] { return log->count(QStringLiteral("[vireon] \"done")) == 1; }, patienceMs);
    const qint64 after = residentKiB();
    sdk->stopVireon(); // the pipe's other end closes
    drain.join();
    close(ends[0]);
    QVERIFY(done);
    QCOMPARE(forwarded, Q_INT64_C(50000000));
    QVERIFY2(after - before < 30 * 1024, "the process object has kept the engine's errors");
}

// --- Commands ---------------------------------------------------------------------------------

void TestSdkHelper::everyActionHasItsLetter_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("letter");
    const auto row = [](const char* name, int code, const char* letter) {
        QTest::newRow(name) << code << QString::fromLatin1(letter);
    };
    row("AutoCalibration", 0, "a");
    row("ManualCalibration", 1, "m");
    row("SensorViewer", 2, "v");
    row("TouchCalibration", 4, "t");
    row("CommandS", 9, "s");
    row("CommandF", 10, "f");
    row("ResetCalibration", 11, "0");
    row("PauseResumeCalibration", 12, "8");
    row("SinglePointer", 14, "5");
    row("MultiPointer", 15, "6");
    row("CalibrateRayline", 16, "4");
    row("OffsetCorrection", 17, "7");
    row("QuitEngine", 18, "Q");
    row("LoadCcf", 19, "9");
}

void TestSdkHelper::everyActionHasItsLetter()
{
    QFETCH(int, code);
    QFETCH(QString, letter);
    const QMetaEnum actions = QMetaEnum::fromType<SdkHelper::Action>();
    QCOMPARE(QByteArray(actions.valueToKey(code)), QByteArray(QTest::currentDataTag()));
    sdk->trigger(code);
    QTRY_COMPARE_WITH_TIMEOUT(
        log->count(QStringLiteral("Sdk successful for command:  \"%1\"").arg(letter)), 1,
        patienceMs);
    QCOMPARE(journal(QStringLiteral("tool")), QStringList(QStringLiteral("tool ") + letter));
    QCOMPARE(log->linesWith(QStringLiteral("Action:")).first().text.simplified(),
             QStringLiteral("Action: %1 last: -1 current vireon status = 0").arg(code));
    QCOMPARE(log->linesWith(QStringLiteral("returned from")).first().text.simplified(),
             QStringLiteral("returned from ./vireon-sdk : true"));
}

void TestSdkHelper::codesWithoutLetterRunNothing_data()
{
    QTest::addColumn<int>("code");
    for (const int code : {3, 5, 6, 7, 8, 13, -1, -2, 20, 1000})
        QTest::addRow("%d", code) << code;
}

void TestSdkHelper::codesWithoutLetterRunNothing()
{
    QFETCH(int, code);
    sdk->trigger(code);
    const QString text = QStringLiteral("[SdKHelper] no argument found for:  %1").arg(code);
    QTRY_COMPARE_WITH_TIMEOUT(log->count(text), 1, patienceMs);
    // The next command still finds no action pending, and no tool has run before its own.
    sdk->trigger(SdkHelper::SensorViewer);
    QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("Sdk successful")), 1, patienceMs);
    QCOMPARE(log->count(QStringLiteral("Action:  2  last:  -1 ")), 1);
    QCOMPARE(journal(QStringLiteral("tool")), QStringList(QStringLiteral("tool v")));
}

void TestSdkHelper::commandWaitsUntilTheEngineIsReady_data()
{
    QTest::addColumn<int>("status");
    for (const int status : {-99, -10, -1})
        QTest::addRow("%d", status) << status;
}

void TestSdkHelper::commandWaitsUntilTheEngineIsReady()
{
    QFETCH(int, status);
    listener->injectStatus(status);
    sdk->trigger(SdkHelper::QuitEngine);
    sdk->trigger(3);
    QTest::qWait(500); // several looks at the status
    QCOMPARE(journal(QStringLiteral("tool")), QStringList());
    QCOMPARE(log->count(QStringLiteral("[SdKHelper]")), 0);
    listener->injectStatus(StatusStarted);
    QTRY_COMPARE_WITH_TIMEOUT(journal(QStringLiteral("tool")),
                              QStringList(QStringLiteral("tool Q")), patienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("Sdk successful")), 1, patienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("[SdKHelper]")), 1, patienceMs);
}

void TestSdkHelper::exitCodeIsNotLookedAt()
{
    QVERIFY(installTool("exit 3"));
    sdk->trigger(SdkHelper::ManualCalibration);
    QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("Sdk successful for command:  \"m\"")), 1,
                              patienceMs);
    sdk->trigger(SdkHelper::SensorViewer);
    QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("Action:  2  last:  -1 ")), 1, patienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("Sdk successful")), 2, patienceMs);
}

void TestSdkHelper::missingToolStaysPending()
{
    QVERIFY(QFile::remove(QCoreApplication::applicationDirPath() + QStringLiteral("/vireon-sdk")));
    sdk->trigger(SdkHelper::ManualCalibration);
    QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("returned from  ./vireon-sdk  :  false")),
                              1, patienceMs);
    sdk->trigger(3);
    QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("Action:  3  last:  1 ")), 1, patienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("[SdKHelper]")), 1, patienceMs);
    QCOMPARE(log->count(QStringLiteral("Sdk successful")), 0);
}

void TestSdkHelper::twoCommandsRunSideBySide()
{
    // Each tool ends once it has seen the other, or with a failure after a while.
    const QByteArray journalName = QFile::encodeName(journalPath);
    installTool("for i in $(seq 200); do [ $(grep -c ^tool \"" + journalName
                + "\") = 2 ] && echo both >> \"" + journalName + "\" && exit; sleep 0.1; done");
    sdk->trigger(SdkHelper::TouchCalibration);
    sdk->trigger(SdkHelper::ResetCalibration);
    QTRY_COMPARE_WITH_TIMEOUT(journal(QStringLiteral("both")).size(), 2, patienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("Sdk successful")), 2, patienceMs);
}

// --- Endings ----------------------------------------------------------------------------------

void TestSdkHelper::pendingCommandIsSentAgainThreeTimes()
{
    QVERIFY(installTool("exec sleep 25"));
    QVERIFY(startEngine());
    sdk->trigger(SdkHelper::ManualCalibration);
    for (int exit = 1; exit <= 4; ++exit) {
        // The tool runs, the engine says that it is not ready and dies.
        QTRY_COMPARE_WITH_TIMEOUT(journal(QStringLiteral("tool m")).size(), exit, patienceMs);
        listener->injectStatus(StatusNotReady);
        killEngine();
        QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("lastAction:  1")), exit, patienceMs);
        QTRY_COMPARE_WITH_TIMEOUT(journal(QStringLiteral("start")).size(), exit + 1, patienceMs);
        if (exit < 4)
            listener->injectStatus(readyStatus);
    }
    QCOMPARE(log->count(QStringLiteral("Send last action again")), 3);
    QCOMPARE(
        log->count(QStringLiteral("Maximum retry exceeded, will not start the last action again")),
        1);
    QCOMPARE(journal(QStringLiteral("tool m")).size(), 4);
    listener->injectStatus(readyStatus);
    sdk->trigger(3);
    QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("Action:  3  last:  -1 ")), 1, patienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("returned from")), 4, patienceMs * 2);
}

void TestSdkHelper::thirtySeventhExitIsTheLast()
{
    sdk->trigger(SdkHelper::SensorViewer); // the full budget
    QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("Sdk successful")), 1, patienceMs);
    QSignalSpy verdicts(sdk, &SdkHelper::statusChanged);
    QSignalSpy reports(listener, &StatusListener::statusChanged);
    QVERIFY(startEngine("exit 1"));
    QVERIFY(verdicts.wait(patienceMs * 2));
    QCOMPARE(verdicts.first().first().toInt(), -12);
    QCOMPARE(journal(QStringLiteral("start")).size(), 37);
    QCOMPARE(log->count(QStringLiteral("Vireon exited")), 36);
    QCOMPARE(reports.count(), 36);
    QCOMPARE(listener->currentStatus(), int(StatusEngineRestarting));
    QTest::qWait(500);
    QCOMPARE(journal(QStringLiteral("start")).size(), 37);
    QCOMPARE(verdicts.count(), 1);
}

void TestSdkHelper::cleanupTestCase()
{
    // No worker may outlive what it logs to and reads from.
    WorkerThread::stopAll();
    QVERIFY(WorkerThread::waitForAll(patienceMs));
    log.reset();
}

QTEST_GUILESS_MAIN(TestSdkHelper)
#include "tst_sdkhelper.moc"
