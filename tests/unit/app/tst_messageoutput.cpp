#include "support/patience.h"

#include <QtTest>

#include <csignal>

namespace {

const char* const windowMark = "window: ";

/// What one run of the program that logs has printed.
struct Run
{
    QStringList lines; ///< without those of the window
    QStringList windowLines;
    bool crashed = false;
    int code = 0;
    QDateTime begin;
    QDateTime end;

    explicit Run(const QString& mode)
    {
        QProcess subject;
        begin = QDateTime::currentDateTime();
        subject.start(SUBJECT_DIR "/messagesubject", {mode});
        subject.waitForFinished(patienceMs);
        end = QDateTime::currentDateTime();
        crashed = subject.exitStatus() == QProcess::CrashExit;
        code = subject.exitCode();
        const QString output = QString::fromUtf8(subject.readAllStandardOutput());
        for (const QString& line : output.split('\n', Qt::SkipEmptyParts)) {
            if (line.startsWith(windowMark)) {
                windowLines.append(line.mid(static_cast<int>(qstrlen(windowMark))));
            } else {
                lines.append(line);
            }
        }
    }
};

/// A line, split at its fixed parts.
QRegularExpressionMatch parse(const QString& line)
{
    static const QRegularExpression format(
        R"(^(?<stamp>\d\d\.\d\d\.\d{4} \d\d:\d\d:\d\d): (?<level>\w*): (?<text>.*))"
        R"( \((?<file>[^(]*):(?<line>\d+), (?<function>.*)\)$)");
    return format.match(line);
}

} // namespace

class TestMessageOutput : public QObject
{
    Q_OBJECT

private slots:
    void everyLevelHasItsLine_data();
    void everyLevelHasItsLine();
    void stampIsTheTimeOfTheMessage();
    void markersInTheTextStay();
    void contextlessMessageEndsWithEmptyPlaces_data();
    void contextlessMessageEndsWithEmptyPlaces();
    void windowGetsTheSameLines();
    void earlyMessagesReachStandardOutputOnly();
    void threadsLogWholeLines();
    void fatalLineIsPrintedBeforeTheEnd();
};

void TestMessageOutput::everyLevelHasItsLine_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("level");
    QTest::addColumn<QString>("text");
    QTest::newRow("debug") << 0 << "Debug"
                           << "debug at ";
    QTest::newRow("information") << 1 << ""
                                 << "info at ";
    QTest::newRow("warning") << 2 << "Warning"
                             << "warning at ";
    QTest::newRow("critical") << 3 << "Critical"
                              << "critical at ";
}

void TestMessageOutput::everyLevelHasItsLine()
{
    QFETCH(int, index);
    QFETCH(QString, level);
    QFETCH(QString, text);
    const Run run("levels");
    QCOMPARE(run.code, 0);
    QCOMPARE(run.lines.size(), 10);
    const auto parts = parse(run.lines[index]);
    QVERIFY2(parts.hasMatch(), qPrintable(run.lines[index]));
    QCOMPARE(parts.captured("level"), level);
    QCOMPARE(parts.captured("text"), text + parts.captured("line"));
    QVERIFY(parts.captured("file").endsWith("/messagesubject.cpp"));
    QCOMPARE(parts.captured("function"), QString("void logEveryLevel()"));
}

void TestMessageOutput::stampIsTheTimeOfTheMessage()
{
    const Run run("levels");
    for (const QString& line : run.lines) {
        const QDateTime stamp =
            QDateTime::fromString(parse(line).captured("stamp"), "dd.MM.yyyy HH:mm:ss");
        QVERIFY2(stamp.isValid(), qPrintable(line));
        QVERIFY(stamp.addSecs(1) > run.begin && stamp <= run.end);
    }
}

void TestMessageOutput::markersInTheTextStay()
{
    const Run run("levels");
    QCOMPARE(parse(run.lines.value(4)).captured("text"),
             QString::fromUtf8("50%2 of %1, %3 %4 %10 \u00e4\u65e5"));
}

void TestMessageOutput::contextlessMessageEndsWithEmptyPlaces_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("ending");
    QTest::newRow("debug") << 5 << ": Debug: debug without (:0, )";
    QTest::newRow("information") << 6 << ": : info without (:0, )";
    QTest::newRow("warning") << 7 << ": Warning: warning without (:0, )";
    QTest::newRow("critical") << 8 << ": Critical: critical without (:0, )";
    QTest::newRow("fatal, called directly") << 9 << ": Fatal: fatal without (:0, )";
}

void TestMessageOutput::contextlessMessageEndsWithEmptyPlaces()
{
    QFETCH(int, index);
    QFETCH(QString, ending);
    const Run run("levels");
    const QString stampForm = "00.00.0000 00:00:00";
    QCOMPARE(run.lines.value(index).mid(stampForm.size()), ending);
}

void TestMessageOutput::windowGetsTheSameLines()
{
    const Run run("levels");
    QCOMPARE(run.windowLines.size(), 10);
    QCOMPARE(run.windowLines, run.lines);
}

void TestMessageOutput::earlyMessagesReachStandardOutputOnly()
{
    const Run run("early");
    QCOMPARE(run.code, 0);
    QCOMPARE(run.lines.size(), 10);
    QCOMPARE(run.windowLines.size(), 0);
}

void TestMessageOutput::threadsLogWholeLines()
{
    const Run run("threads");
    QCOMPARE(run.code, 0);
    QCOMPARE(run.lines.size(), 8 * 200);
    QMap<QString, int> next; // the next message's number, by thread
    for (const QString& line : run.lines) {
        const QStringList words = parse(line).captured("text").split(' ');
        QVERIFY2(words.size() == 4 && words[0] == "thread", qPrintable(line));
        QCOMPARE(words[3].toInt(), next[words[1]]++);
    }
    QCOMPARE(next.size(), 8);
    QStringList printed = run.lines;
    QStringList shown = run.windowLines;
    printed.sort();
    shown.sort();
    QCOMPARE(shown, printed);
}

void TestMessageOutput::fatalLineIsPrintedBeforeTheEnd()
{
    const Run run("fatal");
    QVERIFY(run.crashed);
    QCOMPARE(run.code, SIGABRT);
    QCOMPARE(run.lines.size(), 1);
    const auto parts = parse(run.lines[0]);
    QCOMPARE(parts.captured("level"), QString("Fatal"));
    QCOMPARE(parts.captured("text"), "fatal at " + parts.captured("line"));
}

QTEST_GUILESS_MAIN(TestMessageOutput)
#include "tst_messageoutput.moc"
