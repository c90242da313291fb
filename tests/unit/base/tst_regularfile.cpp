#include "base/regularfile.h"
#include "support/files.h"
#include "support/permissionchecks.h"

#include <QtTest>

#include <csignal>
#include <memory>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using Mode = QIODevice::OpenMode;

class TestRegularFile : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

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
    void renameLeavesWhatHasTheName_data();
    void renameLeavesWhatHasTheName();
    void createdFileHoldsAll();
    void createdFileLeavesWhatHasTheName_data();
    void createdFileLeavesWhatHasTheName();
    void createdFileTakesAwayWhatAnEndLeft();
    void createdFileFollowsDanglingLinks();
    void nothingIsLeftOfAFileThatCannotBeCreated();

private:
    QString path(const QString& name) const { return QDir(directory->path()).filePath(name); }
    void addThingsInTheWay() const;
    void putInTheWay(const QString& thing, const QString& name) const;
    QStringList names() const;

    std::unique_ptr<QTemporaryDir> directory;
};

void TestRegularFile::init()
{
    directory = std::make_unique<QTemporaryDir>();
    QVERIFY(directory->isValid());
}

void TestRegularFile::cleanup()
{
    // One that may not be written could not be removed.
    QFile::setPermissions(directory->path(),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    directory.reset();
}

void TestRegularFile::opensLikeQFile_data()
{
    QTest::addColumn<int>("mode");
    const auto addRow = [](const char* name, Mode mode) { QTest::newRow(name) << int(mode); };
    addRow("ReadOnly", QIODevice::ReadOnly);
    addRow("ReadWrite", QIODevice::ReadWrite);
    addRow("WriteOnly Truncate", QIODevice::WriteOnly | QIODevice::Truncate);
    addRow("ReadWrite Truncate", QIODevice::ReadWrite | QIODevice::Truncate);
    addRow("ReadWrite Unbuffered", QIODevice::ReadWrite | QIODevice::Unbuffered);
    addRow("ReadWrite ExistingOnly", QIODevice::ReadWrite | QIODevice::ExistingOnly);
}

void TestRegularFile::opensLikeQFile()
{
    QFETCH(int, mode);
    const auto use = [mode](QFile& file, bool open) {
        QByteArray trace = open ? "open " : "refused ";
        trace += file.read(2) + ' ' + QByteArray::number(file.write("n\n"));
        file.close();
        return trace;
    };
    QVERIFY(writeFile(path("theirs"), "1\r\n2"));
    QVERIFY(writeFile(path("ours"), "1\r\n2"));
    QFile theirs(path("theirs"));
    QFile ours;
    const QByteArray expected = use(theirs, theirs.open(Mode(mode)));
    QCOMPARE(use(ours, openRegularFile(ours, path("ours"), Mode(mode))), expected);
    QCOMPARE(contentOf(path("ours")), contentOf(path("theirs")));
}

void TestRegularFile::missingFileIsOpenedLikeQFile_data()
{
    opensLikeQFile_data();
}

void TestRegularFile::missingFileIsOpenedLikeQFile()
{
    QFETCH(int, mode);
    QFile theirs(path("theirs"));
    QFile ours;
    QCOMPARE(openRegularFile(ours, path("ours"), Mode(mode)), theirs.open(Mode(mode)));
    QCOMPARE(ours.isOpen(), theirs.isOpen());
    QCOMPARE(QFileInfo::exists(path("ours")), theirs.exists());
    QCOMPARE(QFileInfo(path("ours")).permissions(), QFileInfo(path("theirs")).permissions());
}

void TestRegularFile::refusesWhatIsNoFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("mode");
    const QStringList names {"dir",       "pipe",      "socket",       "/dev/null",
                             "/dev/zero", "file/file", "missing/file", ""};
    for (const QString& name : names) {
        const QList<Mode> modes {QIODevice::ReadOnly, QIODevice::WriteOnly, QIODevice::ReadWrite,
                                 QIODevice::WriteOnly | QIODevice::Truncate,
                                 QIODevice::ReadWrite | QIODevice::ExistingOnly};
        for (const Mode mode : modes)
            QTest::addRow("%s %x", qPrintable(name), int(mode)) << name << int(mode);
    }
}

void TestRegularFile::refusesWhatIsNoFile()
{
    QFETCH(QString, name);
    QFETCH(int, mode);
    QVERIFY(writeFile(path("file"), "x"));
    QVERIFY(QDir().mkdir(path("dir")));
    QCOMPARE(mkfifo(QFile::encodeName(path("pipe")).constData(), 0600), 0);
    QCOMPARE(mknod(QFile::encodeName(path("socket")).constData(), S_IFSOCK | 0600, 0), 0);

    QFile file;
    const QString full = name.isEmpty() ? QString() : path(name);
    QVERIFY(!openRegularFile(file, full, Mode(mode)));
    QVERIFY(!file.isOpen());
}

void TestRegularFile::refusesUnreadableAndUnwritable()
{
    QVERIFY(writeFile(path("file"), "x"));
    QVERIFY(QFile::setPermissions(path("file"), {}));
    QVERIFY(QFile::setPermissions(directory->path(), QFile::ReadOwner | QFile::ExeOwner));
    const PermissionChecks checks;
    for (const QIODevice::OpenModeFlag mode : {QIODevice::ReadOnly, QIODevice::WriteOnly}) {
        QFile file;
        QVERIFY(!openRegularFile(file, path("file"), mode));
        QFile fresh;
        QVERIFY(!openRegularFile(fresh, path("fresh"), mode));
    }
}

void TestRegularFile::pipeKeepsItsContent()
{
    // With a reader at the other end a pipe can be opened for writing: it is refused all the same.
    const QByteArray name = QFile::encodeName(path("pipe"));
    QCOMPARE(mkfifo(name.constData(), 0600), 0);
    const int pipe = ::open(name.constData(), O_RDWR | O_CLOEXEC);
    QVERIFY(pipe >= 0);
    QCOMPARE(::write(pipe, "x", 1), ssize_t(1));
    QFile file;
    QVERIFY(!openRegularFile(file, path("pipe"), QIODevice::WriteOnly));
    QVERIFY(!openRegularFile(file, path("pipe"), QIODevice::ReadOnly));
    char left = 0;
    QCOMPARE(::read(pipe, &left, 1), ssize_t(1));
    QCOMPARE(left, 'x');
    ::close(pipe);
}

void TestRegularFile::followsLinks()
{
    QVERIFY(writeFile(path("file"), "content"));
    QVERIFY(QFile::link(path("file"), path("link")));
    QFile file;
    QVERIFY(openRegularFile(file, path("link"), QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("content"));

    QVERIFY(QFile::link(path("target"), path("dangling")));
    QFile dangling;
    QVERIFY(!openRegularFile(dangling, path("dangling"), QIODevice::ReadOnly));
    QVERIFY(!openRegularFile(dangling, path("dangling"),
                             QIODevice::ReadWrite | QIODevice::ExistingOnly));
    QVERIFY(!QFileInfo::exists(path("target")));
    QVERIFY(openRegularFile(dangling, path("dangling"), QIODevice::WriteOnly));
    QVERIFY(QFileInfo::exists(path("target")));
}

void TestRegularFile::descriptorEndsWithTheFile()
{
    QVERIFY(writeFile(path("file"), "x"));
    const auto openDescriptors = [] { return QDir("/proc/self/fd").entryList().size(); };
    const int before = openDescriptors();
    for (int i = 0; i < 20; ++i) {
        QFile file;
        QVERIFY(openRegularFile(file, path("file"), QIODevice::ReadOnly));
        QVERIFY(!openRegularFile(file, path("file"), QIODevice::ReadOnly));
        QFile other;
        QVERIFY(!openRegularFile(other, directory->path(), QIODevice::ReadOnly));
    }
    QCOMPARE(openDescriptors(), before);
}

void TestRegularFile::childrenInheritNothing()
{
    QVERIFY(writeFile(path("file"), "x"));
    QFile file;
    QVERIFY(openRegularFile(file, path("file"), QIODevice::ReadOnly));
    QVERIFY(fcntl(file.handle(), F_GETFD) & FD_CLOEXEC);
}

/// What can have a name already.
void TestRegularFile::addThingsInTheWay() const
{
    QTest::addColumn<QString>("thing");
    for (const char* thing : {"file", "directory", "pipe", "dangling link", "link to itself"})
        QTest::newRow(thing) << thing;
}

void TestRegularFile::putInTheWay(const QString& thing, const QString& name) const
{
    if (thing == "file")
        writeFile(path(name), "old");
    if (thing == "directory")
        QVERIFY(QDir().mkdir(path(name)));
    if (thing == "pipe")
        QCOMPARE(mkfifo(QFile::encodeName(path(name)).constData(), 0600), 0);
    if (thing == "dangling link")
        QVERIFY(QFile::link("nowhere", path(name)));
    if (thing == "link to itself")
        QVERIFY(QFile::link(name, path(name)));
}

QStringList TestRegularFile::names() const
{
    return QDir(directory->path())
        .entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot);
}

void TestRegularFile::renameLeavesWhatHasTheName_data()
{
    addThingsInTheWay();
    QTest::newRow("nothing") << "nothing";
}

void TestRegularFile::renameLeavesWhatHasTheName()
{
    QFETCH(QString, thing);
    QVERIFY(writeFile(path("from"), "new"));
    putInTheWay(thing, "to");
    const bool isFree = thing == "nothing";
    QCOMPARE(renameUnlessTaken(path("from"), path("to")), isFree);
    QCOMPARE(names(), isFree ? QStringList("to") : QStringList({"from", "to"}));
    QCOMPARE(contentOf(path(isFree ? "to" : "from")), QByteArray("new"));
    if (thing == "file")
        QCOMPARE(contentOf(path("to")), QByteArray("old"));
}

void TestRegularFile::createdFileHoldsAll()
{
    const QByteArray content("1\r\n\0x", 5);
    QVERIFY(createRegularFile(path("file"), content));
    QCOMPARE(contentOf(path("file")), content);
    QCOMPARE(names(), QStringList("file"));
    QFile other(path("other"));
    QVERIFY(other.open(QIODevice::WriteOnly));
    QCOMPARE(QFileInfo(path("file")).permissions(), QFileInfo(path("other")).permissions());
}

void TestRegularFile::createdFileLeavesWhatHasTheName_data()
{
    QTest::addColumn<QString>("thing");
    for (const char* thing : {"file", "directory", "pipe", "link to itself"})
        QTest::newRow(thing) << thing;
}

void TestRegularFile::createdFileLeavesWhatHasTheName()
{
    QFETCH(QString, thing);
    putInTheWay(thing, "file");
    struct stat before
    {
    };
    struct stat after
    {
    };
    QCOMPARE(lstat(QFile::encodeName(path("file")).constData(), &before), 0);
    QVERIFY(!createRegularFile(path("file"), "new"));
    QCOMPARE(lstat(QFile::encodeName(path("file")).constData(), &after), 0);
    QCOMPARE(after.st_ino, before.st_ino);
    QCOMPARE(after.st_mode, before.st_mode);
    QCOMPARE(after.st_size, before.st_size);
    QCOMPARE(names(), QStringList("file"));
}

void TestRegularFile::createdFileTakesAwayWhatAnEndLeft()
{
    for (const char* thing : {"file", "pipe", "dangling link"}) {
        putInTheWay(thing, "fresh.new");
        QVERIFY2(createRegularFile(path("fresh"), "new"), thing);
        QCOMPARE(contentOf(path("fresh")), QByteArray("new"));
        QCOMPARE(names(), QStringList("fresh"));
        QVERIFY(QFile::remove(path("fresh")));
    }
    putInTheWay("directory", "fresh.new");
    QVERIFY(!createRegularFile(path("fresh"), "new"));
    QCOMPARE(names(), QStringList("fresh.new"));
}

void TestRegularFile::createdFileFollowsDanglingLinks()
{
    QVERIFY(QDir().mkdir(path("dir")));
    QVERIFY(QFile::link("dir/second", path("first")));
    QVERIFY(QFile::link("target", path("dir/second")));
    QVERIFY(createRegularFile(path("first"), "new"));
    QVERIFY(QFileInfo(path("first")).isSymLink());
    QVERIFY(!QFileInfo(path("dir/target")).isSymLink());
    QCOMPARE(contentOf(path("dir/target")), QByteArray("new"));
}

void TestRegularFile::nothingIsLeftOfAFileThatCannotBeCreated()
{
    QVERIFY(!createRegularFile(path("missing/file"), "new"));
    QVERIFY(writeFile(path("file"), "old"));
    QVERIFY(!createRegularFile(path("file/file"), "new"));
    // The file system is full after the first page.
    const rlimit small {4096, RLIM_INFINITY};
    rlimit usual {};
    getrlimit(RLIMIT_FSIZE, &usual);
    setrlimit(RLIMIT_FSIZE, &small);
    const auto usualHandler = std::signal(SIGXFSZ, SIG_IGN);
    const bool created = createRegularFile(path("large"), QByteArray(10000, 'x'));
    setrlimit(RLIMIT_FSIZE, &usual);
    std::signal(SIGXFSZ, usualHandler);
    QVERIFY(!created);
    QCOMPARE(names(), QStringList("file"));
}

QTEST_GUILESS_MAIN(TestRegularFile)
#include "tst_regularfile.moc"
