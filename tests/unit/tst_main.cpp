#include "support/patience.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

/// The start of the program: what it has made when its event loop begins, and what it says on the
/// way. Each run has a home of its own.
class TestMain : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void startMakesEverything_data();
    void startMakesEverything();
    void rendererIsTheUsersChoice();
    void linesOfTheStartComeInTheirOrder_data();
    void linesOfTheStartComeInTheirOrder();
    void directoryIsMadeBeforeTheWindow();
    void loopsStatusIsTheExits();

private:
    bool run(const QString& locale = "C.UTF-8");
    QString fact(const QString& name) const;
    QStringList told(const QStringList& wanted) const;

    std::unique_ptr<QTemporaryDir> home;
    std::unique_ptr<QProcess> program;
    QProcessEnvironment variables;
    QStringList output;
    QStringList log;
};

void TestMain::init()
{
    home = std::make_unique<QTemporaryDir>();
    QDir(home->path()).mkdir("Documents");
    variables = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "TMPDIR"})
        variables.insert(name, home->path());
    variables.remove("DBUS_SESSION_BUS_ADDRESS");
    variables.remove("QT_QUICK_BACKEND");
}

/// Whether it came to its end by itself.
bool TestMain::run(const QString& locale)
{
    variables.insert("LANG", locale);
    program = std::make_unique<QProcess>();
    program->setProcessEnvironment(variables);
    program->start(START_SUBJECT, QStringList());
    if (!program->waitForFinished(patienceMs) || program->exitStatus() != QProcess::NormalExit)
        return false;
    output = QString::fromUtf8(program->readAllStandardOutput()).split('\n');
    log = QString::fromUtf8(program->readAllStandardError()).split('\n');
    return true;
}

QString TestMain::fact(const QString& name) const
{
    const QString start = name + ": ";
    for (const QString& line : output) {
        if (line.startsWith(start))
            return line.mid(start.size());
    }
    return {};
}

/// The lines of the log that are in @p wanted.
QStringList TestMain::told(const QStringList& wanted) const
{
    QStringList found;
    for (const QString& line : log) {
        if (wanted.contains(line))
            found.append(line);
    }
    return found;
}

void TestMain::startMakesEverything_data()
{
    QTest::addColumn<QString>("value");
    QTest::newRow("domain") << "com.corvanthel.Vireon";
    QTest::newRow("organisation") << "Vireon";
    QTest::newRow("version") << "1.4.121";
    QTest::newRow("quits with its last window") << "no";
    QTest::newRow("keeps the session's end up") << "no";
    QTest::newRow("file names") << "UTF-8";
    QTest::newRow("widgets without GL") << "yes";
    QTest::newRow("renderer") << "software";
    QTest::newRow("icon") << "yes";
    QTest::newRow("shown") << "yes";
    QTest::newRow("version in the view") << "1.4.121";
    QTest::newRow("tray item") << "Exit";
}

void TestMain::startMakesEverything()
{
    QFETCH(QString, value);
    QVERIFY(run());
    QCOMPARE(fact(QTest::currentDataTag()), value);
}

void TestMain::rendererIsTheUsersChoice()
{
    variables.insert("QT_QUICK_BACKEND", "rhi");
    QVERIFY(run());
    QVERIFY(!fact("renderer").isEmpty() || !fact("version").isEmpty());
    QVERIFY(fact("renderer") != "software");
}

void TestMain::linesOfTheStartComeInTheirOrder_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("translation");
    QTest::newRow("no language") << "C.UTF-8"
                                 << "\"C\"  translation loading:  false";
    QTest::newRow("German") << "de_DE.UTF-8"
                            << "\"de\"  translation loading:  true";
    QTest::newRow("Japanese") << "ja_JP.UTF-8"
                              << "\"ja\"  translation loading:  true";
    QTest::newRow("no country") << "en"
                                << "\"en\"  translation loading:  true";
}

void TestMain::linesOfTheStartComeInTheirOrder()
{
    QFETCH(QString, locale);
    QFETCH(QString, translation);
    QVERIFY(run(locale));
    const QStringList wanted {"Start vireon-main",
                              translation,
                              "Create MainWindow",
                              "splash image for brand:  \"qor\"",
                              "qml loaded",
                              "load main.qml",
                              "Run Vireon",
                              "starting ./vireon-main"};
    QCOMPARE(told(wanted), wanted);
}

void TestMain::directoryIsMadeBeforeTheWindow()
{
    QVERIFY(run());
    const QString directory = home->filePath("Documents/Vireon");
    QVERIFY(QDir(directory).exists());
    QCOMPARE(output.mid(0, 2), QStringList({"directory " + directory + ' ', "creating directory "}));
}

void TestMain::loopsStatusIsTheExits()
{
    QVERIFY(run());
    QCOMPARE(program->exitCode(), 3);
}

QTEST_GUILESS_MAIN(TestMain)

#include "tst_main.moc"
