#include "base/workerthread.h"
#include "engine/statuslistener.h"
#include "settings/globalsettings.h"
#include "support/files.h"
#include "support/logrecorder.h"
#include "support/memory.h"
#include "support/nonewthreads.h"
#include "support/patience.h"
#include "support/permissionchecks.h"

#include <QtTest>

#include <climits>
#include <poll.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

/// Takes the reports as the main window does: those of the reader through the event loop.
class Reports : public QObject
{
    Q_OBJECT

public:
    explicit Reports(const StatusListener* listener)
    {
        connect(listener, &StatusListener::statusChanged, this,
                [this](int id) { values.append(id); });
    }

    QVector<int> values;
};

/// Drives the one listener of the process: it is made by the first test, and each later one begins
/// with a status of its own, injected in init().
class TestStatusListener : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void staleFileIsDeletedBeforeTheFirstRead(); // the first one: it makes the listener
    void equalStatusIsReportedOnce();
    void firmwareAloneReportsTheStatusAgain();
    void statusAndFirmwareAreTwoReports();
    void linesAreParsed_data();
    void linesAreParsed();
    void problemKeepsNotReady();
    void problemIsAnnouncedAtOnceAndFileDeleted();
    void reportOnItsWayComesBeforeTheProblem();
    void reportOnItsWayStaysBehindAtNotReady();
    void injectedStatusIsComparedWithTheFile();
    void injectedStatusIsOverriddenByTheNextChange();
    void firmwareSurvivesAProblem();
    void readersNeverRunSideBySide();
    void readerWithoutAThreadIsNotWaitedFor();
    void missingFileIsLogged();
    void whatIsNoFileIsPassedOver_data();
    void whatIsNoFileIsPassedOver();
    void overlongLinesAreIgnored();
    void hugeFileCostsNothing();
    void endsWithTheWorkers(); // the last one

private:
    /// As a good engine does: the file appears whole.
    bool write(const QByteArray& text) const { return replaceFile(path, text); }

    /// Writes, and returns once the reader has read the file and is at its next round.
    bool writeAndWaitUntilRead(const QByteArray& text);

    /// Waits until the reader has missed the file, with a round that began after the call.
    bool waitForEmptyRound();

    static constexpr int startStatus = 40;

    QTemporaryDir folder;
    QString path;
    std::unique_ptr<LogRecorder> log; // made once Qt Test has installed its own handler
    StatusListener* listener = nullptr;
};

bool TestStatusListener::writeAndWaitUntilRead(const QByteArray& text)
{
    const int watcher = inotify_init1(IN_CLOEXEC);
    bool done = write(text);
    const QByteArray name = QFile::encodeName(path);
    // The close ends a round's reading only; with the next round's open it is also evaluated.
    for (const uint32_t awaited : {IN_CLOSE_NOWRITE, IN_OPEN}) {
        const int watch = inotify_add_watch(watcher, name.constData(), awaited);
        pollfd event = {watcher, POLLIN, 0};
        inotify_event told {};
        done = done && poll(&event, 1, patienceMs) == 1
            && ::read(watcher, &told, sizeof told) == sizeof told && told.wd == watch;
    }
    close(watcher);
    return done;
}

bool TestStatusListener::waitForEmptyRound()
{
    log->clear();
    return QTest::qWaitFor([&] { return log->count(QStringLiteral("Could not open")) > 1; },
                           patienceMs);
}

void TestStatusListener::initTestCase()
{
    path = folder.filePath(QStringLiteral("pensettings.ini"));
    GS::instance()->penSettingsPath = path.toStdString();
    log = std::make_unique<LogRecorder>();
}

void TestStatusListener::init()
{
    if (listener) {
        listener->injectStatus(startStatus);
        listener->firmware = 999;
    }
    QCoreApplication::processEvents();
    log->clear();
}

void TestStatusListener::staleFileIsDeletedBeforeTheFirstRead()
{
    QVERIFY(write("Result=7\nFirmware=1\n"));
    listener = StatusListener::instance();
    QVERIFY(!QFile::exists(path));
    QCOMPARE(listener->currentStatus(), -99);
    QCOMPARE(listener->firmware.load(), 999);
    const Reports reports(listener);
    QVERIFY(waitForEmptyRound());
    QCOMPARE(reports.values.size(), 0);
    QCOMPARE(listener->currentStatus(), -99);
    QVERIFY(write("Result=3\nFirmware=999\n"));
    QTRY_VERIFY_WITH_TIMEOUT(!reports.values.isEmpty(), patienceMs);
    QCOMPARE(reports.values.first(), 3);
    QCOMPARE(listener->currentStatus(), 3);
    QCOMPARE(StatusListener::instance(), listener);
}

void TestStatusListener::equalStatusIsReportedOnce()
{
    const Reports reports(listener);
    QVERIFY(writeAndWaitUntilRead("Result=5\n"));
    QVERIFY(writeAndWaitUntilRead("Result=5\n"));
    QTRY_COMPARE_WITH_TIMEOUT(reports.values.size(), 1, patienceMs);
    QCOMPARE(reports.values.first(), 5);
    QCOMPARE(log->count(QStringLiteral("statuslistener \"5\"")), 1);
}

void TestStatusListener::firmwareAloneReportsTheStatusAgain()
{
    QVERIFY(writeAndWaitUntilRead("Result=5\nFirmware=999\n"));
    QCoreApplication::processEvents();
    const Reports reports(listener);
    QVERIFY(writeAndWaitUntilRead("Result=5\nFirmware=1\n"));
    QTRY_COMPARE_WITH_TIMEOUT(reports.values.size(), 1, patienceMs);
    QCOMPARE(reports.values.first(), 5);
    QCOMPARE(listener->firmware.load(), 1);
}

void TestStatusListener::statusAndFirmwareAreTwoReports()
{
    const Reports reports(listener);
    QVERIFY(writeAndWaitUntilRead("Result=6\nFirmware=2\n"));
    QTRY_COMPARE_WITH_TIMEOUT(reports.values.size(), 2, patienceMs);
    QCOMPARE(reports.values.first(), 6);
    QCOMPARE(reports.values.last(), 6);
}

void TestStatusListener::linesAreParsed_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("status");
    QTest::addColumn<int>("firmware");
    const int same = startStatus;
    QTest::newRow("both") << QByteArray("Result=-6\nFirmware=1\n") << -6 << 1;
    QTest::newRow("carriage returns") << QByteArray("Result=-6\r\nFirmware=1\r\n") << -6 << 1;
    QTest::newRow("no line end") << QByteArray("Result=12") << 12 << 999;
    QTest::newRow("no prefixes") << QByteArray("8\n3\n") << 8 << 3;
    QTest::newRow("blanks") << QByteArray("  Result= 8 \n Firmware= +3\n") << 8 << 3;
    QTest::newRow("further lines") << QByteArray("Result=8\nFirmware=3\nResult=9\n") << 8 << 3;
    QTest::newRow("letters") << QByteArray("Result=abc\nFirmware=3\n") << same << 3;
    QTest::newRow("firmware letters") << QByteArray("Result=8\nFirmware=x\n") << 8 << 999;
    QTest::newRow("prefix twice") << QByteArray("Result=Result=5\nFirmware=4\n") << same << 4;
    QTest::newRow("prefix in lower case") << QByteArray("result=5\nFirmware=4\n") << same << 4;
    QTest::newRow("prefix inside") << QByteArray("-Result=5\nFirmware=4\n") << -5 << 4;
    QTest::newRow("fraction") << QByteArray("Result=5.0\nFirmware=4\n") << same << 4;
    QTest::newRow("hexadecimal") << QByteArray("Result=0x5\nFirmware=4\n") << same << 4;
    QTest::newRow("too large") << QByteArray("Result=2147483648\nFirmware=4\n") << same << 4;
    QTest::newRow("smallest") << QByteArray("Result=-2147483648\nFirmware=4\n") << INT_MIN << 4;
    QTest::newRow("half a line") << QByteArray("Result=\nFirmware=4\n") << same << 4;
    QTest::newRow("NUL inside") << QByteArray("Result=5\0abc\nFirmware=4\n", 23) << same << 4;
    QTest::newRow("blank first line") << QByteArray("\nFirmware=4\n") << same << 4;
    QTest::newRow("firmware in the first line") << QByteArray("Firmware=4\n") << same << 999;
    QTest::newRow("empty") << QByteArray() << same << 999;
}

void TestStatusListener::linesAreParsed()
{
    QFETCH(QByteArray, text);
    QFETCH(int, status);
    QFETCH(int, firmware);
    QVERIFY(writeAndWaitUntilRead(text));
    QCOMPARE(listener->currentStatus(), status);
    QCOMPARE(listener->firmware.load(), firmware);
}

void TestStatusListener::problemKeepsNotReady()
{
    listener->injectStatus(StatusNotReady);
    QVERIFY(write("Result=-1\n"));
    const Reports reports(listener);
    listener->resetWithProblem();
    QCOMPARE(listener->currentStatus(), -1);
    QVERIFY(!QFile::exists(path));
    QVERIFY(waitForEmptyRound());
    QCOMPARE(reports.values.size(), 0);
}

void TestStatusListener::problemIsAnnouncedAtOnceAndFileDeleted()
{
    QVERIFY(writeAndWaitUntilRead("Result=40\n"));
    const Reports reports(listener);
    listener->resetWithProblem();
    // No event loop ran since: the signal came within the call.
    QCOMPARE(reports.values.size(), 1);
    QCOMPARE(reports.values.first(), -10);
    QCOMPARE(listener->currentStatus(), -10);
    QVERIFY(!QFile::exists(path));
    QCOMPARE(log->count(QStringLiteral("vireon-main crashed, notifying Ui status:  40")), 1);
}

void TestStatusListener::reportOnItsWayComesBeforeTheProblem()
{
    const Reports reports(listener);
    QVERIFY(writeAndWaitUntilRead("Result=5\n")); // queued, and not delivered yet
    QCOMPARE(reports.values.size(), 0);
    listener->resetWithProblem();
    QCoreApplication::processEvents();
    QCOMPARE(reports.values.size(), 2);
    QCOMPARE(reports.values.at(0), 5);
    QCOMPARE(reports.values.at(1), -10);
}

void TestStatusListener::reportOnItsWayStaysBehindAtNotReady()
{
    const Reports reports(listener);
    QVERIFY(writeAndWaitUntilRead("Result=-1\n"));
    listener->resetWithProblem();
    QCOMPARE(reports.values.size(), 0);
    QCoreApplication::processEvents();
    QCOMPARE(reports.values.size(), 1);
    QCOMPARE(reports.values.first(), -1);
}

void TestStatusListener::injectedStatusIsComparedWithTheFile()
{
    const Reports reports(listener);
    listener->injectStatus(StatusStarted);
    QCOMPARE(reports.values.size(), 1);
    QCOMPARE(reports.values.first(), 1);
    QVERIFY(writeAndWaitUntilRead("Result=1\n"));
    QCoreApplication::processEvents();
    QCOMPARE(reports.values.size(), 1);
}

void TestStatusListener::injectedStatusIsOverriddenByTheNextChange()
{
    QVERIFY(writeAndWaitUntilRead("Result=5\n"));
    listener->injectStatus(StatusStarted);
    QVERIFY(!QFile::exists(path));
    QVERIFY(writeAndWaitUntilRead("Result=5\n"));
    QCOMPARE(listener->currentStatus(), 5);
}

void TestStatusListener::firmwareSurvivesAProblem()
{
    QVERIFY(writeAndWaitUntilRead("Result=5\nFirmware=1\n"));
    listener->resetWithProblem();
    QCOMPARE(listener->firmware.load(), 1);
}

void TestStatusListener::readersNeverRunSideBySide()
{
    for (int i = 0; i < 5; ++i)
        listener->injectStatus(i);
    // One reader alone misses the file every 300 ms; two would do so twice as often.
    QVERIFY(waitForEmptyRound());
    const auto rounds = [&] { return log->linesWith(QStringLiteral("Could not open")); };
    log->clear();
    QTRY_VERIFY_WITH_TIMEOUT(rounds().size() >= 4, patienceMs);
    QVERIFY(rounds().at(3).ms - rounds().at(0).ms >= 900);
}

void TestStatusListener::readerWithoutAThreadIsNotWaitedFor()
{
    QVERIFY(waitForEmptyRound()); // the reader has begun
    log->clear();
    const Reports reports(listener);
    {
        const NoNewThreads none;
        listener->resetWithProblem();
        // The first one's reader was there to be waited for; with a wait for the second one's this
        // never returns.
        listener->resetWithProblem();
        listener->injectStatus(startStatus);
    }
    QCOMPARE(reports.values, (QVector<int> {-10, -10, startStatus}));
    QCOMPARE(log->count(QStringLiteral("QThread::start: Thread creation error")), 3);
    QCOMPARE(log->count(QStringLiteral("start reading status file")), 0);
    // The next call reads again.
    listener->injectStatus(startStatus);
    QVERIFY(writeAndWaitUntilRead("Result=5\n"));
    QCOMPARE(listener->currentStatus(), 5);
}

void TestStatusListener::missingFileIsLogged()
{
    QVERIFY(waitForEmptyRound());
    QCOMPARE(log->linesWith(QStringLiteral("Could not open")).first().text,
             QStringLiteral("Could not open the file! \"%1\"").arg(path));
}

void TestStatusListener::whatIsNoFileIsPassedOver_data()
{
    QTest::addColumn<QString>("kind");
    for (const char* kind : {"directory", "pipe", "dangling link", "unreadable file"})
        QTest::newRow(kind) << QString::fromLatin1(kind);
}

void TestStatusListener::whatIsNoFileIsPassedOver()
{
    QFETCH(QString, kind);
    const QByteArray name = QFile::encodeName(path);
    if (kind == QLatin1String("directory"))
        QVERIFY(QDir().mkdir(path));
    else if (kind == QLatin1String("pipe"))
        QVERIFY(mkfifo(name.constData(), 0600) == 0);
    else if (kind == QLatin1String("dangling link"))
        QVERIFY(QFile::link(folder.filePath(QStringLiteral("nowhere")), path));
    else
        QVERIFY(write("Result=5\n") && chmod(name.constData(), 0) == 0);
    // Permissions bind the reader that is started now, also when root runs the tests.
    const PermissionChecks checks;
    StatusListener* const before = listener;
    if (kind == QLatin1String("unreadable file")) {
        before->injectStatus(startStatus); // deletes the file, and its reader is bound
        QVERIFY(write("Result=5\n") && chmod(name.constData(), 0) == 0);
    }
    const bool passedOver = waitForEmptyRound();
    QDir().rmdir(path);
    QFile::remove(path);
    QVERIFY(passedOver);
    QCOMPARE(listener->currentStatus(), startStatus);
}

void TestStatusListener::overlongLinesAreIgnored()
{
    QVERIFY(writeAndWaitUntilRead("Result=" + QByteArray(5000, '0') + "5\nFirmware=3\n"));
    QCOMPARE(listener->currentStatus(), startStatus);
    QCOMPARE(listener->firmware.load(), 999);
    QVERIFY(writeAndWaitUntilRead("Result=8\nFirmware=" + QByteArray(5000, '0') + "3\n"));
    QCOMPARE(listener->currentStatus(), 8);
    QCOMPARE(listener->firmware.load(), 999);
}

void TestStatusListener::hugeFileCostsNothing()
{
    const QString huge = path + QStringLiteral(".huge");
    QFile file(huge);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.resize(Q_INT64_C(4) << 30)); // sparse: one line of NUL bytes, 4 GiB
    file.close();
    const qint64 before = residentKiB();
    QVERIFY(moveOver(huge, path));
    QVERIFY(!QTest::qWaitFor([&] { return listener->currentStatus() != startStatus; }, 1000));
    QVERIFY(residentKiB() - before < 100 * 1024);
    listener->injectStatus(1); // the reader still answers
    QVERIFY(writeAndWaitUntilRead("Result=8\n"));
    QCOMPARE(listener->currentStatus(), 8);
}

void TestStatusListener::endsWithTheWorkers()
{
    WorkerThread::stopAll();
    QVERIFY(WorkerThread::waitForAll(patienceMs));
    delete listener;
}

QTEST_GUILESS_MAIN(TestStatusListener)
#include "tst_statuslistener.moc"
