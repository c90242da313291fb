#include "sim/tests/enginerig.h"
#include "support/files.h"
#include "support/patience.h"

#include <QtTest>

#include <csignal>

namespace {

bool hasEnded(QProcess& process)
{
    return process.state() == QProcess::NotRunning || process.waitForFinished(patienceMs);
}

void send(const QProcess& process, int number)
{
    ::kill(static_cast<pid_t>(process.processId()), number);
}

} // namespace

#define TRY_RESULTS(rig, expected)                                                                 \
    QTRY_COMPARE_WITH_TIMEOUT((rig).results(), QByteArray(expected), patienceMs)

/// The two programs of the simulated engine, run as the controller runs them.
class TestSimEngine : public QObject
{
    Q_OBJECT

private slots:
    void healthyEngineLivesAndQuits();
    void everyCalibrationLetterCalibrates_data();
    void everyCalibrationLetterCalibrates();
    void resetAbortsACalibration();
    void otherLettersAreTakenAndPrinted();
    void askedToEndItEndsInOrder_data();
    void askedToEndItEndsInOrder();
    void toolNeedsAnEngine();
    void toolNeedsOneLetter_data();
    void toolNeedsOneLetter();
    void killedEngineIsFollowedAtOnce();
    void newerEngineKeepsItsSocket();
    void lettersWorkBeforeTheFirstStatus();
    void statusFileIsAlwaysWhole();
    void halvesShowAHalf();
    void slowFileGrows();
    void laterWriteCutsASlowOneShort();
    void writingInPiecesKeepsTheFile();
    void rawTextAndRemoval();
    void firmwareAlone();
    void unwrittenLeavesNoFile();
    void writesAndDiesInOneAct_data();
    void writesAndDiesInOneAct();
    void diesAtATimeOrOnALetter_data();
    void diesAtATimeOrOnALetter();
    void ignoresSigterm();
    void neverAnsweringHoldsTheToolWhileTheEngineLives();
    void hangingToolOutlivesTheEngine();
    void answersLate();
    void toolReturnsTheCodeOfTheAnswer();
    void stoppedEngineHoldsTheTool();
    void sectionsFollowTheStarts();
    void countBelongsToTheParent();
    void countWithoutJournalIsInTheDataDirectory();
    void longAndPartialLines();
    void muchOnStandardError();
    void closedOutputDoesNotEndIt();
    void malformedScenarioStartsNothing();
    void missingScenarioIsRefused();
    void startLineTellsWhatWasThere();
    void journalEncodesOddBytes();
    void journalLinesNeverMix();
    void createsItsDataDirectory();
    void withoutDocumentsTheDirectoryIsRelative();
    void followsTheUsersDocumentsDirectory();
    void longAndJapanesePathsWorkInTheCLocale();
    void unfitDataDirectoryIsTold();
    void directoryInPlaceOfTheStatusFileIsTold();
};

void TestSimEngine::healthyEngineLivesAndQuits()
{
    EngineRig rig;
    RigProcess engine;
    QVERIFY(rig.startEngine(engine));
    TRY_RESULTS(rig, "-1");
    QCOMPARE(rig.statusText(), QByteArray("Result=-1\nFirmware=2\n"));
    TRY_RESULTS(rig, "-1 0");
    QCOMPARE(rig.runTool({"m"}), 0);
    TRY_RESULTS(rig, "-1 0 2");
    TRY_RESULTS(rig, "-1 0 2 0");
    QCOMPARE(rig.statusText(), QByteArray("Result=0\nFirmware=2\n"));
    const auto status = rig.entries("engine", "status");
    // A loaded machine may write the first of each pair late.
    QVERIFY(status.at(1).ms - status.at(0).ms >= 500);
    QVERIFY(status.at(3).ms - status.at(2).ms >= 1500);
    QCOMPARE(rig.runTool({"0"}), 0);
    TRY_RESULTS(rig, "-1 0 2 0 -6");
    QCOMPARE(rig.runTool({"Q"}), 0);
    QVERIFY(hasEnded(engine));
    QCOMPARE(engine.exitStatus(), QProcess::NormalExit);
    QCOMPARE(engine.exitCode(), 0);
    QCOMPARE(rig.entries("engine", "exit").first().fields.value("code"), QByteArray("0"));
    QVERIFY(!QFile::exists(rig.dataPath("engine.sock")));
}

void TestSimEngine::everyCalibrationLetterCalibrates_data()
{
    QTest::addColumn<QString>("letter");
    for (const char* letter : {"a", "m", "t"})
        QTest::newRow(letter) << QString::fromLatin1(letter);
}

void TestSimEngine::everyCalibrationLetterCalibrates()
{
    QFETCH(QString, letter);
    EngineRig rig;
    RigProcess engine;
    QVERIFY(rig.startEngine(engine));
    QCOMPARE(rig.runTool({letter}), 0);
    QTRY_VERIFY_WITH_TIMEOUT(rig.results().contains('2'), patienceMs);
}

void TestSimEngine::resetAbortsACalibration()
{
    EngineRig rig;
    rig.setScenario("at 0 status 0\non m status 2\non m after 1 print \"x\"\n"
                    "on m after 2000 status 5\non 0 status -6\non 0 after 2500 status 7");
    RigProcess engine;
    QVERIFY(rig.startEngine(engine));
    QCOMPARE(rig.runTool({"m"}), 0);
    QCOMPARE(rig.runTool({"0"}), 0);
    QTRY_VERIFY_WITH_TIMEOUT(rig.results().endsWith("7"), patienceMs);
    QCOMPARE(rig.results(), QByteArray("0 2 -6 7"));
}

void TestSimEngine::otherLettersAreTakenAndPrinted()
{
    EngineRig rig;
    rig.setScenario("at 0 status 0");
    RigProcess engine;
    QVERIFY(rig.startEngine(engine));
    QByteArray expected;
    for (const char* letter : {"v", "s", "f", "8", "5", "6", "4", "7", "9", "ä"}) {
        QCOMPARE(rig.runTool({QString::fromUtf8(letter)}), 0);
        expected += QByteArray("letter ") + letter + '\n';
    }
    QCOMPARE(rig.entries("engine", "letter").size(), 10);
    QCOMPARE(rig.entries("engine", "letter").last().fields.value("letter"), QByteArray("%C3%A4"));
    send(engine, SIGTERM);
    QVERIFY(hasEnded(engine));
    QVERIFY(engine.readAllStandardOutput().endsWith(expected));
    QCOMPARE(rig.results(), QByteArray("0"));
}

void TestSimEngine::askedToEndItEndsInOrder_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("TERM") << SIGTERM;
    QTest::newRow("INT") << SIGINT;
    QTest::newRow("HUP") << SIGHUP;
}

void TestSimEngine::askedToEndItEndsInOrder()
{
    QFETCH(int, number);
    EngineRig rig;
    RigProcess engine;
    QVERIFY(rig.startEngine(engine));
    send(engine, number);
    QVERIFY(hasEnded(engine));
    QCOMPARE(engine.exitStatus(), QProcess::NormalExit);
    QCOMPARE(engine.exitCode(), 0);
    QCOMPARE(rig.entries("engine", "asked").first().fields.value("signal"),
             QByteArray(QTest::currentDataTag()));
    QCOMPARE(rig.journal().last().event, QByteArray("exit"));
    QVERIFY(!QFile::exists(rig.dataPath("engine.sock")));
}

void TestSimEngine::toolNeedsAnEngine()
{
    EngineRig rig;
    QByteArray message;
    QCOMPARE(rig.runTool({"m"}, &message), 1);
    QVERIFY(message.contains("no engine listens"));
    RigProcess engine;
    QVERIFY(rig.startEngine(engine));
    engine.kill();
    QVERIFY(hasEnded(engine));
    QVERIFY(!QFileInfo(rig.dataPath("engine.sock")).isFile());
    QCOMPARE(rig.runTool({"m"}), 1); // the socket file alone is no engine
    QCOMPARE(rig.entries("tool", "end").last().fields.value("code"), QByteArray("1"));
}

void TestSimEngine::toolNeedsOneLetter_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("none") << QStringList();
    QTest::newRow("empty") << QStringList {""};
    QTest::newRow("word") << QStringList {"mm"};
    QTest::newRow("two") << QStringList {"m", "a"};
    QTest::newRow("line break") << QStringList {"\n"};
}

void TestSimEngine::toolNeedsOneLetter()
{
    QFETCH(QStringList, arguments);
    EngineRig rig;
    RigProcess engine;
    QVERIFY(rig.startEngine(engine));
    QByteArray message;
    QCOMPARE(rig.runTool(arguments, &message), 64);
    QCOMPARE(message, QByteArray("usage: vireon-sdk LETTER\n"));
    QVERIFY(rig.entries("engine", "letter").isEmpty());
}

void TestSimEngine::killedEngineIsFollowedAtOnce()
{
    EngineRig rig;
    for (int number = 1; number <= 10; ++number) {
        RigProcess engine;
        QVERIFY(rig.startEngine(engine));
        QTRY_COMPARE_WITH_TIMEOUT(rig.entries("engine", "status").size(), number, patienceMs);
        QCOMPARE(rig.runTool({"v"}), 0);
        engine.kill();
        QVERIFY(hasEnded(engine));
    }
    const auto starts = rig.entries("engine", "start");
    QCOMPARE(starts.last().fields.value("number"), QByteArray("10"));
}

void TestSimEngine::newerEngineKeepsItsSocket()
{
    EngineRig rig;
    RigProcess older;
    RigProcess newer;
    QVERIFY(rig.startEngine(older));
    QTRY_COMPARE_WITH_TIMEOUT(rig.entries("engine", "status").size(), 1, patienceMs);
    QVERIFY(rig.startEngine(newer));
    QTRY_VERIFY_WITH_TIMEOUT(rig.entries("engine", "status").size() >= 2, patienceMs);
    send(older, SIGTERM);
    QVERIFY(hasEnded(older));
    QCOMPARE(rig.runTool({"v"}), 0);
    QCOMPARE(rig.entries("engine", "letter").first().pid, newer.processId());
}

void TestSimEngine::lettersWorkBeforeTheFirstStatus()
{
    EngineRig rig;
    rig.setScenario("at 0 status 0\non v exit 5");
    RigProcess engine;
    QVERIFY(rig.start(engine, EngineRig::program("vireon-main")));
    while (rig.statusText().isEmpty())
        QThread::yieldCurrentThread();
    QCOMPARE(rig.runTool({"v"}), 0);
    QVERIFY(hasEnded(engine));
    QCOMPARE(engine.exitCode(), 5);
}

void TestSimEngine::statusFileIsAlwaysWhole()
{
    EngineRig rig;
    QByteArray scenario;
    for (int i = 0; i < 200; ++i)
        scenario += "at " + QByteArray::number(i * 2) + " status " + QByteArray::number(i) + '\n';
    rig.setScenario(scenario + "at 400 exit 0");
    RigProcess engine;
    QVERIFY(rig.startEngine(engine));
    const QRegularExpression whole("^Result=\\d+\nFirmware=2\n$");
    QFile early(rig.statusPath());
    QByteArray earlyText;
    while (engine.state() != QProcess::NotRunning) {
        const QByteArray text = rig.statusText();
        if (earlyText.isEmpty() && early.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
            earlyText = early.readAll();
        if (!text.isEmpty())
            QVERIFY2(whole.match(QString::fromLatin1(text)).hasMatch(), text.constData());
        engine.waitForFinished(0);
    }
    QCOMPARE(rig.entries("engine", "status").size(), 200);
    QCOMPARE(rig.statusText(), QByteArray("Result=199\nFirmware=2\n"));
    QVERIFY(!QFile::exists(rig.statusPath() + ".new"));
    // Each report is a file of its own: whoever reads an old one is not disturbed.
    QVERIFY(!earlyText.isEmpty() && early.seek(0));
    QCOMPARE(early.readAll(), earlyText);
}

void TestSimEngine::halvesShowAHalf()
{
    EngineRig rig;
    rig.setScenario("at 0 status 5 firmware 3 halves 1000");
    RigProcess engine;
    QVERIFY(rig.startEngine(engine));
    QTRY_COMPARE_WITH_TIMEOUT(rig.statusText(), QByteArray("Result=5\nF"), patienceMs);
    QVERIFY(rig.entries("engine", "status").isEmpty());
    QCOMPARE(rig.entries("engine", "writing").first().fields.value("result"), QByteArray("5"));
    TRY_RESULTS(rig, "5");
    QCOMPARE(rig.statusText(), QByteArray("Result=5\nFirmware=3\n"));
    const qint64 pause =
        rig.entries("engine", "status").first().ms - rig.entries("engine", "writing").first().ms;
    QVERIFY(pause >= 500); // the first may be told late
}

void TestSimEngine::slowFileGrows()
{
    EngineRig rig;
    rig.setScenario("at 0 status -14 slowly 1000");
    RigProcess engine;
    QVERIFY(rig.startEngine(engine));
    QSet<int> sizes;
    QElapsedTimer timer;
    timer.start();
    while (rig.results().isEmpty() && timer.elapsed() < patienceMs) {
        const QByteArray text = rig.statusText();
        QVERIFY(QByteArray("Result=-14\nFirmware=2\n").startsWith(text));
        sizes.insert(text.size());
    }
    QVERIFY(sizes.size() > 5);
    QCOMPARE(rig.statusText(), QByteArray("Result=-14\nFirmware=2\n"));
}

void TestSimEngine::laterWriteCutsASlowOneShort()
{
    EngineRig rig;
    rig.setScenario("at 0 status 5 slowly 2000\nat 50 status 6\nat 500 exit 0");
    RigProcess engine;
    QVERIFY(rig.startEngine(engine));
    TRY_RESULTS(rig, "6");
    QVERIFY(hasEnded(engine));
    QCOMPARE(rig.statusText(), QByteArray("Result=6\nFirmware=2\n"));
    QCOMPARE(engine.readAllStandardError(), QByteArray());
}

void TestSimEngine::writingInPiecesKeepsTheFile()
{
    EngineRig rig;
    QDir().mkpath(rig.dataPath());
    QFile kept(rig.statusPath());
    QVERIFY(kept.open(QIODevice::ReadWrite));
    rig.setScenario("at 0 status 5 halves 1");
    RigProcess engine;
    QVERIFY(rig.startEngine(engine));
    TRY_RESULTS(rig, "5");
    QCOMPARE(kept.readAll(), QByteArray("Result=5\nFirmware=2\n"));
}

void TestSimEngine::rawTextAndRemoval()
{
    EngineRig rig;
    rig.setScenario("at 0 raw \"Result=abc\\n\\t\"\non v remove\n"
                    "on s raw \"123456789\\n\" halves 1");
    RigProcess engine;
    QVERIFY(rig.startEngine(engine));
    const QByteArray text = QByteArray("Result=abc\n\t");
    QTRY_COMPARE_WITH_TIMEOUT(rig.statusText(), text, patienceMs);
    QCOMPARE(rig.entries("engine", "status").first().fields.value("raw"),
             QByteArray("Result%3Dabc%0A%09"));
    QCOMPARE(rig.runTool({"v"}), 0);
    QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(rig.statusPath()), patienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(rig.entries("engine", "remove").size(), 1, patienceMs);
    QCOMPARE(rig.runTool({"s"}), 0);
    QTRY_COMPARE_WITH_TIMEOUT(rig.entries("engine", "status").size(), 2, patienceMs);
    QCOMPARE(rig.statusText(), QByteArray("123456789\n"));
}

void TestSimEngine::firmwareAlone()
{
    EngineRig rig;
    rig.setScenario("at 0 status 5\non v firmware 1\non s status 6");
    RigProcess engine;
    QVERIFY(rig.startEngine(engine));
    TRY_RESULTS(rig, "5");
    QCOMPARE(rig.runTool({"v"}), 0);
    QTRY_COMPARE_WITH_TIMEOUT(rig.statusText(), QByteArray("Result=5\nFirmware=1\n"), patienceMs);
    QCOMPARE(rig.runTool({"s"}), 0);
    QTRY_COMPARE_WITH_TIMEOUT(rig.statusText(), QByteArray("Result=6\nFirmware=1\n"), patienceMs);
}

void TestSimEngine::unwrittenLeavesNoFile()
{
    EngineRig rig;
    rig.setScenario("unwritten\non v status 3\nat 1100 print \"later\"");
    RigProcess engine;
    QVERIFY(rig.startEngine(engine));
    QByteArray output;
    QTRY_VERIFY_WITH_TIMEOUT((output += engine.readAllStandardOutput()).contains("later"),
                             patienceMs);
    QCOMPARE(rig.runTool({"m"}), 0);
    QCOMPARE(rig.runTool({"v"}), 0);
    TRY_RESULTS(rig, "3");
}

void TestSimEngine::writesAndDiesInOneAct_data()
{
    QTest::addColumn<QByteArray>("words");
    QTest::addColumn<bool>("isCrash");
    QTest::addColumn<int>("code");
    QTest::newRow("kill") << QByteArray("then signal KILL") << true << SIGKILL;
    QTest::newRow("segv, slowly") << QByteArray("slowly 20 then signal SEGV") << true << SIGSEGV;
    QTest::newRow("exit") << QByteArray("then exit 4") << false << 4;
    QTest::newRow("exit, halves") << QByteArray("halves 20 then exit 4") << false << 4;
}

void TestSimEngine::writesAndDiesInOneAct()
{
    QFETCH(QByteArray, words);
    QFETCH(bool, isCrash);
    EngineRig rig;
    rig.setScenario("at 0 status 0\non m status -1 " + words);
    RigProcess engine;
    QVERIFY(rig.startEngine(engine));
    QCOMPARE(rig.runTool({"m"}), 0);
    QVERIFY(hasEnded(engine));
    QCOMPARE(engine.exitStatus() == QProcess::CrashExit, isCrash);
    QTEST(engine.exitCode(), "code");
    QCOMPARE(rig.statusText(), QByteArray("Result=-1\nFirmware=2\n"));
    QCOMPARE(rig.results(), QByteArray("0 -1"));
    QCOMPARE(rig.entries("engine", "exit").size(), 1);
}

void TestSimEngine::diesAtATimeOrOnALetter_data()
{
    QTest::addColumn<QByteArray>("death");
    QTest::addColumn<QByteArray>("field");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<int>("code");
    QTest::newRow("exit") << QByteArray("exit 3") << QByteArray("code") << QByteArray("3") << 3;
    QTest::newRow("KILL") << QByteArray("signal KILL") << QByteArray("signal") << QByteArray("KILL")
                          << SIGKILL;
    QTest::newRow("SEGV") << QByteArray("signal SIGSEGV") << QByteArray("signal")
                          << QByteArray("SEGV") << SIGSEGV;
    QTest::newRow("TERM") << QByteArray("signal TERM") << QByteArray("signal") << QByteArray("TERM")
                          << SIGTERM;
    QTest::newRow("PIPE") << QByteArray("signal PIPE") << QByteArray("signal") << QByteArray("PIPE")
                          << SIGPIPE;
}

void TestSimEngine::diesAtATimeOrOnALetter()
{
    QFETCH(QByteArray, death);
    QFETCH(QByteArray, field);
    for (const QByteArray when : {"at 100 ", "on m after 100 "}) {
        EngineRig rig;
        rig.setScenario(when + death);
        RigProcess engine;
        QVERIFY(rig.startEngine(engine));
        if (when.startsWith("on"))
            QCOMPARE(rig.runTool({"m"}), 0);
        QVERIFY(hasEnded(engine));
        QCOMPARE(engine.exitStatus() == QProcess::CrashExit, field == "signal");
        QTEST(engine.exitCode(), "code");
        const auto exits = rig.entries("engine", "exit");
        QCOMPARE(exits.size(), 1);
        QTEST(exits.first().fields.value(field), "value");
    }
}

void TestSimEngine::ignoresSigterm()
{
    EngineRig rig;
    rig.setScenario("on sigterm ignore\non sigterm status 9");
    RigProcess engine;
    QVERIFY(rig.startEngine(engine));
    for (int i = 1; i <= 3; ++i) {
        send(engine, SIGTERM);
        QTRY_COMPARE_WITH_TIMEOUT(rig.entries("engine", "asked").size(), i, patienceMs);
    }
    QTRY_VERIFY_WITH_TIMEOUT(rig.results().contains('9'), patienceMs);
    QCOMPARE(rig.runTool({"v"}), 0);
    QVERIFY(rig.entries("engine", "exit").isEmpty());
}

void TestSimEngine::neverAnsweringHoldsTheToolWhileTheEngineLives()
{
    EngineRig rig;
    rig.setScenario("at 0 status 0\nanswer m never\non v signal KILL");
    RigProcess engine;
    RigProcess tool;
    QVERIFY(rig.startEngine(engine));
    QVERIFY(rig.start(tool, EngineRig::program("vireon-sdk"), {"m"}));
    QTRY_COMPARE_WITH_TIMEOUT(rig.entries("engine", "letter").size(), 1, patienceMs);
    QCOMPARE(rig.runTool({"s"}), 0); // others are still served
    QCOMPARE(tool.state(), QProcess::Running);
    QCOMPARE(rig.runTool({"v"}), 0);
    QVERIFY(hasEnded(tool));
    QCOMPARE(tool.exitCode(), 3);
    QVERIFY(tool.readAllStandardError().contains("gone"));
}

void TestSimEngine::hangingToolOutlivesTheEngine()
{
    EngineRig rig;
    rig.setScenario("at 0 status 0\nanswer m hang\non m after 50 status -1 then signal KILL");
    RigProcess engine;
    RigProcess tool;
    QVERIFY(rig.startEngine(engine));
    QVERIFY(rig.start(tool, EngineRig::program("vireon-sdk"), {"m"}));
    QVERIFY(hasEnded(engine));
    QCOMPARE(rig.runTool({"v"}), 1);
    QCOMPARE(tool.state(), QProcess::Running);
    QCOMPARE(rig.entries("tool", "end").size(), 1);
    tool.kill();
    QVERIFY(hasEnded(tool));
    QCOMPARE(rig.entries("tool", "end").size(), 1); // a killed tool leaves no such line
}

void TestSimEngine::answersLate()
{
    EngineRig rig;
    rig.setScenario("at 0 status 0\nanswer m after 700");
    RigProcess engine;
    QVERIFY(rig.startEngine(engine));
    QCOMPARE(rig.runTool({"m"}), 0);
    const qint64 taken = rig.entries("engine", "letter").first().ms;
    QVERIFY(rig.entries("tool", "end").first().ms - taken >= 650);
}

void TestSimEngine::toolReturnsTheCodeOfTheAnswer()
{
    EngineRig rig;
    rig.setScenario("at 0 status 0\nanswer m exit 7");
    RigProcess engine;
    QVERIFY(rig.startEngine(engine));
    QCOMPARE(rig.runTool({"m"}), 7);
    TRY_RESULTS(rig, "0 2"); // the letter counts all the same
    QCOMPARE(rig.entries("tool", "end").first().fields.value("code"), QByteArray("7"));
}

void TestSimEngine::stoppedEngineHoldsTheTool()
{
    EngineRig rig;
    rig.setScenario("at 0 status 0\nat 1 signal STOP");
    RigProcess engine;
    RigProcess tool;
    QVERIFY(rig.startEngine(engine));
    QTRY_COMPARE_WITH_TIMEOUT(rig.entries("engine", "stop").size(), 1, patienceMs);
    QVERIFY(rig.start(tool, EngineRig::program("vireon-sdk"), {"v"}));
    QTRY_COMPARE_WITH_TIMEOUT(rig.entries("tool", "start").size(), 1, patienceMs);
    QVERIFY(rig.entries("engine", "letter").isEmpty());
    send(engine, SIGCONT);
    QVERIFY(hasEnded(tool));
    QCOMPARE(tool.exitCode(), 0);
}

void TestSimEngine::sectionsFollowTheStarts()
{
    EngineRig rig;
    rig.setScenario("start 1\nat 0 exit 11\nstart 2-3\nat 0 exit 12\nstart 4-\nat 0 exit 13");
    QVector<int> codes;
    for (int i = 0; i < 5; ++i) {
        RigProcess engine;
        QVERIFY(rig.start(engine, EngineRig::program("vireon-main")));
        QVERIFY(hasEnded(engine));
        codes.append(engine.exitCode());
    }
    QCOMPARE(codes, (QVector<int> {11, 12, 12, 13, 13}));
}

void TestSimEngine::countBelongsToTheParent()
{
    EngineRig rig;
    rig.setScenario("at 0 exit 0");
    const QString twice =
        EngineRig::program("vireon-main") + "; " + EngineRig::program("vireon-main") + "; true";
    for (int i = 0; i < 2; ++i) {
        RigProcess shell;
        QVERIFY(rig.start(shell, "/bin/sh", {"-c", twice}));
        QVERIFY(hasEnded(shell));
    }
    QByteArray numbers;
    for (const JournalEntry& start : rig.entries("engine", "start"))
        numbers += start.fields.value("number");
    QCOMPARE(numbers, QByteArray("1212"));
}

void TestSimEngine::countWithoutJournalIsInTheDataDirectory()
{
    EngineRig rig;
    rig.environment.remove("VIREON_SIM_JOURNAL");
    rig.setScenario("start 1\nat 0 exit 11\nstart 2\nat 0 exit 12");
    for (const int code : {11, 12}) {
        RigProcess engine;
        QVERIFY(rig.start(engine, EngineRig::program("vireon-main")));
        QVERIFY(hasEnded(engine));
        QCOMPARE(engine.exitCode(), code);
    }
    QVERIFY(QFile::exists(rig.dataPath("engine.starts")));
    QVERIFY(!QFile::exists(rig.journalPath()));
}

void TestSimEngine::longAndPartialLines()
{
    EngineRig rig;
    rig.setScenario("unwritten\nat 0 print \"abcdefgh\" partial repeat 1000000\n"
                    "at 0 print \"\\n\" partial\nat 0 print \"line\" repeat 100000\n"
                    "at 0 print \"end\" partial\nat 0 exit 0");
    RigProcess engine;
    QVERIFY(rig.start(engine, EngineRig::program("vireon-main")));
    QVERIFY(hasEnded(engine));
    QCOMPARE(engine.readLine(), QByteArray("simulated engine, start 1\n"));
    QCOMPARE(engine.readLine().size(), 8000001);
    QByteArray rest = engine.readAllStandardOutput();
    QVERIFY(rest == QByteArray("line\n").repeated(100000) + "end");
}

void TestSimEngine::muchOnStandardError()
{
    EngineRig rig;
    rig.setScenario("unwritten\nat 0 print-error \"0123456789\" repeat 1000000\nat 0 exit 0");
    RigProcess engine;
    QVERIFY(rig.start(engine, EngineRig::program("vireon-main")));
    QVERIFY(hasEnded(engine));
    QVERIFY(engine.readAllStandardError() == QByteArray("0123456789\n").repeated(1000000));
}

void TestSimEngine::closedOutputDoesNotEndIt()
{
    EngineRig rig;
    rig.setScenario("at 0 status 0\non v print \"x\" repeat 1000000");
    RigProcess shell;
    QVERIFY(
        rig.start(shell, "/bin/sh", {"-c", EngineRig::program("vireon-main") + " | head -n 1"}));
    TRY_RESULTS(rig, "0");
    QCOMPARE(rig.runTool({"v"}), 0);
    QCOMPARE(rig.runTool({"m"}), 0);
    TRY_RESULTS(rig, "0 2");
    QCOMPARE(rig.runTool({"Q"}), 0);
    QVERIFY(hasEnded(shell));
    QCOMPARE(rig.entries("engine", "exit").first().fields.value("code"), QByteArray("0"));
}

void TestSimEngine::malformedScenarioStartsNothing()
{
    EngineRig rig;
    rig.setScenario("at 0 status 1\n\nat 5 dance\n");
    RigProcess engine;
    QVERIFY(rig.start(engine, EngineRig::program("vireon-main")));
    QVERIFY(hasEnded(engine));
    QCOMPARE(engine.exitCode(), 2);
    QCOMPARE(engine.readAllStandardError(),
             "vireon-main: " + rig.environment.value("VIREON_SIM_SCENARIO").toUtf8()
                 + ":3: unknown action \"dance\"\n");
    QVERIFY(engine.readAllStandardOutput().isEmpty());
    QVERIFY(!QFile::exists(rig.dataPath()));
    QCOMPARE(rig.journal().size(), 1);
    QCOMPARE(rig.journal().first().event, QByteArray("refused"));
    QCOMPARE(rig.journal().first().fields.value("line"), QByteArray("3"));
    QByteArray message;
    QCOMPARE(rig.runTool({"m"}, &message), 1);
    QVERIFY(message.contains("no engine"));
}

void TestSimEngine::missingScenarioIsRefused()
{
    EngineRig rig;
    for (const QString& path : {rig.home() + "/none.scenario", rig.home()}) {
        rig.environment.insert("VIREON_SIM_SCENARIO", path);
        RigProcess engine;
        QVERIFY(rig.start(engine, EngineRig::program("vireon-main")));
        QVERIFY(hasEnded(engine));
        QCOMPARE(engine.exitCode(), 2);
        QVERIFY(engine.readAllStandardError().contains(path.toUtf8()));
    }
}

void TestSimEngine::startLineTellsWhatWasThere()
{
    EngineRig rig;
    QDir().mkpath(rig.dataPath("debug"));
    for (const char* name : {"user.ini", ".hidden", "a,b", "ユーザ"})
        QVERIFY(QFile(rig.dataPath(QString::fromUtf8(name))).open(QIODevice::WriteOnly));
    rig.setScenario("at 0 exit 0");
    RigProcess engine;
    QVERIFY(rig.start(engine, EngineRig::program("vireon-main"), {"--one", "two words"}));
    QVERIFY(hasEnded(engine));
    const JournalEntry start = rig.journal().first();
    QCOMPARE(start.event, QByteArray("start"));
    QCOMPARE(start.fields.value("number"), QByteArray("1"));
    QCOMPARE(start.fields.value("cwd"), rig.home().toUtf8());
    QCOMPARE(start.fields.value("args"), QByteArray("--one,two%20words"));
    QCOMPARE(start.fields.value("parent").toLongLong(), QCoreApplication::applicationPid());
    QCOMPARE(start.fields.value("data") + '/', rig.dataPath().toUtf8());
    QCOMPARE(start.fields.value("files"),
             QByteArray(".hidden,a%2Cb,debug,user.ini,%E3%83%A6%E3%83%BC%E3%82%B6"));
}

void TestSimEngine::journalEncodesOddBytes()
{
    EngineRig rig;
    QCOMPARE(rig.runTool({"a b=c\n日"}), 64);
    QCOMPARE(rig.entries("tool", "start").first().fields.value("letter"),
             QByteArray("a%20b%3Dc%0A%E6%97%A5"));
}

void TestSimEngine::journalLinesNeverMix()
{
    EngineRig rig;
    rig.setScenario("at 0 status 0");
    RigProcess engine;
    QVERIFY(rig.startEngine(engine));
    RigProcess tools[20];
    for (RigProcess& tool : tools)
        QVERIFY(rig.start(tool, EngineRig::program("vireon-sdk"), {"v"}));
    for (RigProcess& tool : tools) {
        QVERIFY(hasEnded(tool));
        QCOMPARE(tool.exitCode(), 0);
    }
    QCOMPARE(rig.entries("tool", "end").size(), 20);
    QCOMPARE(rig.entries("engine", "letter").size(), 20);
    for (const JournalEntry& entry : rig.journal())
        QVERIFY(!entry.event.isEmpty());
}

void TestSimEngine::createsItsDataDirectory()
{
    EngineRig rig;
    rig.setScenario("at 0 status 4");
    RigProcess engine;
    QVERIFY(rig.startEngine(engine));
    TRY_RESULTS(rig, "4");
    QVERIFY(QFile::exists(rig.statusPath()));
    QVERIFY(!rig.journal().first().fields.contains("files")); // it was not there
}

void TestSimEngine::withoutDocumentsTheDirectoryIsRelative()
{
    EngineRig rig;
    QVERIFY(QDir().rmdir(rig.home() + "/Documents"));
    RigProcess engine;
    QVERIFY(rig.startEngine(engine));
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(rig.home() + "/Vireon/pensettings.ini"), patienceMs);
    QCOMPARE(rig.runTool({"v"}), 0);
}

void TestSimEngine::followsTheUsersDocumentsDirectory()
{
    EngineRig rig;
    QDir().mkpath(rig.home() + "/.config");
    QDir().mkpath(rig.home() + QString::fromUtf8("/文書"));
    QVERIFY(
        writeFile(rig.home() + "/.config/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"$HOME/文書\"\n"));
    rig.environment.insert("LC_ALL", "C");
    RigProcess engine;
    QVERIFY(rig.startEngine(engine));
    const QString status = rig.home() + QString::fromUtf8("/文書/Vireon/pensettings.ini");
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(status), patienceMs);
    QCOMPARE(rig.runTool({"v"}), 0);
}

void TestSimEngine::longAndJapanesePathsWorkInTheCLocale()
{
    EngineRig rig(
        QString::fromUtf8("ユーザのとても長い名前のホームディレクトリ/Größe ist nicht alles"));
    QVERIFY(rig.dataPath("engine.sock").toUtf8().size() > 108);
    rig.environment.insert("LC_ALL", "C");
    for (int i = 0; i < 2; ++i) {
        RigProcess engine;
        QVERIFY(rig.startEngine(engine));
        QTRY_COMPARE_WITH_TIMEOUT(rig.entries("engine", "status").size(), i + 1, patienceMs);
        QCOMPARE(rig.runTool({"ä"}), 0);
        QVERIFY(QFile::exists(rig.dataPath("engine.sock")));
        engine.kill();
        QVERIFY(hasEnded(engine));
    }
    RigProcess engine;
    QVERIFY(rig.startEngine(engine));
    QTRY_COMPARE_WITH_TIMEOUT(rig.entries("engine", "status").size(), 3, patienceMs);
    QCOMPARE(rig.runTool({"Q"}), 0);
    QVERIFY(hasEnded(engine));
    QVERIFY(!QFile::exists(rig.dataPath("engine.sock")));
}

void TestSimEngine::unfitDataDirectoryIsTold()
{
    EngineRig rig;
    QVERIFY(QFile(rig.home() + "/Documents/Vireon").open(QIODevice::WriteOnly));
    RigProcess engine;
    QVERIFY(rig.start(engine, EngineRig::program("vireon-main")));
    QVERIFY(hasEnded(engine));
    QCOMPARE(engine.exitCode(), 3);
    QVERIFY(engine.readAllStandardError().contains("cannot create the data directory"));
}

void TestSimEngine::directoryInPlaceOfTheStatusFileIsTold()
{
    EngineRig rig;
    QDir().mkpath(rig.statusPath());
    rig.setScenario("at 0 status 1\nat 1 status 2 halves 1\nat 2 exit 0");
    RigProcess engine;
    QVERIFY(rig.start(engine, EngineRig::program("vireon-main")));
    QVERIFY(hasEnded(engine));
    QCOMPARE(engine.exitCode(), 0);
    const QByteArray told = engine.readAllStandardError();
    QVERIFY(told.contains("cannot replace the status file"));
    QVERIFY(told.contains("cannot write the status file"));
}

QTEST_GUILESS_MAIN(TestSimEngine)
#include "tst_simengine.moc"
