#include "settings/globalsettings.h"
#include "support/files.h"
#include "support/permissionchecks.h"
#include "support/settingsfields.h"

#include <QtTest>

#include <cmath>
#include <dlfcn.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

using Changes = QMap<QByteArray, QByteArray>;

namespace {

/// What this program wrote to the file that is watched, one entry for each call.
struct WriteLog
{
    dev_t device = 0;
    ino_t inode = 0;
    QByteArrayList calls;
    QList<qint64> sizesBefore; ///< of the file
};

WriteLog writeLog;

} // namespace

/// Stands before the C library's: the program's own writes pass through here.
extern "C" ssize_t write(int descriptor, const void* data, size_t size)
{
    using Function = ssize_t (*)(int, const void*, size_t);
    static const auto real = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "write"));
    struct stat status
    {
    };
    if (writeLog.inode && fstat(descriptor, &status) == 0 && status.st_ino == writeLog.inode
        && status.st_dev == writeLog.device) {
        writeLog.calls << QByteArray(static_cast<const char*>(data), int(size));
        writeLog.sizesBefore << status.st_size;
    }
    return real(descriptor, data, size);
}

class TestUserSettings : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void lineSetsItsFieldAlone_data();
    void lineSetsItsFieldAlone();
    void integersAreRead_data();
    void integersAreRead();
    void realsAreRead_data();
    void realsAreRead();
    void flagsAreTrueIfNotZero_data();
    void flagsAreTrueIfNotZero();
    void threeLinesSetThreeFields();
    void emptyFileSetsNothing();
    void emptyLineIsZero();
    void finalBreakMakesNoLine();
    void carriageReturnsAreDropped();
    void linesBeyondAreIgnored();

    void stylusOnlyForcesTouch_data();
    void stylusOnlyForcesTouch();
    void overrideNeedsFileValueAndPermission_data();
    void overrideNeedsFileValueAndPermission();
    void noOverrideWithoutFile();

    void firstStartOfBrandSwitchesCpuOff_data();
    void firstStartOfBrandSwitchesCpuOff();
    void whatIsNoFileIsAFirstStart_data();
    void whatIsNoFileIsAFirstStart();
    void unreadableFileIsAFirstStart();
    void fileThatEndsBeforeItsSizeIsRead();

    void savedTextIsExact();
    void savedNumbersHaveSixDigits_data();
    void savedNumbersHaveSixDigits();
    void savedValuesAreReadBack();
    void saveReplacesALongerFile();
    void saveIsOneWriteOverTheOldText();
    void tailOfAnOlderTextIsIgnored();
    void saveCreatesTheFileButNoDirectory();
    void saveToWhatIsNoFileDoesNothing_data();
    void saveToWhatIsNoFileDoesNothing();
    void saveToReadOnlyFileDoesNothing();
    void saveFollowsALink();

    void fuzzerSeedsSurviveASave_data();
    void fuzzerSeedsSurviveASave();
    void logTellsWhatWasLoaded();

private:
    QString path(const QString& name) const { return QDir(directory.path()).filePath(name); }
    QByteArray saved() const { return contentOf(file); }
    void load(GS& settings, const QByteArray& text) const;
    std::unique_ptr<GS> freshSettings() const;

    QTemporaryDir directory;
    QString file;
};

namespace {

/// A file that sets nothing new.
QByteArrayList defaultLines()
{
    return {"1", "0", "1", "0", "2", "1", "1", "0", "0", "1", "1", "0", "0", "0", "1"};
}

} // namespace

void TestUserSettings::initTestCase()
{
    QVERIFY(directory.isValid());
}

void TestUserSettings::init()
{
    file = path("user.ini");
    QFile::remove(file);
}

std::unique_ptr<GS> TestUserSettings::freshSettings() const
{
    auto settings = std::make_unique<GS>();
    settings->userIniPath = file.toStdString();
    return settings;
}

void TestUserSettings::load(GS& settings, const QByteArray& text) const
{
    if (!writeFile(file, text))
        qFatal("cannot write the settings");
    settings.loadUserSettings();
}

void TestUserSettings::lineSetsItsFieldAlone_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<Changes>("expected");
    const auto addRow = [](int number, const QByteArray& line, const Changes& expected) {
        QTest::addRow("%d", number) << number << line << expected;
    };
    addRow(0, "0", {{"isTouch", "0"}});
    addRow(1, "-7", {{"profile", "-7"}});
    addRow(2, "0", {{"autostart", "0"}});
    addRow(3, "9", {{"singlePointerMode", "9"}});
    addRow(4, "5", {{"cpuState", "5"}});
    addRow(5, "0.5", {{"userTransform", "0.5 1 0 0 1 1"}});
    addRow(6, "0.5", {{"userTransform", "1 0.5 0 0 1 1"}});
    addRow(7, "0.5", {{"userTransform", "1 1 0.5 0 1 1"}});
    addRow(8, "0.5", {{"userTransform", "1 1 0 0.5 1 1"}});
    addRow(9, "0.5", {{"userTransform", "1 1 0 0 0.5 1"}});
    addRow(10, "0.5", {{"userTransform", "1 1 0 0 1 0.5"}});
    addRow(11, "61", {{"userParam60", "61"}});
    addRow(12, "62", {{"userParam61", "62"}});
    addRow(13, "1", {{"aspectRatioWarningShown", "1"}});
    addRow(14, "0", {{"acPopUpEnabled", "0"}});
}

void TestUserSettings::lineSetsItsFieldAlone()
{
    QFETCH(int, number);
    QFETCH(QByteArray, line);
    QFETCH(Changes, expected);
    const auto before = freshSettings();
    load(*before, defaultLines().join('\n'));
    QCOMPARE(settingsChanges(*freshSettings(), *before), Changes());

    QByteArrayList lines = defaultLines();
    lines[number] = line;
    const auto after = freshSettings();
    load(*after, lines.join('\n'));
    QCOMPARE(settingsChanges(*before, *after), expected);
}

void TestUserSettings::integersAreRead_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<int>("stored");
    QTest::newRow("plain") << QByteArray("12") << 12;
    QTest::newRow("negative") << QByteArray("-12") << -12;
    QTest::newRow("plus") << QByteArray("+12") << 12;
    QTest::newRow("blanks around") << QByteArray("  12\t ") << 12;
    QTest::newRow("highest") << QByteArray("2147483647") << 2147483647;
    QTest::newRow("too high") << QByteArray("2147483648") << 0;
    QTest::newRow("real") << QByteArray("5.0") << 0;
    QTest::newRow("exponent") << QByteArray("1e3") << 0;
    QTest::newRow("hexadecimal") << QByteArray("0x5") << 0;
    QTest::newRow("leading zero is decimal") << QByteArray("010") << 10;
    QTest::newRow("trailing text") << QByteArray("12a") << 0;
    QTest::newRow("text") << QByteArray("many") << 0;
    QTest::newRow("empty") << QByteArray("") << 0;
    QTest::newRow("a name") << QByteArray("profile=3") << 0;
}

void TestUserSettings::integersAreRead()
{
    QFETCH(QByteArray, line);
    QFETCH(int, stored);
    const auto settings = freshSettings();
    settings->profile = 99;
    load(*settings, "1\n" + line + "\n1\n");
    QCOMPARE(settings->profile, stored);
}

void TestUserSettings::realsAreRead_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<double>("stored");
    QTest::newRow("fraction") << QByteArray("-0.25") << -0.25;
    QTest::newRow("exponent") << QByteArray("1.5e-3") << 0.0015;
    QTest::newRow("blanks around") << QByteArray(" 0.5 ") << 0.5;
    QTest::newRow("comma") << QByteArray("0,5") << 0.0;
    QTest::newRow("trailing text") << QByteArray("0.5x") << 0.0;
    QTest::newRow("infinity") << QByteArray("inf") << HUGE_VAL;
    QTest::newRow("not a number") << QByteArray("nan") << std::nan("");
    QTest::newRow("text") << QByteArray("wide") << 0.0;
    QTest::newRow("empty") << QByteArray("") << 0.0;
}

void TestUserSettings::realsAreRead()
{
    QFETCH(QByteArray, line);
    QFETCH(double, stored);
    QByteArrayList lines = defaultLines();
    lines[6] = line;
    const auto settings = freshSettings();
    load(*settings, lines.join('\n'));
    QCOMPARE(settingsNumber(settings->userTransform[1]), settingsNumber(stored));
}

void TestUserSettings::flagsAreTrueIfNotZero_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<bool>("set");
    QTest::newRow("1") << QByteArray("1") << true;
    QTest::newRow("2") << QByteArray("2") << true;
    QTest::newRow("-1") << QByteArray("-1") << true;
    QTest::newRow("0") << QByteArray("0") << false;
    QTest::newRow("true") << QByteArray("true") << false;
    QTest::newRow("0.5") << QByteArray("0.5") << false;
    QTest::newRow("empty") << QByteArray("") << false;
}

void TestUserSettings::flagsAreTrueIfNotZero()
{
    QFETCH(QByteArray, line);
    QFETCH(bool, set);
    QByteArrayList lines = defaultLines();
    for (const int number : {2, 13, 14})
        lines[number] = line;
    const auto settings = freshSettings();
    load(*settings, lines.join('\n') + '\n');
    QCOMPARE(settings->autostart, set);
    QCOMPARE(settings->aspectRatioWarningShown, set);
    QCOMPARE(settings->acPopUpEnabled, set);
}

void TestUserSettings::threeLinesSetThreeFields()
{
    const auto settings = freshSettings();
    load(*settings, "0\n4\n0\n");
    const Changes expected {{"isTouch", "0"}, {"profile", "4"}, {"autostart", "0"}};
    QCOMPARE(settingsChanges(*freshSettings(), *settings), expected);
}

void TestUserSettings::emptyFileSetsNothing()
{
    const auto settings = freshSettings();
    settings->stylusOnly = true;
    settings->isTouch = 0;
    load(*settings, "");
    QCOMPARE(settings->isTouch, 0); // no line was read, so nothing is forced
    QCOMPARE(settings->cpuState.load(), 2); // and the file was there
}

void TestUserSettings::emptyLineIsZero()
{
    const auto settings = freshSettings();
    load(*settings, "\n\n");
    const Changes expected {{"isTouch", "0"}};
    QCOMPARE(settingsChanges(*freshSettings(), *settings), expected);
}

void TestUserSettings::finalBreakMakesNoLine()
{
    for (const char* text : {"1\n3", "1\n3\n"}) {
        const auto settings = freshSettings();
        load(*settings, text);
        const Changes expected {{"profile", "3"}};
        QCOMPARE(settingsChanges(*freshSettings(), *settings), expected);
    }
}

void TestUserSettings::carriageReturnsAreDropped()
{
    const auto settings = freshSettings();
    load(*settings, "0\r\n4\r\n0\r\n");
    const Changes expected {{"isTouch", "0"}, {"profile", "4"}, {"autostart", "0"}};
    QCOMPARE(settingsChanges(*freshSettings(), *settings), expected);
}

void TestUserSettings::linesBeyondAreIgnored()
{
    QByteArrayList lines = defaultLines();
    while (lines.size() < 10000)
        lines << "77";
    const auto settings = freshSettings();
    load(*settings, lines.join('\n'));
    QCOMPARE(settingsChanges(*freshSettings(), *settings), Changes());
}

void TestUserSettings::stylusOnlyForcesTouch_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("one line") << QByteArray("0\n");
    QTest::newRow("all lines") << QByteArray("0\n") + defaultLines().mid(1).join('\n');
    QTest::newRow("lines beyond") << QByteArray("0") + QByteArray(40, '\n');
}

void TestUserSettings::stylusOnlyForcesTouch()
{
    QFETCH(QByteArray, text);
    const auto stylus = freshSettings();
    stylus->stylusOnly = true;
    load(*stylus, text);
    QCOMPARE(stylus->isTouch, 1);
    const auto finger = freshSettings();
    load(*finger, text);
    QCOMPARE(finger->isTouch, 0);
}

void TestUserSettings::overrideNeedsFileValueAndPermission_data()
{
    QTest::addColumn<QByteArray>("user60");
    QTest::addColumn<QByteArray>("user61");
    QTest::addColumn<bool>("permitted");
    QTest::addColumn<int>("param60");
    QTest::addColumn<int>("param61");
    QTest::newRow("both") << QByteArray("6") << QByteArray("7") << true << 6 << 7;
    QTest::newRow("negative") << QByteArray("-6") << QByteArray("-7") << true << -6 << -7;
    QTest::newRow("second is 0") << QByteArray("6") << QByteArray("0") << true << 6 << 0;
    QTest::newRow("first is 0") << QByteArray("0") << QByteArray("7") << true << 60 << 61;
    QTest::newRow("not permitted") << QByteArray("6") << QByteArray("7") << false << 60 << 61;
}

void TestUserSettings::overrideNeedsFileValueAndPermission()
{
    QFETCH(QByteArray, user60);
    QFETCH(QByteArray, user61);
    QFETCH(bool, permitted);
    QByteArrayList lines = defaultLines();
    lines[11] = user60;
    lines[12] = user61;
    const auto settings = freshSettings();
    settings->param60 = settings->param60Default = 60;
    settings->param61 = settings->param61Default = 61;
    settings->param60Override = permitted;
    load(*settings, lines.join('\n'));
    QTEST(settings->param60, "param60");
    QTEST(settings->param61, "param61");
    QCOMPARE(settings->param60Default, 60);
    QCOMPARE(settings->param61Default, 61);
}

void TestUserSettings::noOverrideWithoutFile()
{
    const auto settings = freshSettings();
    settings->userParam60 = 6;
    settings->param60Override = true;
    settings->loadUserSettings();
    QCOMPARE(settings->param60, 0);
}

void TestUserSettings::firstStartOfBrandSwitchesCpuOff_data()
{
    QTest::addColumn<int>("brand");
    QTest::addColumn<bool>("off");
    const bool small = QThread::idealThreadCount() <= 3;
    for (const int brand : {0, 2, 3, 4})
        QTest::addRow("brand %d", brand) << brand << small;
    QTest::newRow("brand 1") << 1 << true;
}

void TestUserSettings::firstStartOfBrandSwitchesCpuOff()
{
    QFETCH(int, brand);
    QFETCH(bool, off);
    const auto settings = freshSettings();
    settings->brand = brand;
    settings->loadUserSettings();
    QCOMPARE(settings->cpuState.load(), off ? 0 : 2);
    QVERIFY(!QFileInfo::exists(file)); // nothing is written before the first save

    const auto later = freshSettings();
    later->brand = brand;
    load(*later, "1\n");
    QCOMPARE(later->cpuState.load(), 2); // with a file, however short, the rule is over
}

void TestUserSettings::whatIsNoFileIsAFirstStart_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("directory") << "dir";
    QTest::newRow("pipe") << "pipe";
    QTest::newRow("device") << "/dev/zero";
    QTest::newRow("dangling link") << "dangling";
    QTest::newRow("missing directory") << "missing/user.ini";
}

void TestUserSettings::whatIsNoFileIsAFirstStart()
{
    QFETCH(QString, name);
    QDir().mkdir(path("dir"));
    mkfifo(QFile::encodeName(path("pipe")).constData(), 0600);
    QFile::link(path("nowhere"), path("dangling"));
    const auto settings = freshSettings();
    settings->brand = 1;
    settings->userIniPath = path(name).toStdString();
    settings->loadUserSettings();
    QCOMPARE(settings->cpuState.load(), 0);
}

void TestUserSettings::unreadableFileIsAFirstStart()
{
    QVERIFY(writeFile(file, "0\n"));
    QVERIFY(QFile::setPermissions(file, {}));
    const auto settings = freshSettings();
    settings->brand = 1;
    {
        const PermissionChecks checks;
        settings->loadUserSettings();
    }
    QCOMPARE(settings->cpuState.load(), 0);
    QCOMPARE(settings->isTouch, 1);
}

void TestUserSettings::fileThatEndsBeforeItsSizeIsRead()
{
    // The kernel's files claim a page and hold less.
    const QString kernelFile = "/sys/kernel/mm/transparent_hugepage/enabled";
    if (!QFileInfo(kernelFile).isReadable())
        QSKIP("this kernel has no such file");
    QVERIFY(QFileInfo(kernelFile).size() > 100);
    QVERIFY(QFile::link(kernelFile, file));
    const auto settings = freshSettings();
    settings->loadUserSettings();
    const Changes expected {{"isTouch", "0"}};
    QCOMPARE(settingsChanges(*freshSettings(), *settings), expected);
}

void TestUserSettings::savedTextIsExact()
{
    const auto settings = freshSettings();
    settings->saveUserSettings();
    QCOMPARE(saved(), defaultLines().join('\n') + '\n');

    settings->isTouch = 3;
    settings->profile = -4;
    settings->autostart = false;
    settings->singlePointerMode = 5;
    settings->cpuState = 6;
    settings->userTransform = {0.5, -1.25, 1e10, 1e-5, 123456.7, 0.1};
    settings->userParam60 = 2147483647;
    settings->userParam61 = -2147483647 - 1;
    settings->aspectRatioWarningShown = true;
    settings->acPopUpEnabled = false;
    settings->saveUserSettings();
    QCOMPARE(saved(),
             QByteArray("3\n-4\n0\n5\n6\n0.5\n-1.25\n1e+10\n1e-05\n123457\n0.1\n2147483647\n"
                        "-2147483648\n1\n0\n"));
}

void TestUserSettings::savedNumbersHaveSixDigits_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("1") << 1.0 << QByteArray("1");
    QTest::newRow("0.5") << 0.5 << QByteArray("0.5");
    QTest::newRow("third") << 1.0 / 3.0 << QByteArray("0.333333");
    QTest::newRow("large") << 1234567.0 << QByteArray("1.23457e+06");
    QTest::newRow("small") << 0.00001 << QByteArray("1e-05");
    QTest::newRow("inf") << HUGE_VAL << QByteArray("inf");
    QTest::newRow("nan") << std::nan("") << QByteArray("nan");
}

void TestUserSettings::savedNumbersHaveSixDigits()
{
    QFETCH(double, number);
    QFETCH(QByteArray, text);
    const auto settings = freshSettings();
    settings->userTransform[2] = number;
    settings->saveUserSettings();
    QCOMPARE(saved().split('\n').at(7), text);
}

void TestUserSettings::savedValuesAreReadBack()
{
    const auto settings = freshSettings();
    settings->isTouch = 0;
    settings->profile = 11;
    settings->autostart = false;
    settings->singlePointerMode = 1;
    settings->cpuState = 0;
    settings->userTransform = {0.123456, -1.5, 2e-7, 3e20, 99.5, 0.0};
    settings->userParam60 = 70;
    settings->userParam61 = 80;
    settings->aspectRatioWarningShown = true;
    settings->acPopUpEnabled = false;
    settings->saveUserSettings();
    const auto again = freshSettings();
    again->loadUserSettings();
    QCOMPARE(settingsChanges(*settings, *again), Changes());

    settings->userTransform[0] = 0.12345678;
    settings->saveUserSettings();
    again->loadUserSettings();
    QCOMPARE(again->userTransform[0], 0.123457);
}

void TestUserSettings::saveReplacesALongerFile()
{
    QVERIFY(writeFile(file, QByteArray(1000, 'x')));
    freshSettings()->saveUserSettings();
    QCOMPARE(saved(), defaultLines().join('\n') + '\n');
}

void TestUserSettings::saveIsOneWriteOverTheOldText()
{
    QVERIFY(writeFile(file, QByteArray(1000, 'x')));
    struct stat status
    {
    };
    QCOMPARE(stat(QFile::encodeName(file).constData(), &status), 0);
    writeLog = {status.st_dev, status.st_ino, {}, {}};
    freshSettings()->saveUserSettings();
    const WriteLog seen = writeLog;
    writeLog = {};
    QCOMPARE(seen.calls, QByteArrayList {defaultLines().join('\n') + '\n'});
    QCOMPARE(seen.sizesBefore, QList<qint64> {1000}); // never empty in between
}

void TestUserSettings::tailOfAnOlderTextIsIgnored()
{
    // What a process leaves that ends between the write and the cut.
    const auto settings = freshSettings();
    load(*settings, defaultLines().join('\n') + "\n9\n1\n");
    QCOMPARE(settingsChanges(*freshSettings(), *settings), Changes());
}

void TestUserSettings::saveCreatesTheFileButNoDirectory()
{
    const auto settings = freshSettings();
    settings->saveUserSettings();
    QVERIFY(QFileInfo::exists(file));
    settings->userIniPath = path("missing/user.ini").toStdString();
    settings->saveUserSettings();
    QVERIFY(!QFileInfo::exists(path("missing")));
}

void TestUserSettings::saveToWhatIsNoFileDoesNothing_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("directory") << "dir";
    QTest::newRow("pipe") << "pipe";
    QTest::newRow("device") << "/dev/null";
}

void TestUserSettings::saveToWhatIsNoFileDoesNothing()
{
    QFETCH(QString, name);
    QDir().mkdir(path("dir"));
    mkfifo(QFile::encodeName(path("pipe")).constData(), 0600);
    const auto settings = freshSettings();
    settings->profile = 8;
    settings->userIniPath = path(name).toStdString();
    settings->saveUserSettings();
    QCOMPARE(settings->profile, 8);
    QVERIFY(!QFileInfo(path(name)).isFile());
}

void TestUserSettings::saveToReadOnlyFileDoesNothing()
{
    QVERIFY(writeFile(file, "old"));
    QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::ReadOther));
    const auto settings = freshSettings();
    settings->profile = 8;
    {
        const PermissionChecks checks;
        settings->saveUserSettings();
    }
    QCOMPARE(saved(), QByteArray("old"));
    QCOMPARE(settings->profile, 8);
}

void TestUserSettings::saveFollowsALink()
{
    QVERIFY(writeFile(path("elsewhere"), "old"));
    QVERIFY(QFile::link(path("elsewhere"), file));
    freshSettings()->saveUserSettings();
    QVERIFY(QFileInfo(file).isSymLink());
    QCOMPARE(saved(), defaultLines().join('\n') + '\n');
}

void TestUserSettings::fuzzerSeedsSurviveASave_data()
{
    QTest::addColumn<QString>("seed");
    const QDir seeds(VIREON_SOURCE_DIR "/tests/fuzz/seeds/usersettings");
    const QFileInfoList files = seeds.entryInfoList(QDir::Files);
    QVERIFY(!files.isEmpty());
    for (const QFileInfo& seed : files)
        QTest::newRow(qPrintable(seed.fileName())) << seed.filePath();
}

void TestUserSettings::fuzzerSeedsSurviveASave()
{
    QFETCH(QString, seed);
    QVERIFY(QFile::copy(seed, file));
    const auto settings = freshSettings();
    settings->loadUserSettings();
    settings->saveUserSettings();
    const QByteArray text = saved();
    QCOMPARE(text.count('\n'), 15);
    settings->loadUserSettings();
    settings->saveUserSettings();
    QCOMPARE(saved(), text);
}

void TestUserSettings::logTellsWhatWasLoaded()
{
    QTest::ignoreMessage(QtDebugMsg, "load user settings");
    QTest::ignoreMessage(QtDebugMsg, "loaded user settings, profile is 4 autostart is false");
    load(*freshSettings(), "0\n4\n0\n");
    QTest::ignoreMessage(QtDebugMsg, "load user settings");
    QTest::ignoreMessage(QtDebugMsg, "loaded user settings, profile is 0 autostart is true");
    QFile::remove(file);
    freshSettings()->loadUserSettings();
}

QTEST_GUILESS_MAIN(TestUserSettings)
#include "tst_usersettings.moc"
