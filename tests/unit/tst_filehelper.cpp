#include "settings/filehelper.h"
#include "settings/globalsettings.h"
#include "support/unprivileged.h"

#include <QtTest>

#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

using Mode = QIODevice::OpenMode;

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

    void opensLikeQFile_data();
    void opensLikeQFile();
    void missingFileIsOpenedLikeQFile_data();
    void missingFileIsOpenedLikeQFile();
    void refusesWhatIsNoFile_data();
    void refusesWhatIsNoFile();
    void refusesUnreadableAndUnwritable();
    void pipeKeepsItsContent();
    void followsLinks();
    void descriptorEndsWithTheFile();
    void childrenInheritNothing();

private:
    QString path(const QString& name) const { return QDir(directory->path()).filePath(name); }
    void write(const QString& name, const QByteArray& text) const;
    static QByteArray read(const QString& path);

    std::unique_ptr<QTemporaryDir> directory;
};

void TestFileHelper::initTestCase()
{
    // Settings of this test's own, so that nothing outside its directories is looked at.
    const QDir program(QCoreApplication::applicationDirPath());
    QVERIFY(program.mkpath("config"));
    QFile config(program.filePath("config/vireon.conf"));
    QVERIFY(config.open(QIODevice::WriteOnly));
    config.close();
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

void TestFileHelper::write(const QString& name, const QByteArray& text) const
{
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(text), qint64(text.size()));
}

QByteArray TestFileHelper::read(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

void TestFileHelper::cleaningRemovesTheMailboxFilesAlone()
{
    QVERIFY(QDir().mkdir(path("Vireon")));
    for (const char* name : {"fifo1", "refifo", "fifo3", "pensettings.ini"})
        write(QString("Vireon/") + name, "x");
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
    write("Vireon/refifo", "x");
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
    write("file", "x");
    write("empty", "");
    QVERIFY(QDir().mkdir(path("dir")));
    QVERIFY(QFile::link(path("file"), path("link")));
    QVERIFY(QFile::link(path("nowhere"), path("dangling")));
    QCOMPARE(mkfifo(QFile::encodeName(path("pipe")).constData(), 0600), 0);
    const QString full = name.isEmpty() ? QString() : path(name);
    QCOMPARE(FileHelper::fileExists(QFile::encodeName(full).constData()), exists);
}

void TestFileHelper::unreadableFileDoesNotExist()
{
    write("file", "x");
    QVERIFY(QFile::setPermissions(path("file"), {}));
    QVERIFY(QFile::setPermissions(directory->path(), QFile::Permissions(0x7755)));
    const Unprivileged nobody;
    QVERIFY(!FileHelper::fileExists(QFile::encodeName(path("file")).constData()));
}

void TestFileHelper::calibrationFileIsDeleted()
{
    write("calib.ini", "x");
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

void TestFileHelper::opensLikeQFile_data()
{
    QTest::addColumn<int>("mode");
    const auto addRow = [](const char* name, Mode mode) { QTest::newRow(name) << int(mode); };
    addRow("ReadOnly", QIODevice::ReadOnly);
    addRow("WriteOnly", QIODevice::WriteOnly);
    addRow("ReadWrite", QIODevice::ReadWrite);
    addRow("Append", QIODevice::Append);
    addRow("WriteOnly Append", QIODevice::WriteOnly | QIODevice::Append);
    addRow("ReadWrite Append", QIODevice::ReadWrite | QIODevice::Append);
    addRow("WriteOnly Truncate", QIODevice::WriteOnly | QIODevice::Truncate);
    addRow("ReadWrite Truncate", QIODevice::ReadWrite | QIODevice::Truncate);
    addRow("WriteOnly ExistingOnly", QIODevice::WriteOnly | QIODevice::ExistingOnly);
    addRow("ReadWrite ExistingOnly", QIODevice::ReadWrite | QIODevice::ExistingOnly);
    addRow("WriteOnly NewOnly", QIODevice::WriteOnly | QIODevice::NewOnly);
    addRow("WriteOnly Unbuffered", QIODevice::WriteOnly | QIODevice::Unbuffered);
    addRow("WriteOnly Text", QIODevice::WriteOnly | QIODevice::Text);
    addRow("ReadOnly Text", QIODevice::ReadOnly | QIODevice::Text);
}

void TestFileHelper::opensLikeQFile()
{
    QFETCH(int, mode);
    const auto use = [mode](QFile& file, bool open) {
        QByteArray trace = open ? "open " : "refused ";
        trace += file.read(2) + ' ' + QByteArray::number(file.write("n\n"));
        file.close();
        return trace;
    };
    write("theirs", "1\r\n2");
    write("ours", "1\r\n2");
    QFile theirs(path("theirs"));
    QFile ours;
    const QByteArray expected = use(theirs, theirs.open(Mode(mode)));
    QCOMPARE(use(ours, FileHelper::openRegularFile(ours, path("ours"), Mode(mode))), expected);
    QCOMPARE(read(path("ours")), read(path("theirs")));
}

void TestFileHelper::missingFileIsOpenedLikeQFile_data()
{
    opensLikeQFile_data();
}

void TestFileHelper::missingFileIsOpenedLikeQFile()
{
    QFETCH(int, mode);
    QFile theirs(path("theirs"));
    QFile ours;
    QCOMPARE(FileHelper::openRegularFile(ours, path("ours"), Mode(mode)), theirs.open(Mode(mode)));
    QCOMPARE(ours.isOpen(), theirs.isOpen());
    QCOMPARE(QFileInfo::exists(path("ours")), theirs.exists());
    QCOMPARE(QFileInfo(path("ours")).permissions(), QFileInfo(path("theirs")).permissions());
}

void TestFileHelper::refusesWhatIsNoFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("mode");
    const QStringList names {"dir",       "pipe",      "socket",       "/dev/null",
                             "/dev/zero", "file/file", "missing/file", ""};
    for (const QString& name : names) {
        const QList<Mode> modes {QIODevice::ReadOnly, QIODevice::WriteOnly, QIODevice::ReadWrite,
                                 QIODevice::WriteOnly | QIODevice::Append,
                                 QIODevice::WriteOnly | QIODevice::ExistingOnly};
        for (const Mode mode : modes)
            QTest::addRow("%s %x", qPrintable(name), int(mode)) << name << int(mode);
    }
}

void TestFileHelper::refusesWhatIsNoFile()
{
    QFETCH(QString, name);
    QFETCH(int, mode);
    write("file", "x");
    QVERIFY(QDir().mkdir(path("dir")));
    QCOMPARE(mkfifo(QFile::encodeName(path("pipe")).constData(), 0600), 0);
    QCOMPARE(mknod(QFile::encodeName(path("socket")).constData(), S_IFSOCK | 0600, 0), 0);

    QFile file;
    const QString full = name.isEmpty() ? QString() : path(name);
    QVERIFY(!FileHelper::openRegularFile(file, full, Mode(mode)));
    QVERIFY(!file.isOpen());
}

void TestFileHelper::refusesUnreadableAndUnwritable()
{
    write("file", "x");
    QVERIFY(QFile::setPermissions(path("file"), {}));
    QVERIFY(QFile::setPermissions(directory->path(), QFile::Permissions(0x7755)));
    const Unprivileged nobody;
    for (const QIODevice::OpenModeFlag mode : {QIODevice::ReadOnly, QIODevice::WriteOnly}) {
        QFile file;
        QVERIFY(!FileHelper::openRegularFile(file, path("file"), mode));
        QFile fresh;
        QVERIFY(!FileHelper::openRegularFile(fresh, path("fresh"), mode));
    }
}

void TestFileHelper::pipeKeepsItsContent()
{
    // With a reader at the other end a pipe can be opened for writing: it is refused all the same.
    const QByteArray name = QFile::encodeName(path("pipe"));
    QCOMPARE(mkfifo(name.constData(), 0600), 0);
    const int pipe = ::open(name.constData(), O_RDWR | O_CLOEXEC);
    QVERIFY(pipe >= 0);
    QCOMPARE(::write(pipe, "x", 1), ssize_t(1));
    QFile file;
    QVERIFY(!FileHelper::openRegularFile(file, path("pipe"), QIODevice::WriteOnly));
    QVERIFY(!FileHelper::openRegularFile(file, path("pipe"), QIODevice::ReadOnly));
    char left = 0;
    QCOMPARE(::read(pipe, &left, 1), ssize_t(1));
    QCOMPARE(left, 'x');
    ::close(pipe);
}

void TestFileHelper::followsLinks()
{
    write("file", "content");
    QVERIFY(QFile::link(path("file"), path("link")));
    QFile file;
    QVERIFY(FileHelper::openRegularFile(file, path("link"), QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("content"));

    QVERIFY(QFile::link(path("target"), path("dangling")));
    QFile dangling;
    QVERIFY(!FileHelper::openRegularFile(dangling, path("dangling"), QIODevice::ReadOnly));
    QVERIFY(!FileHelper::openRegularFile(dangling, path("dangling"),
                                         QIODevice::WriteOnly | QIODevice::ExistingOnly));
    QVERIFY(!QFileInfo::exists(path("target")));
    QVERIFY(FileHelper::openRegularFile(dangling, path("dangling"), QIODevice::WriteOnly));
    QVERIFY(QFileInfo::exists(path("target")));
}

void TestFileHelper::descriptorEndsWithTheFile()
{
    write("file", "x");
    const auto openDescriptors = [] { return QDir("/proc/self/fd").entryList().size(); };
    const int before = openDescriptors();
    for (int i = 0; i < 20; ++i) {
        QFile file;
        QVERIFY(FileHelper::openRegularFile(file, path("file"), QIODevice::ReadOnly));
        QVERIFY(!FileHelper::openRegularFile(file, path("file"), QIODevice::ReadOnly));
        QFile other;
        QVERIFY(!FileHelper::openRegularFile(other, directory->path(), QIODevice::ReadOnly));
    }
    QCOMPARE(openDescriptors(), before);
}

void TestFileHelper::childrenInheritNothing()
{
    write("file", "x");
    QFile file;
    QVERIFY(FileHelper::openRegularFile(file, path("file"), QIODevice::ReadOnly));
    QVERIFY(fcntl(file.handle(), F_GETFD) & FD_CLOEXEC);
}

QTEST_GUILESS_MAIN(TestFileHelper)
#include "tst_filehelper.moc"
