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

    void startMakesEverything();
    void rendererIsTheUsersChoice();
    void textsAreTranslated();
    void desktopsNameIsGivenBack();
    void linesOfTheStartComeInTheirOrder_data();
    void linesOfTheStartComeInTheirOrder();
    void directoryIsMadeBeforeTheWindow();
    void loopsStatusIsTheExits();
    void workersAreStoppedAtTheEnd();

private:
    bool run(const QString& locale = "C");
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
    for (const char* name : {"DBUS_SESSION_BUS_ADDRESS", "DISPLAY", "QT_QUICK_BACKEND"})
        variables.remove(name);
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

void TestMain::startMakesEverything()
{
    QVERIFY(run());
    QCOMPARE(
        output.filter(": "),
        QStringList({"domain: com.corvanthel.Vireon", "organisation: Vireon", "version: 1.4.121",
                     "quits with its last window: no", "keeps the session's end up: no",
                     "file names: UTF-8", "widgets without GL: yes", "renderer: software",
                     "icon: yes", "shown: yes", "looks of the view: yes", "fonts unified: yes",
                     "version in the view: 1.4.121", "tray item: Exit"}));
}

void TestMain::rendererIsTheUsersChoice()
{
    variables.insert("QT_QUICK_BACKEND", "rhi");
    QVERIFY(run());
    QVERIFY(output.contains("renderer: ")); // none is asked for
}

void TestMain::textsAreTranslated()
{
    QVERIFY(run("de_DE.UTF-8"));
    QVERIFY2(output.contains("tray item: Beenden"), qPrintable(output.join(' ')));
}

void TestMain::desktopsNameIsGivenBack()
{
    // It is hidden while the application object is made.
    variables.insert("XDG_CURRENT_DESKTOP", "Unity");
    QVERIFY(run());
    QVERIFY2(output.contains("tray item: none"), qPrintable(output.join(' ')));
}

void TestMain::linesOfTheStartComeInTheirOrder_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("translation");
    QTest::newRow("no language") << "C"
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
    const QStringList wanted {"Start vireon-main", translation,
                              "Create MainWindow", "splash image for brand:  \"qor\"",
                              "qml loaded",        "load main.qml",
                              "Run Vireon",        "starting ./vireon-main"};
    QCOMPARE(told(wanted), wanted);
}

void TestMain::directoryIsMadeBeforeTheWindow()
{
    QVERIFY(run());
    const QString directory = home->filePath("Documents/Vireon");
    // The window saves there that the program starts with the session.
    QVERIFY(QFile::exists(directory + "/user.ini"));
    QCOMPARE(output.mid(0, 2),
             QStringList({"directory " + directory + ' ', "creating directory "}));
}

void TestMain::loopsStatusIsTheExits()
{
    QVERIFY(run());
    QCOMPARE(program->exitCode(), 3);
}

void TestMain::workersAreStoppedAtTheEnd()
{
    QVERIFY(run());
    QVERIFY(log.contains("workers stopped: yes"));
}

QTEST_GUILESS_MAIN(TestMain)

#include "tst_main.moc"
