#include "app/commandline.h"
#include "settings/switches.h"

#include <QtTest>

#include <vector>

namespace {

/// Arguments in the way that main() gets them.
class Arguments
{
public:
    explicit Arguments(const QString& line)
    {
        for (const QString& word : ("vireon " + line).split(' ', Qt::SkipEmptyParts))
            words.push_back(word.toUtf8());
        for (QByteArray& word : words)
            pointers.push_back(word.data());
    }

    CommandLine& parsed()
    {
        result.emplace(static_cast<int>(pointers.size()), pointers.data());
        return *result;
    }

private:
    std::vector<QByteArray> words;
    std::vector<char*> pointers;
    std::optional<CommandLine> result;
};

} // namespace

class TestCommandLine : public QObject
{
    Q_OBJECT

private slots:
    void answers_data();
    void answers();
    void optionWinsOverTheFile_data();
    void optionWinsOverTheFile();
    void unsetOptionsChangeNothing();
};

void TestCommandLine::answers_data()
{
    QTest::addColumn<int>("status"); // -1: the program runs
    for (const char* line : {"--help", "-h", "-help", "--version", "-v"})
        QTest::newRow(line) << 0;
    for (const char* line :
         {"--mailbx", "--mailbox=maybe", "--mailbox", "--logFileKept=10", "--logFileSize 10", "-x",
          "--mailbox=maybe --mailbox=true", "--mailbox=true --mailbox=maybe"})
        QTest::newRow(line) << 2;
    // Of Qt's options, those that take a value without one, and the others with one.
    for (const char* line : {"-platformpluginpath", "-platformtheme", "-plugin",        "-geometry",
                             "-qwindowgeometry",    "-title",         "-qwindowtitle",  "-icon",
                             "-qwindowicon",        "-style",         "-stylesheet",    "-session",
                             "-qmljsdebugger",      "-display",       "-name",          "-visual",
                             "-reverse=1",          "-widgetcount=1", "-testability=1", "-qdebug=1",
                             "-qdevel=1",           "-nograb=1",      "-dograb=1"})
        QTest::newRow(line) << 2;
    for (const char* line :
         {"", "--mailbox=true", "-mailbox false", "--logFile=/x --logFileSize=2048",
          "-platform offscreen", "--platform=offscreen", "-session 12 -reverse", "-style fusion",
          "-geometry 10x10+5+5", "-display :1 -name x", "-qmljsdebugger=port:3768", "word"})
        QTest::newRow(line) << -1;
    // Qt's own, as the last word: one that takes a value lacks it.
    for (const char* line :
         {"-platform", "-platformpluginpath", "-platformtheme", "-plugin", "-geometry",
          "-qwindowgeometry", "-title", "-qwindowtitle", "-icon", "-qwindowicon", "-style",
          "-stylesheet", "-session", "-qmljsdebugger", "-display", "-name", "-visual"})
        QTest::newRow(line) << 2;
    for (const char* line :
         {"-reverse", "-widgetcount", "-testability", "-qdebug", "-qdevel", "-nograb", "-dograb"})
        QTest::newRow(line) << -1;
}

void TestCommandLine::answers()
{
    QFETCH(int, status);
    Arguments arguments(QTest::currentDataTag());
    QCOMPARE(arguments.parsed().answer().value_or(-1), status);
}

void TestCommandLine::optionWinsOverTheFile_data()
{
    QTest::addColumn<bool>("inFile");
    QTest::newRow("on in the file") << true;
    QTest::newRow("off in the file") << false;
}

void TestCommandLine::optionWinsOverTheFile()
{
    Switches switches;
    QFETCH(bool, inFile);
    switches.mailbox = inFile;
    Arguments arguments(inFile ? "--mailbox=false --logFile=b" : "--mailbox=true --logFile=b");
    CommandLine& line = arguments.parsed();
    QVERIFY(!line.answer());
    switches.logFile = "a";
    line.applyTo(switches);
    QCOMPARE(switches.mailbox, !inFile);
    QCOMPARE(switches.logFile, QString("b"));
}

void TestCommandLine::unsetOptionsChangeNothing()
{
    Switches switches;
    switches.mailbox = true;
    switches.logFile = "a";
    switches.logFileKept = 3;
    Arguments arguments("--sleep=true");
    CommandLine& line = arguments.parsed();
    QVERIFY(!line.answer());
    line.applyTo(switches);
    QVERIFY(switches.mailbox);
    QVERIFY(switches.sleep);
    QCOMPARE(switches.logFile, QString("a"));
    QCOMPARE(switches.logFileKept, 3);
}

QTEST_APPLESS_MAIN(TestCommandLine)
#include "tst_commandline.moc"
