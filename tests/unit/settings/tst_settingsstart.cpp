#include "settings/globalsettings.h"
#include "support/files.h"
#include "support/patience.h"
#include "support/settingsfields.h"

#include <QtTest>

#include <memory>
#include <sys/stat.h>

// The settings are made once in a process: each test runs a program that does nothing else, in an
// application directory and a HOME of its own.

class TestSettingsStart : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void withoutConfigurationFileDefaultsStay_data();
    void withoutConfigurationFileDefaultsStay();
    void configurationFileBesideTheProgramIsRead();
    void instanceIsMadeOnce();
    void missingDocumentsDirLeavesBareName();
    void fewProcessorsSwitchCpuOff_data();
    void fewProcessorsSwitchCpuOff();
    void cleaningIsToldOnStandardOutput();
    void leftOverMailboxFilesAreRemoved();
    void namesAndNumbersInEveryLocale_data();
    void namesAndNumbersInEveryLocale();
    void blankValueEndsTheProgram();

private:
    /// What a run left.
    struct Result
    {
        QMap<QByteArray, QByteArray> fields;
        QByteArrayList log; ///< lines on standard error
        QByteArrayList output; ///< lines on standard output that are no fields
        bool crashed = false;
    };

    bool prepare(const QString& root);
    Result run(const QStringList& actions = {});
    bool setConfiguration(const QMap<int, QByteArray>& lines) const;
    QString generateLocale(const QString& name);

    std::unique_ptr<QTemporaryDir> directory;
    QString home;
    QString program;
    QString workingDirectory;
    QProcessEnvironment environment;
};

void TestSettingsStart::init()
{
    directory = std::make_unique<QTemporaryDir>();
    QVERIFY(directory->isValid());
    environment = QProcessEnvironment::systemEnvironment();
    QVERIFY(prepare(directory->path()));
}

void TestSettingsStart::cleanup()
{
    directory.reset();
}

/// Makes a home and an application directory with the program, both below @p root.
bool TestSettingsStart::prepare(const QString& root)
{
    home = root + "/home";
    workingDirectory = root + "/work";
    program = root + "/app/settingssubject";
    environment.insert("HOME", home);
    environment.insert("XDG_CONFIG_HOME", home + "/.config");
    environment.insert("SUBJECT_VAR", root + "/var");
    environment.insert("SUBJECT_PROCESSORS", "8");
    const QDir disk;
    return disk.mkpath(home + "/Documents") && disk.mkpath(workingDirectory)
        && disk.mkpath(root + "/app/config")
        && QFile::copy(QStringLiteral(SUBJECT_DIR "/settingssubject"), program);
}

TestSettingsStart::Result TestSettingsStart::run(const QStringList& actions)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(workingDirectory);
    process.start(program, actions);
    Result result;
    if (!process.waitForFinished(patienceMs)) {
        qWarning() << "did not end:" << process.errorString();
        process.kill();
        process.waitForFinished();
        return result;
    }
    result.crashed = process.exitStatus() == QProcess::CrashExit;
    result.log = process.readAllStandardError().trimmed().split('\n');
    for (const QByteArray& line : process.readAllStandardOutput().split('\n')) {
        const int sign = line.indexOf('=');
        if (sign > 0) {
            result.fields.insert(line.left(sign), line.mid(sign + 1));
        } else {
            result.output << line;
        }
    }
    return result;
}

/// Gives the program the shipped configuration file with other @p lines.
bool TestSettingsStart::setConfiguration(const QMap<int, QByteArray>& lines) const
{
    QByteArrayList all = contentOf(VIREON_SOURCE_DIR "/config/vireon.conf").split('\n');
    for (auto line = lines.begin(); line != lines.end(); ++line)
        all[line.key()] = line.value();
    return writeFile(QFileInfo(program).path() + "/config/vireon.conf", all.join('\n'));
}

void TestSettingsStart::withoutConfigurationFileDefaultsStay_data()
{
    QTest::addColumn<QString>("inItsPlace");
    QTest::newRow("nothing") << "nothing";
    QTest::newRow("a directory") << "directory";
    QTest::newRow("a pipe") << "pipe";
}

void TestSettingsStart::withoutConfigurationFileDefaultsStay()
{
    QFETCH(QString, inItsPlace);
    const QString configuration = QFileInfo(program).path() + "/config/vireon.conf";
    if (inItsPlace == "directory")
        QVERIFY(QDir().mkdir(configuration));
    if (inItsPlace == "pipe")
        QCOMPARE(mkfifo(QFile::encodeName(configuration).constData(), 0600), 0);
    QVERIFY(QDir().mkdir(directory->filePath("var")));
    QVERIFY(writeFile(directory->filePath("var/user.ini"), "0\n5\n"));

    const Result result = run();
    QMap<QByteArray, QByteArray> expected = settingsValues(GS());
    expected["isTouch"] = "0";
    expected["profile"] = "5";
    expected["documentsDir"] = home.toUtf8() + "/Documents/";
    expected["dataDir"] = home.toUtf8() + "/Documents/Vireon";
    for (auto field = expected.begin(); field != expected.end(); ++field)
        QCOMPARE(field.key() + '=' + result.fields[field.key()], field.key() + '=' + field.value());
    QCOMPARE(result.fields["penSettingsPath"], QByteArray("/var/vireon/pensettings.ini"));
    QCOMPARE(result.fields["userIniPath"], QByteArray("/var/vireon/user.ini"));
    QCOMPARE(result.fields["debugDir"], QByteArray("debug/"));
    QCOMPARE(result.fields["fifo1Path"], QByteArray());
    QCOMPARE(result.fields["refifoPath"], QByteArray());
}

void TestSettingsStart::configurationFileBesideTheProgramIsRead()
{
    QVERIFY(setConfiguration({{2, "cameraWidth=1280"}}));
    QVERIFY(QDir().mkdir(home + "/Documents/Vireon"));
    QVERIFY(writeFile(home + "/Documents/Vireon/user.ini", "0\n5\n"));
    const Result result = run();
    QCOMPARE(result.fields["cameraWidth"], QByteArray("1280"));
    QCOMPARE(result.fields["userIniPath"], home.toUtf8() + "/Documents/Vireon/user.ini");
    QCOMPARE(result.fields["profile"], QByteArray("5"));
}

void TestSettingsStart::instanceIsMadeOnce()
{
    QVERIFY(setConfiguration({}));
    const Result result = run();
    QCOMPARE(result.fields["instances"], QByteArray("1"));
    const QByteArray path = QFileInfo(program).path().toUtf8() + "/config/vireon.conf";
    const QByteArrayList expected {
        "Making a new instance of global settings", "Loading global settings from \"" + path + "\"",
        "load user settings", "loaded user settings, profile is 0 autostart is true"};
    QCOMPARE(result.log, expected);
}

void TestSettingsStart::missingDocumentsDirLeavesBareName()
{
    QVERIFY(QDir().rmdir(home + "/Documents"));
    QVERIFY(setConfiguration({}));
    const Result result = run({"clean"});
    QCOMPARE(result.fields["documentsDir"], QByteArray());
    QCOMPARE(result.fields["dataDir"], QByteArray("Vireon"));
    QCOMPARE(result.fields["penSettingsPath"], QByteArray("Vireon/pensettings.ini"));
    QVERIFY(QFileInfo(workingDirectory + "/Vireon").isDir());
}

void TestSettingsStart::fewProcessorsSwitchCpuOff_data()
{
    QTest::addColumn<QString>("processors");
    QTest::addColumn<QByteArray>("brand");
    QTest::addColumn<bool>("userFile");
    QTest::addColumn<QByteArray>("cpuState");
    QTest::newRow("1") << "1" << QByteArray("0") << false << QByteArray("0");
    QTest::newRow("2") << "2" << QByteArray("0") << false << QByteArray("0");
    QTest::newRow("3") << "3" << QByteArray("0") << false << QByteArray("0");
    QTest::newRow("4") << "4" << QByteArray("0") << false << QByteArray("2");
    QTest::newRow("8") << "8" << QByteArray("0") << false << QByteArray("2");
    QTest::newRow("8, brand 1") << "8" << QByteArray("1") << false << QByteArray("0");
    QTest::newRow("8, brand 2") << "8" << QByteArray("2") << false << QByteArray("2");
    QTest::newRow("2, later start") << "2" << QByteArray("0") << true << QByteArray("2");
    QTest::newRow("8, brand 1, later start") << "8" << QByteArray("1") << true << QByteArray("2");
}

void TestSettingsStart::fewProcessorsSwitchCpuOff()
{
    QFETCH(QString, processors);
    QFETCH(QByteArray, brand);
    QFETCH(bool, userFile);
    QFETCH(QByteArray, cpuState);
    QVERIFY(setConfiguration({{121, "brand=" + brand}}));
    if (userFile) {
        QVERIFY(QDir().mkdir(home + "/Documents/Vireon"));
        QVERIFY(writeFile(home + "/Documents/Vireon/user.ini", ""));
    }
    environment.insert("SUBJECT_PROCESSORS", processors);
    QCOMPARE(run().fields["cpuState"], cpuState);
    QCOMPARE(QFileInfo::exists(home + "/Documents/Vireon"), userFile);
}

void TestSettingsStart::cleaningIsToldOnStandardOutput()
{
    QVERIFY(setConfiguration({}));
    const QByteArray directoryLine = "directory " + home.toUtf8() + "/Documents/Vireon ";
    const QByteArrayList first {directoryLine, "creating directory ", ""};
    QCOMPARE(run({"clean"}).output, first);
    QVERIFY(QFileInfo(home + "/Documents/Vireon").isDir());
    const QByteArrayList second {directoryLine, ""};
    QCOMPARE(run({"clean"}).output, second);
}

void TestSettingsStart::leftOverMailboxFilesAreRemoved()
{
    QVERIFY(setConfiguration({}));
    const QDir data(home + "/Documents/Vireon");
    QVERIFY(QDir().mkdir(data.path()));
    for (const char* name : {"fifo1", "fifo2", "refifo", "user.ini", "other"})
        QVERIFY(writeFile(data.filePath(name), "1\n"));
    run({"clean"});
    QCOMPARE(data.entryList(QDir::Files), QStringList({"other", "user.ini"}));
}

void TestSettingsStart::namesAndNumbersInEveryLocale_data()
{
    QTest::addColumn<QString>("locale");
    QTest::newRow("Japanese") << "ja_JP.UTF-8";
    QTest::newRow("German") << "de_DE.UTF-8";
    QTest::newRow("C") << "C";
}

/// The directory in which the C library finds the locale @p name, made for this test.
QString TestSettingsStart::generateLocale(const QString& name)
{
    QString locales = QDir::currentPath() + "/locales";
    QDir().mkpath(locales);
    const QString source = name.section('.', 0, 0);
    const QStringList arguments {"-i", source, "-f", "UTF-8", locales + '/' + name};
    if (name != "C" && !QFileInfo::exists(locales + '/' + name))
        QProcess::execute("localedef", arguments);
    return locales;
}

void TestSettingsStart::namesAndNumbersInEveryLocale()
{
    QFETCH(QString, locale);
    const QString root = directory->filePath(QString::fromUtf8("設定 Müller/ユーザー Größe"));
    QVERIFY(QDir().mkpath(root));
    QVERIFY(prepare(root));
    environment.insert("LOCPATH", generateLocale(locale));
    environment.insert("LC_ALL", locale);
    QVERIFY(
        setConfiguration({{1, "x=カメラ/Höhe"}, {52, "x=日本語ß"}, {71, "x=0.5"}, {120, "x=1"}}));
    const QByteArray data = home.toUtf8() + "/Documents/Vireon";
    QVERIFY(QDir().mkdir(home + "/Documents/Vireon"));
    QVERIFY(writeFile(home + "/Documents/Vireon/fifo1", "m"));

    const Result first = run({"clean", "save"});
    // Without the package "locales" there is nothing to generate the locale from.
    QCOMPARE(first.fields["locale"], locale.toUtf8());
    QCOMPARE(first.fields["sensorConfPath"], QByteArray("カメラ/Höhe"));
    QCOMPARE(first.fields["language"], QByteArray("日本語ß"));
    QCOMPARE(first.fields["param71"], QByteArray("0.5"));
    QCOMPARE(first.fields["dataDir"], data);
    QCOMPARE(first.fields["penSettingsPath"], data + "/pensettings.ini");
    QCOMPARE(first.output.first(), "directory " + data + ' ');
    QCOMPARE(first.fields["profile"], QByteArray("0"));
    QVERIFY(!QFileInfo::exists(home + "/Documents/Vireon/fifo1"));
    QCOMPARE(QDir(home + "/Documents/Vireon").entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList({"user.ini"}));
    QCOMPARE(contentOf(home + "/Documents/Vireon/user.ini").split('\n').at(1), QByteArray("7"));

    QCOMPARE(run().fields["profile"], QByteArray("7"));
    QCOMPARE(QDir(workingDirectory).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList());
}

void TestSettingsStart::blankValueEndsTheProgram()
{
    QVERIFY(setConfiguration({{33, "reserved33=  "}}));
    const Result result = run();
    QVERIFY(result.crashed);
    const QByteArray log = result.log.join('\n');
    QVERIFY(log.contains("std::out_of_range"));
    QVERIFY(log.contains("basic_string::substr"));
    QVERIFY(!log.contains("load user settings"));
}

QTEST_GUILESS_MAIN(TestSettingsStart)
#include "tst_settingsstart.moc"
