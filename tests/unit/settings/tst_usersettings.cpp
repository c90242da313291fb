#include "settings/globalsettings.h"
#include "support/files.h"
#include "support/nodescriptors.h"
#include "support/peakmemory.h"
#include "support/permissionchecks.h"
#include "support/settingsfields.h"

#include <QtTest>

#include <cmath>
#include <csignal>
#include <dlfcn.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <sys/wait.h>
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

/// What is done at each write of a settings text, before it.
void (*beforeSettingsWrite)() = nullptr;

/// Whether the file of this name was there at a write.
QString watchedName;
bool watchedWasThere = false;

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
    if (beforeSettingsWrite && size >= 30 && static_cast<const char*>(data)[size - 1] == '\n')
        beforeSettingsWrite();
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
    void fileThatCannotBeOpenedIsAFirstStart_data();
    void fileThatCannotBeOpenedIsAFirstStart();
    void fileThatCannotBeReadSetsNothing();
    void fileThatEndsBeforeItsSizeIsRead();
    void longLineIsCutAndOneLine();
    void hugeLineCostsNothing();

    void savedTextIsExact();
    void savedNumbersHaveSixDigits_data();
    void savedNumbersHaveSixDigits();
    void savedValuesAreReadBack();
    void saveReplacesALongerFile();
    void saveIsOneWriteOverTheOldText();
    void tailOfAnOlderTextIsIgnored();
    void saveCreatesTheFileButNoDirectory();
    void firstSaveIsNeverSeenUnfinished();
    void killedFirstSaveLeavesNoFile();
    void firstSaveFollowsADanglingLink();
    void saveToAPipeWritesNothing();
    void saveToWhatCannotBeOpenedDoesNothing_data();
    void saveToWhatCannotBeOpenedDoesNothing();
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
    void makeUnopenable(const QString& reason, GS& settings) const;

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
    QFile::setPermissions(path("closed"), QFile::Permissions(0x7777));
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

void TestUserSettings::fileThatCannotBeOpenedIsAFirstStart_data()
{
    QTest::addColumn<QString>("reason");
    for (const char* reason : {"link to itself", "name too long", "file as directory",
                               "closed directory", "no descriptor", "write-only file"})
        QTest::newRow(reason) << reason;
}

/// Makes the settings file one that cannot be opened; all but the descriptors.
void TestUserSettings::makeUnopenable(const QString& reason, GS& settings) const
{
    QVERIFY(writeFile(file, "0\n7\n"));
    QString name = file;
    if (reason == "link to itself") {
        name = path("loop");
        QFile::link("loop", name);
    } else if (reason == "name too long") {
        name = path(QString(300, 'x'));
    } else if (reason == "file as directory") {
        name += "/user.ini";
    } else if (reason == "closed directory") {
        QDir().mkdir(path("closed"));
        QFile::setPermissions(path("closed"), QFile::Permissions(0x7777));
        name = path("closed/user.ini");
        QVERIFY(writeFile(name, "0\n7\n"));
        QFile::setPermissions(path("closed"), QFile::WriteOwner);
    } else if (reason == "write-only file") {
        QFile::setPermissions(file, QFile::WriteOwner | QFile::WriteOther);
    }
    settings.userIniPath = name.toStdString();
}

void TestUserSettings::fileThatCannotBeOpenedIsAFirstStart()
{
    QFETCH(QString, reason);
    const auto settings = freshSettings();
    settings->brand = 1;
    makeUnopenable(reason, *settings);
    {
        const PermissionChecks checked;
        std::unique_ptr<NoDescriptors> none;
        if (reason == "no descriptor")
            none = std::make_unique<NoDescriptors>();
        settings->loadUserSettings();
    }
    QCOMPARE(settings->cpuState.load(), 0);
    QCOMPARE(settings->isTouch, 1);
    QCOMPARE(settings->profile, 0);
}

void TestUserSettings::fileThatCannotBeReadSetsNothing()
{
    // It opens, and every read of its first page is an error.
    const auto settings = freshSettings();
    settings->brand = 1;
    settings->userIniPath = "/proc/self/mem";
    settings->loadUserSettings();
    QCOMPARE(settings->cpuState.load(), 2);
    QCOMPARE(settings->isTouch, 1);
    QCOMPARE(settings->profile, 0);
}

void TestUserSettings::longLineIsCutAndOneLine()
{
    // Around the limit, and around multiples of it.
    for (const int size : {4094, 4095, 4096, 4097, 8191, 8192, 8193, 100000}) {
        for (const char* lineEnd : {"\n", "\r\n"}) {
            const auto settings = freshSettings();
            load(*settings, "1\n" + QByteArray(size, ' ') + "4" + lineEnd + "0\n5" + lineEnd);
            QCOMPARE(settings->profile, size < 4096 ? 4 : 0);
            QCOMPARE(settings->autostart, false);
            QCOMPARE(settings->singlePointerMode, 5);
        }
        const auto last = freshSettings();
        load(*last, "0\n" + QByteArray(size, ' ') + "4");
        const Changes expected =
            size < 4096 ? Changes {{"isTouch", "0"}, {"profile", "4"}} : Changes {{"isTouch", "0"}};
        QCOMPARE(settingsChanges(*freshSettings(), *last), expected);
    }
}

void TestUserSettings::hugeLineCostsNothing()
{
    QFile huge(file);
    QVERIFY(huge.open(QIODevice::WriteOnly));
    QVERIFY(huge.write("1\n") == 2 && huge.seek(Q_INT64_C(1200) << 20)); // sparse: NUL bytes
    QVERIFY(huge.write("\n0\n5\n") == 5);
    huge.close();
    const PeakMemory memory;
    const auto settings = freshSettings();
    settings->profile = 9;
    settings->loadUserSettings();
    QVERIFY2(memory.grownMb() < 600, "the whole line was read");
    QCOMPARE(settings->profile, 0);
    QCOMPARE(settings->autostart, false);
    QCOMPARE(settings->singlePointerMode, 5);
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

void TestUserSettings::firstSaveIsNeverSeenUnfinished()
{
    watchedName = file;
    watchedWasThere = false;
    static int writes = 0;
    beforeSettingsWrite = [] {
        ++writes;
        watchedWasThere = watchedWasThere || QFileInfo::exists(watchedName);
    };
    freshSettings()->saveUserSettings();
    beforeSettingsWrite = nullptr;
    QCOMPARE(writes, 1);
    QVERIFY2(!watchedWasThere, "an empty file was there");
    QCOMPARE(saved(), defaultLines().join('\n') + '\n');
    QCOMPARE(QFileInfo(file).permissions() & QFile::ReadOther, QFile::ReadOther);
    QVERIFY(!QFileInfo::exists(file + ".new"));
}

void TestUserSettings::killedFirstSaveLeavesNoFile()
{
    const auto settings = freshSettings();
    settings->brand = 1;
    const pid_t child = fork();
    if (child == 0) {
        beforeSettingsWrite = [] { raise(SIGKILL); };
        settings->saveUserSettings();
        _exit(0);
    }
    int status = 0;
    QCOMPARE(waitpid(child, &status, 0), child);
    QVERIFY(WIFSIGNALED(status));
    QVERIFY(!QFileInfo::exists(file));
    settings->loadUserSettings();
    QCOMPARE(settings->cpuState.load(), 0); // still a first start

    settings->saveUserSettings(); // whatever the killed one has left
    QCOMPARE(saved().split('\n').at(4), QByteArray("0"));
    const QStringList files = QDir(directory.path()).entryList({"user.ini*"}, QDir::Files);
    QCOMPARE(files, QStringList("user.ini"));
}

void TestUserSettings::firstSaveFollowsADanglingLink()
{
    QVERIFY(QFile::link(path("linked.ini"), file));
    freshSettings()->saveUserSettings();
    QVERIFY(QFileInfo(file).isSymLink());
    QCOMPARE(saved(), defaultLines().join('\n') + '\n');
    QVERIFY(QFile::remove(path("linked.ini")));
}

void TestUserSettings::saveToAPipeWritesNothing()
{
    // With its other end open it could be written.
    const QByteArray name = QFile::encodeName(file);
    QCOMPARE(mkfifo(name.constData(), 0600), 0);
    const int pipe = open(name.constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    QVERIFY(pipe >= 0);
    freshSettings()->saveUserSettings();
    char byte = 0;
    const ssize_t got = read(pipe, &byte, 1);
    const int reason = errno;
    close(pipe);
    QCOMPARE(got, ssize_t(-1));
    QCOMPARE(reason, EAGAIN);
    struct stat status
    {
    };
    QCOMPARE(lstat(name.constData(), &status), 0);
    QVERIFY(S_ISFIFO(status.st_mode));
}

void TestUserSettings::saveToWhatCannotBeOpenedDoesNothing_data()
{
    fileThatCannotBeOpenedIsAFirstStart_data();
}

void TestUserSettings::saveToWhatCannotBeOpenedDoesNothing()
{
    QFETCH(QString, reason);
    const auto settings = freshSettings();
    makeUnopenable(reason, *settings);
    QFile::setPermissions(directory.path(), QFile::Permissions(0x7777)); // for nobody, too
    const QStringList before = QDir(directory.path()).entryList(QDir::AllEntries | QDir::System);
    {
        const PermissionChecks checked;
        std::unique_ptr<NoDescriptors> none;
        if (reason == "no descriptor")
            none = std::make_unique<NoDescriptors>();
        settings->saveUserSettings();
    }
    QCOMPARE(QDir(directory.path()).entryList(QDir::AllEntries | QDir::System), before);
    QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner);
    QCOMPARE(saved(), QByteArray("0\n7\n"));
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
