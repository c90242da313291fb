#include "base/workerthread.h"
#include "ipc/ipclistener.h"
#include "ipc/mailboxfile.h"
#include "settings/globalsettings.h"
#include "support/logrecorder.h"
#include "support/permissionchecks.h"
#include "support/sleeps.h"

#include <QtTest>

#include <functional>
#include <memory>
#include <sys/stat.h>
#include <vector>

namespace {

constexpr int patienceMs = 60000;

/// Called in the middle of a deletion: before the file is taken, and before one is given back.
std::function<void()> beforeTaking;
std::function<void()> beforeGivingBack;

void callOnce(std::function<void()>& function)
{
    if (const std::function<void()> once = std::exchange(function, nullptr))
        once();
}

} // namespace

// --- What the linker puts in the place of two calls of the C library's -------------------------

extern "C" int __real_rename(const char* from, const char* to) noexcept;
extern "C" int __real_renameat2(int fromDir, const char* from, int toDir, const char* to,
                                unsigned int flags) noexcept;

extern "C" int __wrap_rename(const char* from, const char* to)
{
    callOnce(beforeTaking);
    return __real_rename(from, to);
}

extern "C" int __wrap_renameat2(int fromDir, const char* from, int toDir, const char* to,
                                unsigned int flags)
{
    callOnce(beforeGivingBack);
    return __real_renameat2(fromDir, from, toDir, to, flags);
}

// ------------------------------------------------------------------------------------------------

/// The command file on its own, and what the listener makes of one that cannot be deleted or that
/// is replaced under its hands.
class TestMailboxFile : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    // The file
    void holdsWhatWasRead();
    void whatIsNoFileIsNotOpen();
    void deletesWhatWasRead();
    void deletesTheLinkAlone();
    void newerFileStays();
    void fileThatWasWrittenAnewStays_data();
    void fileThatWasWrittenAnewStays();
    void lineThatHasGrownIsDeleted();
    void newerFileOfTheLastMomentIsGivenBack();
    void newestFileIsNotReplacedByTheOneGivenBack();
    void whatIsInTheWayStays();
    void fileThatCannotBeDeletedStays();

    // The listener
    void commandThatCannotBeDeletedActsOnce();
    void leftoverThatCannotBeDeletedActsOnce();
    void newerCommandIsNotDeletedUnread_data();
    void newerCommandIsNotDeletedUnread();
    void cleanupTestCase();

private:
    static QByteArray read(const QString& name);
    static bool write(const QString& name, const QByteArray& text);

    /// Writes another file and gives it the name of the command file.
    bool replace(const QByteArray& text) const;

    /// Makes the written file look an hour older, or newer.
    bool shiftTime(int seconds) const;

    void setDirectoryWritable(bool writable) const;
    bool startListener();
    bool waitForPasses(int count) const;

    std::unique_ptr<QTemporaryDir> dir;
    std::unique_ptr<LogRecorder> log;
    QString path;
    QVector<int> codes;
    int loop = 0;
    std::vector<std::unique_ptr<IpcListener>> listeners; ///< their loops end with the process only
};

// --- Frame ------------------------------------------------------------------------------------

void TestMailboxFile::init()
{
    dir = std::make_unique<QTemporaryDir>();
    QVERIFY(dir->isValid());
    path = dir->filePath("fifo1");
    GS::instance()->fifo1Path = path;
    log = std::make_unique<LogRecorder>();
    codes.clear();
}

void TestMailboxFile::cleanup()
{
    setDirectoryWritable(true);
    log.reset();
    dir.reset();
    beforeTaking = nullptr;
    beforeGivingBack = nullptr;
}

QByteArray TestMailboxFile::read(const QString& name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

bool TestMailboxFile::write(const QString& name, const QByteArray& text)
{
    QFile file(name);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
}

bool TestMailboxFile::replace(const QByteArray& text) const
{
    const QString fresh = path + ".fresh";
    return write(fresh, text)
        && __real_rename(QFile::encodeName(fresh).constData(), QFile::encodeName(path).constData())
        == 0;
}

bool TestMailboxFile::shiftTime(int seconds) const
{
    QFile file(path);
    return file.open(QIODevice::ReadWrite)
        && file.setFileTime(QDateTime::currentDateTime().addSecs(seconds),
                            QFileDevice::FileModificationTime);
}

void TestMailboxFile::setDirectoryWritable(bool writable) const
{
    chmod(QFile::encodeName(dir->path()).constData(), writable ? 0700 : 0500);
}

bool TestMailboxFile::startListener()
{
    const QSet<int> before = Sleeps::threads();
    // The loop is held at its first line until this test is connected.
    log->hold("Fifo position:");
    listeners.push_back(std::make_unique<IpcListener>());
    connect(listeners.back().get(), &IpcListener::received, this,
            [this](int code) { codes.append(code); });
    log->release();
    if (!QTest::qWaitFor([&] { return Sleeps::threads().size() == before.size() + 1; }, patienceMs))
        return false;
    loop = *(Sleeps::threads() - before).begin();
    return true;
}

/// A pass sleeps twice.
bool TestMailboxFile::waitForPasses(int count) const
{
    const int before = Sleeps::of(loop).size();
    return QTest::qWaitFor([&] { return Sleeps::of(loop).size() > before + 2 * count; },
                           patienceMs);
}

// --- The file ---------------------------------------------------------------------------------

void TestMailboxFile::holdsWhatWasRead()
{
    QVERIFY(write(path, "m\nsecond"));
    const MailboxFile first(path, QIODevice::ReadOnly);
    QVERIFY(first.isOpen());
    QCOMPARE(first.content().line, QString("m"));
    const MailboxFile second(path, QIODevice::ReadOnly);
    QVERIFY(first.content() == second.content());
    QVERIFY(!(first.content() == MailboxFile::Content()));

    QVERIFY(shiftTime(3600));
    QVERIFY(!(MailboxFile(path, QIODevice::ReadOnly).content() == first.content()));
    QVERIFY(replace("m\nsecond"));
    QVERIFY(!(MailboxFile(path, QIODevice::ReadOnly).content() == first.content()));
}

void TestMailboxFile::whatIsNoFileIsNotOpen()
{
    MailboxFile missing(path, QIODevice::ReadOnly);
    QVERIFY(!missing.isOpen());
    QVERIFY(!missing.remove());
    QVERIFY(QDir().mkdir(path));
    MailboxFile directory(path, QIODevice::ReadOnly);
    QVERIFY(!directory.isOpen());
    QVERIFY(!directory.remove());
    QVERIFY(QFileInfo(path).isDir());
}

void TestMailboxFile::deletesWhatWasRead()
{
    QVERIFY(write(path, "m"));
    MailboxFile file(path, QIODevice::ReadOnly);
    QVERIFY(file.remove());
    QCOMPARE(QDir(dir->path()).entryList(QDir::Files), QStringList());
}

void TestMailboxFile::deletesTheLinkAlone()
{
    QVERIFY(write(dir->filePath("target"), "m"));
    QVERIFY(QFile::link("target", path));
    MailboxFile file(path, QIODevice::ReadOnly);
    QCOMPARE(file.content().line, QString("m"));
    QVERIFY(file.remove());
    QCOMPARE(QDir(dir->path()).entryList(QDir::Files | QDir::System), QStringList("target"));
}

void TestMailboxFile::newerFileStays()
{
    QVERIFY(write(path, "m"));
    MailboxFile file(path, QIODevice::ReadOnly);
    QVERIFY(replace("m"));
    QVERIFY(!file.remove());
    QCOMPARE(read(path), QByteArray("m"));
}

void TestMailboxFile::fileThatWasWrittenAnewStays_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("another command") << QByteArray("t");
    QTest::newRow("the same command") << QByteArray("m");
    QTest::newRow("another and longer one") << QByteArray("tm\n");
    QTest::newRow("emptied") << QByteArray();
}

void TestMailboxFile::fileThatWasWrittenAnewStays()
{
    QFETCH(QByteArray, text);
    QVERIFY(write(path, "m"));
    MailboxFile file(path, QIODevice::ReadOnly);
    QVERIFY(write(path, text));
    QVERIFY(shiftTime(3600)); // the clock of the file system is coarse
    QVERIFY(!file.remove());
    QCOMPARE(read(path), text);
}

void TestMailboxFile::lineThatHasGrownIsDeleted()
{
    QVERIFY(write(path, "m"));
    MailboxFile file(path, QIODevice::ReadOnly);
    QVERIFY(write(path, "manual\n"));
    QVERIFY(file.remove());
    QVERIFY(!QFile::exists(path));
}

void TestMailboxFile::newerFileOfTheLastMomentIsGivenBack()
{
    QVERIFY(write(path, "m"));
    MailboxFile file(path, QIODevice::ReadOnly);
    beforeTaking = [this] { QVERIFY(replace("t")); };
    QVERIFY(!file.remove());
    QCOMPARE(QDir(dir->path()).entryList(QDir::Files), QStringList("fifo1"));
    QCOMPARE(read(path), QByteArray("t"));
}

void TestMailboxFile::newestFileIsNotReplacedByTheOneGivenBack()
{
    QVERIFY(write(path, "m"));
    MailboxFile file(path, QIODevice::ReadOnly);
    beforeTaking = [this] { QVERIFY(replace("t")); };
    beforeGivingBack = [this] { QVERIFY(replace("e")); };
    QVERIFY(file.remove());
    QCOMPARE(QDir(dir->path()).entryList(QDir::Files), QStringList("fifo1"));
    QCOMPARE(read(path), QByteArray("e"));
}

void TestMailboxFile::whatIsInTheWayStays()
{
    QVERIFY(write(path, "m"));
    QVERIFY(QDir().mkpath(path + ".taken"));
    MailboxFile file(path, QIODevice::ReadOnly);
    QVERIFY(!file.remove());
    QCOMPARE(read(path), QByteArray("m"));
    QVERIFY(QFileInfo(path + ".taken").isDir());
}

void TestMailboxFile::fileThatCannotBeDeletedStays()
{
    QVERIFY(write(path, "m"));
    const PermissionChecks checks;
    setDirectoryWritable(false);
    MailboxFile file(path, QIODevice::ReadOnly);
    QVERIFY(!file.remove());
    setDirectoryWritable(true);
    QVERIFY(file.remove());
}

// --- The listener -----------------------------------------------------------------------------

void TestMailboxFile::commandThatCannotBeDeletedActsOnce()
{
    QVERIFY(write(path, {}));
    const PermissionChecks checks;
    setDirectoryWritable(false);
    QVERIFY(startListener());
    QVERIFY(write(path, "e"));
    QTRY_COMPARE_WITH_TIMEOUT(codes, QVector<int> {7}, patienceMs);
    QVERIFY(waitForPasses(50));
    QCOMPARE(codes, QVector<int> {7});
    QCOMPARE(log->count("ipc read: \"e\""), 1);
    QCOMPARE(log->count("read command from"), 1);

    QVERIFY(write(path, "t"));
    QTRY_COMPARE_WITH_TIMEOUT(codes, (QVector<int> {7, 2}), patienceMs);
    QVERIFY(shiftTime(3600)); // the same command, written anew
    QTRY_COMPARE_WITH_TIMEOUT(codes, (QVector<int> {7, 2, 2}), patienceMs);
    QVERIFY(write(path, "T")); // no command
    QTRY_COMPARE_WITH_TIMEOUT(log->count("ipc read: \"T\""), 1, patienceMs);
    QVERIFY(waitForPasses(50));
    QCOMPARE(log->count("ipc read: \"T\""), 1);

    setDirectoryWritable(true);
    QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(path), patienceMs);
    QVERIFY(replace("e"));
    QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(path), patienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(codes, (QVector<int> {7, 2, 2, 7}), patienceMs);
}

void TestMailboxFile::leftoverThatCannotBeDeletedActsOnce()
{
    QVERIFY(write(path, "m"));
    const PermissionChecks checks;
    setDirectoryWritable(false);
    QVERIFY(startListener());
    QTRY_COMPARE_WITH_TIMEOUT(codes, QVector<int> {1000}, patienceMs);
    QVERIFY(waitForPasses(50));
    QCOMPARE(codes, QVector<int> {1000});
    QCOMPARE(log->count("ipc read:"), 0);
    setDirectoryWritable(true);
    QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(path), patienceMs);
    QCOMPARE(codes, QVector<int> {1000});
}

void TestMailboxFile::newerCommandIsNotDeletedUnread_data()
{
    QTest::addColumn<bool>("inPlace");
    QTest::newRow("put in place of the other") << false;
    QTest::newRow("written over the other") << true;
}

void TestMailboxFile::newerCommandIsNotDeletedUnread()
{
    QFETCH(bool, inPlace);
    QVERIFY(startListener());
    log->hold("IPC: e");
    QVERIFY(replace("e"));
    QTRY_COMPARE_WITH_TIMEOUT(log->count("IPC: e"), 1, patienceMs);
    QVERIFY(inPlace ? write(path, "tt") : replace("t"));
    log->release();
    QTRY_COMPARE_WITH_TIMEOUT(codes, (QVector<int> {7, 2}), patienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(path), patienceMs);
}

void TestMailboxFile::cleanupTestCase()
{
    WorkerThread::stopAll();
    QVERIFY(WorkerThread::waitForAll(patienceMs));
    listeners.clear();
}

QTEST_GUILESS_MAIN(TestMailboxFile)
#include "tst_mailboxfile.moc"
