#include "sim/scenario.h"
#include "support/files.h"

#include <QtTest>

#include <csignal>

namespace {

EngineLife lifeOf(const QByteArray& text, int start = 1)
{
    ScenarioFault fault;
    const std::optional<Scenario> scenario = Scenario::parse(text, &fault);
    if (!scenario)
        qWarning() << "refused:" << fault.line << fault.reason;
    return scenario ? scenario->lifeOf(start) : EngineLife();
}

/// The only action of a scenario's timeline without the healthy engine's reports.
Action actionOf(const QByteArray& action)
{
    const EngineLife life = lifeOf("unwritten\nat 7 " + action);
    return life.timeline.size() == 1 && life.timeline.first().atMs == 7
        ? life.timeline.first().action
        : Action();
}

QVector<int> timesOf(const QVector<Step>& steps)
{
    QVector<int> result;
    for (const Step& step : steps)
        result.append(step.atMs);
    return result;
}

} // namespace

class TestScenario : public QObject
{
    Q_OBJECT

private slots:
    void emptyTextIsTheHealthyEngine();
    void commentsBlanksAndLineEndsDoNotCount();
    void statusTakesFirmwareStyleAndDeath();
    void writeStyles_data();
    void writeStyles();
    void firmwareAloneKeepsTheStart();
    void rawTextHasEscapes();
    void printsHaveLineEndsAndRepeats();
    void removeAndIgnore();
    void deathsByCodeAndSignal();
    void signalNames_data();
    void signalNames();
    void answers_data();
    void answers();
    void lettersMayBeListedOrQuoted();
    void statusInTheTimelineReplacesTheHealthyStart();
    void deathInTheTimelineKeepsTheHealthyStart();
    void reactionReplacesThatLetterOnly();
    void printOnLetterComesOnTop();
    void sigtermHasItsReaction();
    void unwrittenLeavesNoReport();
    void sectionsLimitTheStarts_data();
    void sectionsLimitTheStarts();
    void refusals_data();
    void refusals();
    void demoIsInOrder();
};

void TestScenario::emptyTextIsTheHealthyEngine()
{
    const EngineLife life = lifeOf("");
    QCOMPARE(timesOf(life.timeline), (QVector<int> {0, 1000}));
    QCOMPARE(life.timeline.at(0).action.result, -1);
    QCOMPARE(life.timeline.at(1).action.result, 0);
    for (const char* letter : {"a", "m", "t"}) {
        const QVector<Step> steps = life.reactions.value(letter);
        QCOMPARE(timesOf(steps), (QVector<int> {0, 2000}));
        QCOMPARE(steps.at(0).action.result, 2);
        QCOMPARE(steps.at(1).action.result, 0);
    }
    QCOMPARE(life.reactions.value("0").first().action.result, -6);
    QCOMPARE(life.reactions.value("Q").first().action.death->value, 0);
    QCOMPARE(life.reactions.value(Scenario::sigterm()).first().action.death->value, 0);
    QCOMPARE(life.reactions.size(), 6);
    QVERIFY(life.answers.isEmpty());
}

void TestScenario::commentsBlanksAndLineEndsDoNotCount()
{
    const EngineLife life =
        lifeOf("# a comment\r\n\r\n \t \n  at\t5   status 3 # ready\r\nat 6 print \"#\"");
    QCOMPARE(timesOf(life.timeline), (QVector<int> {5, 6}));
    QCOMPARE(life.timeline.at(1).action.text, QByteArray("#\n"));
}

void TestScenario::statusTakesFirmwareStyleAndDeath()
{
    const Action plain = actionOf("status -14");
    QCOMPARE(plain.kind, Action::Status);
    QCOMPARE(plain.result, -14);
    QVERIFY(!plain.firmware);
    QVERIFY(!plain.death);
    QCOMPARE(plain.style, WriteStyle::Whole);

    const Action full = actionOf("status 5 firmware 1 halves 300 then signal KILL");
    QCOMPARE(full.result, 5);
    QCOMPARE(*full.firmware, 1);
    QCOMPARE(full.style, WriteStyle::Halves);
    QCOMPARE(full.styleMs, 300);
    QCOMPARE(full.death->how, Death::BySignal);
    QCOMPARE(full.death->value, SIGKILL);

    const Action otherOrder = actionOf("status 5 then exit 4 slowly 300 firmware 0");
    QCOMPARE(*otherOrder.firmware, 0);
    QCOMPARE(otherOrder.style, WriteStyle::Slowly);
    QCOMPARE(otherOrder.death->how, Death::ByExit);
    QCOMPARE(otherOrder.death->value, 4);
}

void TestScenario::writeStyles_data()
{
    QTest::addColumn<QByteArray>("words");
    QTest::addColumn<int>("style");
    QTest::addColumn<int>("ms");
    QTest::newRow("whole") << QByteArray() << int(WriteStyle::Whole) << 0;
    QTest::newRow("slowly") << QByteArray(" slowly 900") << int(WriteStyle::Slowly) << 900;
    QTest::newRow("halves") << QByteArray(" halves 400") << int(WriteStyle::Halves) << 400;
}

void TestScenario::writeStyles()
{
    QFETCH(QByteArray, words);
    QFETCH(int, style);
    QFETCH(int, ms);
    for (const QByteArray action : {"status 1", "firmware 1", "raw \"x\""}) {
        QCOMPARE(int(actionOf(action + words).style), style);
        QCOMPARE(actionOf(action + words).styleMs, ms);
    }
}

void TestScenario::firmwareAloneKeepsTheStart()
{
    const EngineLife life = lifeOf("at 0 firmware 1");
    QCOMPARE(timesOf(life.timeline), (QVector<int> {0, 1000, 0}));
    QCOMPARE(life.timeline.at(2).action.kind, Action::Firmware);
    QCOMPARE(*life.timeline.at(2).action.firmware, 1);
}

void TestScenario::rawTextHasEscapes()
{
    const Action action = actionOf(R"(raw "a b\n\r\t\"\\|日本")");
    QCOMPARE(action.kind, Action::Raw);
    QCOMPARE(action.text, QByteArray("a b\n\r\t\"\\|日本"));
    QCOMPARE(actionOf("raw \"\"").kind, Action::Raw);
    QCOMPARE(actionOf("raw \"\"").text, QByteArray());
}

void TestScenario::printsHaveLineEndsAndRepeats()
{
    const Action line = actionOf("print \"tracking\"");
    QCOMPARE(line.kind, Action::Print);
    QCOMPARE(line.text, QByteArray("tracking\n"));
    QCOMPARE(line.repeat, 1);
    const Action partial = actionOf("print \"half\" partial");
    QCOMPARE(partial.text, QByteArray("half"));
    const Action many = actionOf("print-error \"x\" repeat 1000 partial");
    QCOMPARE(many.kind, Action::PrintError);
    QCOMPARE(many.text, QByteArray("x"));
    QCOMPARE(many.repeat, 1000);
}

void TestScenario::removeAndIgnore()
{
    QCOMPARE(actionOf("remove").kind, Action::Remove);
    QCOMPARE(lifeOf("unwritten\nat 1 ignore").timeline.first().action.kind, Action::Ignore);
}

void TestScenario::deathsByCodeAndSignal()
{
    const Action exit = actionOf("exit 255");
    QCOMPARE(exit.kind, Action::Die);
    QCOMPARE(exit.death->how, Death::ByExit);
    QCOMPARE(exit.death->value, 255);
    const Action signal = actionOf("signal SIGSEGV");
    QCOMPARE(signal.kind, Action::Die);
    QCOMPARE(signal.death->how, Death::BySignal);
    QCOMPARE(signal.death->value, SIGSEGV);
}

void TestScenario::signalNames_data()
{
    QTest::addColumn<int>("number");
    const QVector<QPair<const char*, int>> rows {
        {"HUP", SIGHUP},   {"INT", SIGINT},   {"QUIT", SIGQUIT}, {"ILL", SIGILL},
        {"TRAP", SIGTRAP}, {"ABRT", SIGABRT}, {"BUS", SIGBUS},   {"FPE", SIGFPE},
        {"KILL", SIGKILL}, {"USR1", SIGUSR1}, {"SEGV", SIGSEGV}, {"USR2", SIGUSR2},
        {"PIPE", SIGPIPE}, {"ALRM", SIGALRM}, {"TERM", SIGTERM}, {"STOP", SIGSTOP}};
    for (const auto& row : rows)
        QTest::newRow(row.first) << row.second;
}

void TestScenario::signalNames()
{
    QFETCH(int, number);
    const QByteArray name = QTest::currentDataTag();
    QCOMPARE(actionOf("signal " + name).death->value, number);
    QCOMPARE(actionOf("signal SIG" + name).death->value, number);
}

void TestScenario::answers_data()
{
    QTest::addColumn<QByteArray>("words");
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("delayMs");
    QTest::addColumn<int>("code");
    QTest::newRow("never") << QByteArray("never") << int(Answer::Never) << 0 << 0;
    QTest::newRow("hang") << QByteArray("hang") << int(Answer::Hang) << 0 << 0;
    QTest::newRow("exit") << QByteArray("exit 7") << int(Answer::Taken) << 0 << 7;
    QTest::newRow("late") << QByteArray("after 300") << int(Answer::Taken) << 300 << 0;
}

void TestScenario::answers()
{
    QFETCH(QByteArray, words);
    const EngineLife life = lifeOf("answer m exit 99\nanswer m|v " + words);
    QTEST(int(life.answers.value("m").kind), "kind");
    QTEST(life.answers.value("m").delayMs, "delayMs");
    QTEST(life.answers.value("v").exitCode, "code");
    QCOMPARE(life.answers.size(), 2);
    QCOMPARE(life.reactions.value("m").size(), 2); // still the healthy reaction
}

void TestScenario::lettersMayBeListedOrQuoted()
{
    const EngineLife life = lifeOf("on 8|s|ä status 1\non \"|\" status 2\non \"#\" status 3");
    QCOMPARE(life.reactions.value("8").first().action.result, 1);
    QCOMPARE(life.reactions.value("s").first().action.result, 1);
    QCOMPARE(life.reactions.value("ä").first().action.result, 1);
    QCOMPARE(life.reactions.value("|").first().action.result, 2);
    QCOMPARE(life.reactions.value("#").first().action.result, 3);
}

void TestScenario::statusInTheTimelineReplacesTheHealthyStart()
{
    for (const QByteArray action : {"status 5", "raw \"x\"", "remove"}) {
        const EngineLife life = lifeOf("at 9 " + action);
        QCOMPARE(timesOf(life.timeline), QVector<int> {9});
        QCOMPARE(life.reactions.size(), 6);
    }
}

void TestScenario::deathInTheTimelineKeepsTheHealthyStart()
{
    for (const QByteArray action : {"exit 0", "signal KILL", "print \"x\"", "ignore"})
        QCOMPARE(timesOf(lifeOf("at 9 " + action).timeline), (QVector<int> {0, 1000, 9}));
}

void TestScenario::reactionReplacesThatLetterOnly()
{
    const EngineLife life = lifeOf("on m status 2\non m after 500 status 5\non Q ignore");
    QCOMPARE(timesOf(life.reactions.value("m")), (QVector<int> {0, 500}));
    QCOMPARE(life.reactions.value("m").at(1).action.result, 5);
    QCOMPARE(timesOf(life.reactions.value("a")), (QVector<int> {0, 2000}));
    QCOMPARE(life.reactions.value("Q").size(), 1);
    QCOMPARE(life.reactions.value("Q").first().action.kind, Action::Ignore);
    QCOMPARE(lifeOf("on m exit 1").reactions.value("m").size(), 1);
}

void TestScenario::printOnLetterComesOnTop()
{
    const EngineLife life = lifeOf("on m after 10 print \"x\"\non t firmware 1");
    QCOMPARE(timesOf(life.reactions.value("m")), (QVector<int> {0, 2000, 10}));
    QCOMPARE(timesOf(life.reactions.value("t")), (QVector<int> {0, 2000, 0}));
}

void TestScenario::sigtermHasItsReaction()
{
    const EngineLife life = lifeOf("on sigterm ignore\non m|sigterm after 5 print \"x\"");
    const QVector<Step> steps = life.reactions.value(Scenario::sigterm());
    QCOMPARE(timesOf(steps), (QVector<int> {0, 5}));
    QCOMPARE(steps.first().action.kind, Action::Ignore);
}

void TestScenario::unwrittenLeavesNoReport()
{
    const EngineLife life = lifeOf("unwritten\non t status 4");
    QVERIFY(life.timeline.isEmpty());
    QVERIFY(life.reactions.value("m").isEmpty());
    QVERIFY(life.reactions.value("0").isEmpty());
    QCOMPARE(life.reactions.value("t").first().action.result, 4);
    QVERIFY(life.reactions.value("Q").first().action.death);
    QVERIFY(life.reactions.value(Scenario::sigterm()).first().action.death);
}

void TestScenario::sectionsLimitTheStarts_data()
{
    QTest::addColumn<int>("start");
    QTest::addColumn<QVector<int>>("times");
    QTest::newRow("1") << 1 << QVector<int> {1, 10, 90};
    QTest::newRow("2") << 2 << QVector<int> {1, 20, 90};
    QTest::newRow("3") << 3 << QVector<int> {1, 20, 90};
    QTest::newRow("4") << 4 << QVector<int> {1, 40, 90};
    QTest::newRow("1000") << 1000 << QVector<int> {1, 40, 90};
}

void TestScenario::sectionsLimitTheStarts()
{
    QFETCH(int, start);
    QFETCH(QVector<int>, times);
    const QByteArray text = "at 1 status 1\nstart 1\nat 10 status 1\nstart 2-3\nat 20 status 1\n"
                            "start 4-\nat 40 status 1\nstart 1-\nat 90 status 1\n";
    QCOMPARE(timesOf(lifeOf(text, start).timeline), times);
}

void TestScenario::refusals_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("reason");
    const QVector<QPair<const char*, const char*>> rows {
        {"when 0 status 1", "unknown statement \"when\""},
        {"\"\"", "unknown statement \"\""},
        {"start", "\"\" names no starts: N, N-M or N- expected"},
        {"start 0", "\"0\" names no starts: N, N-M or N- expected"},
        {"start 3-2", "\"3-2\" names no starts: N, N-M or N- expected"},
        {"start -2", "\"-2\" names no starts: N, N-M or N- expected"},
        {"start 2-x", "\"2-x\" names no starts: N, N-M or N- expected"},
        {"start any", "\"any\" names no starts: N, N-M or N- expected"},
        {"start 1 at 0 status 1", "unexpected \"at\""},
        {"unwritten 1", "unexpected \"1\""},
        {"at", "a number is missing after \"at\""},
        {"at soon status 1", "\"soon\" is not a number"},
        {"at -1 status 1", "-1 is not in the range 0 to 86400000"},
        {"at 86400001 status 1", "86400001 is not in the range 0 to 86400000"},
        {"at 0", "an action is missing"},
        {"at 0 dance", "unknown action \"dance\""},
        {"at 0 status", "a number is missing after \"status\""},
        {"at 0 status ready", "\"ready\" is not a number"},
        {"at 0 status 1.5", "\"1.5\" is not a number"},
        {"at 0 status 2147483648", "2147483648 is not in the range -2147483648 to 2147483647"},
        {"at 0 status 1 2", "unexpected \"2\""},
        {"at 0 status 1 in-place", "unexpected \"in-place\""},
        {"at 0 status 1 repeat 2", "unexpected \"repeat\""},
        {"at 0 status 1 firmware", "a number is missing after \"firmware\""},
        {"at 0 status 1 firmware 1 firmware 2", "unexpected \"firmware\""},
        {"at 0 status 1 slowly", "a number is missing after \"slowly\""},
        {"at 0 status 1 halves -5", "-5 is not in the range 0 to 86400000"},
        {"at 0 status 1 halves 5 slowly 5", "unexpected \"slowly\""},
        {"at 0 status 1 then", "exit or signal expected after \"then\""},
        {"at 0 status 1 then print \"x\"", "exit or signal expected after \"then\""},
        {"at 0 status 1 then exit", "a number is missing after \"exit\""},
        {"at 0 firmware", "a number is missing after \"firmware\""},
        {"at 0 firmware 1 firmware 2", "unexpected \"firmware\""},
        {"at 0 raw", "a quoted text is missing after \"raw\""},
        {"at 0 raw Result=1", "a quoted text is missing after \"raw\""},
        {"at 0 raw \"x\" firmware 1", "unexpected \"firmware\""},
        {"at 0 raw \"x\" repeat 2", "unexpected \"repeat\""},
        {"at 0 print \"x\" repeat 0", "0 is not in the range 1 to 10000000"},
        {"at 0 remove then exit 1", "unexpected \"then\""},
        {"at 0 ignore 1", "unexpected \"1\""},
        {"at 0 print", "a quoted text is missing after \"print\""},
        {"at 0 print-error x", "a quoted text is missing after \"print-error\""},
        {"at 0 print \"x", "the quoted text has no end"},
        {"at 0 print \"x\\\"", "the quoted text has no end"},
        {"at 0 print \"x\"partial", "a blank is missing after the quoted text"},
        {"at 0 print \"\\q\"", "\"\\q\" is no escape"},
        {"at 0 print \"\\x41\"", "\"\\x\" is no escape"},
        {"at 0 print \"x\\", "\"\\\" is no escape"},
        {"at 0 print \"x\" partial partial", "unexpected \"partial\""},
        {"at 0 print \"x\" \"partial\"", "unexpected \"partial\""},
        {"at 0 exit", "a number is missing after \"exit\""},
        {"at 0 exit 256", "256 is not in the range 0 to 255"},
        {"at 0 exit -1", "-1 is not in the range 0 to 255"},
        {"at 0 exit 1 now", "unexpected \"now\""},
        {"at 0 signal", "a signal is missing after \"signal\""},
        {"at 0 signal 9", "unknown signal \"9\""},
        {"at 0 signal \"\"", "unknown signal \"\""},
        {"at 0 signal kill", "unknown signal \"kill\""},
        {"on", "a letter is missing after \"on\""},
        {"on mm status 1", "\"mm\" is not one letter"},
        {"on m| status 1", "\"\" is not one letter"},
        {"on \"sigterm\" ignore", "\"sigterm\" is not one letter"},
        {"on m", "an action is missing"},
        {"on m after", "a number is missing after \"after\""},
        {"on m after 5", "an action is missing"},
        {"answer", "a letter is missing after \"answer\""},
        {"answer sigterm never", "\"sigterm\" is not one letter"},
        {"answer m", "never, hang, exit or after expected"},
        {"answer m slowly", "never, hang, exit or after expected"},
        {"answer m after", "a number is missing after \"after\""},
        {"answer m after 5 exit 1", "unexpected \"exit\""},
        {"answer m exit", "a number is missing after \"exit\""},
        {"answer m exit 256", "256 is not in the range 0 to 255"},
        {"answer m never ever", "unexpected \"ever\""},
    };
    for (const auto& row : rows)
        QTest::newRow(row.first) << QByteArray(row.first) << QString::fromUtf8(row.second);
}

void TestScenario::refusals()
{
    QFETCH(QByteArray, line);
    ScenarioFault fault;
    // The next bad line shows that the first one is told.
    QVERIFY(!Scenario::parse("# comment\n\nat 5 status 1\n" + line + "\nwrong\n", &fault));
    QTEST(fault.reason, "reason");
    QCOMPARE(fault.line, 4);
}

void TestScenario::demoIsInOrder()
{
    const QByteArray text =
        contentOf(QStringLiteral(VIREON_SOURCE_DIR "/sim/scenarios/demo.scenario"));
    const EngineLife first = lifeOf(text, 1);
    QCOMPARE(first.timeline.first().action.result, -1);
    QCOMPARE(first.timeline.last().action.death->value, SIGSEGV);
    for (const Step& step : lifeOf(text, 2).timeline)
        QVERIFY(!step.action.death);
    QVERIFY(!lifeOf(text, 2).timeline.isEmpty());
}

QTEST_GUILESS_MAIN(TestScenario)
#include "tst_scenario.moc"
