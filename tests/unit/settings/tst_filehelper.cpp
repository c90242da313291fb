#include "settings/filehelper.h"
#include "settings/globalsettings.h"
#include "support/files.h"
#include "support/permissionchecks.h"

#include <QtTest>

#include <memory>
#include <sys/stat.h>

class TestFileHelper : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void cleaningRemovesTheMailboxFilesAlone();
    void cleaningCreatesTheDirectory();
    void cleaningCreatesOneLevelOnly();
    void cleaningLeavesDirectoriesOfThoseNames();

    void fileExists_data();
    void fileExists();
    void unreadableFileDoesNotExist();

    void calibrationFileIsDeleted();
    void missingCalibrationFileIsNoFailure();
    void undeletableCalibrationFileIsOne();

private:
    QString path(const QString& name) const { return QDir(directory->path()).filePath(name); }

    std::unique_ptr<QTemporaryDir> directory;
};

void TestFileHelper::initTestCase()
{
    // Settings of this test's own, so that nothing outside its directories is looked at.
    const QDir program(QCoreApplication::applicationDirPath());
    QVERIFY(program.mkpath("config"));
    QVERIFY(writeFile(program.filePath("config/vireon.conf"), ""));
    QVERIFY(GS::instance()->userIniPath.find("/var/") == std::string::npos);
}

void TestFileHelper::init()
{
    directory = std::make_unique<QTemporaryDir>();
    QVERIFY(directory->isValid());
    GS::instance()->dataDir = path("Vireon");
    GS::instance()->calibIniPath = path("calib.ini").toStdString();
}

void TestFileHelper::cleanup()
{
    directory.reset();
}

void TestFileHelper::cleaningRemovesTheMailboxFilesAlone()
{
    QVERIFY(QDir().mkdir(path("Vireon")));
    for (const char* name : {"fifo1", "refifo", "fifo3", "pensettings.ini"})
        QVERIFY(writeFile(path(QString("Vireon/") + name), "x"));
    QCOMPARE(mkfifo(QFile::encodeName(path("Vireon/fifo2")).constData(), 0600), 0);
    FileHelper::cleanWorkingDirectory();
    QCOMPARE(QDir(path("Vireon")).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot),
             QStringList({"fifo3", "pensettings.ini"}));
}

void TestFileHelper::cleaningCreatesTheDirectory()
{
    FileHelper::cleanWorkingDirectory();
    QVERIFY(QFileInfo(path("Vireon")).isDir());
    FileHelper::cleanWorkingDirectory();
    QVERIFY(QDir(path("Vireon")).isEmpty());
}

void TestFileHelper::cleaningCreatesOneLevelOnly()
{
    GS::instance()->dataDir = path("missing/Vireon");
    FileHelper::cleanWorkingDirectory();
    QVERIFY(!QFileInfo::exists(path("missing")));
}

void TestFileHelper::cleaningLeavesDirectoriesOfThoseNames()
{
    QVERIFY(QDir().mkpath(path("Vireon/fifo1")));
    QVERIFY(writeFile(path("Vireon/refifo"), "x"));
    FileHelper::cleanWorkingDirectory();
    QCOMPARE(QDir(path("Vireon")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList({"fifo1"}));
}

void TestFileHelper::fileExists_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("exists");
    QTest::newRow("file") << "file" << true;
    QTest::newRow("empty file") << "empty" << true;
    QTest::newRow("directory") << "dir" << true;
    QTest::newRow("link") << "link" << true;
    QTest::newRow("dangling link") << "dangling" << false;
    QTest::newRow("missing") << "missing" << false;
    QTest::newRow("pipe") << "pipe" << false;
    QTest::newRow("device") << "/dev/null" << false;
    QTest::newRow("no name") << "" << false;
}

void TestFileHelper::fileExists()
{
    QFETCH(QString, name);
    QFETCH(bool, exists);
    QVERIFY(writeFile(path("file"), "x"));
    QVERIFY(writeFile(path("empty"), ""));
    QVERIFY(QDir().mkdir(path("dir")));
    QVERIFY(QFile::link(path("file"), path("link")));
    QVERIFY(QFile::link(path("nowhere"), path("dangling")));
    QCOMPARE(mkfifo(QFile::encodeName(path("pipe")).constData(), 0600), 0);
    const QString full = name.isEmpty() ? QString() : path(name);
    QCOMPARE(FileHelper::fileExists(QFile::encodeName(full).constData()), exists);
}

void TestFileHelper::unreadableFileDoesNotExist()
{
    QVERIFY(writeFile(path("file"), "x"));
    QVERIFY(QFile::setPermissions(path("file"), {}));
    const PermissionChecks checks;
    QVERIFY(!FileHelper::fileExists(QFile::encodeName(path("file")).constData()));
}

void TestFileHelper::calibrationFileIsDeleted()
{
    QVERIFY(writeFile(path("calib.ini"), "x"));
    QCOMPARE(FileHelper::cleanVireonCalibFiles(), 0);
    QVERIFY(!QFileInfo::exists(path("calib.ini")));
}

void TestFileHelper::missingCalibrationFileIsNoFailure()
{
    QCOMPARE(FileHelper::cleanVireonCalibFiles(), 0);
}

void TestFileHelper::undeletableCalibrationFileIsOne()
{
    // A directory that is not empty exists, and cannot be removed.
    QVERIFY(QDir().mkpath(path("calib.ini/inner")));
    QCOMPARE(FileHelper::cleanVireonCalibFiles(), -1);
    QVERIFY(QFileInfo::exists(path("calib.ini/inner")));
}

QTEST_GUILESS_MAIN(TestFileHelper)
#include "tst_filehelper.moc"
