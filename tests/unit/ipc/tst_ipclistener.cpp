#include "base/workerthread.h"
#include "ipc/ipclistener.h"
#include "settings/globalsettings.h"
#include "support/files.h"
#include "support/logrecorder.h"
#include "support/patience.h"
#include "support/permissionchecks.h"

#include <QtTest>

#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <thread>
#include <vector>

namespace {

struct Row
{
    char character;
    int code;
    const char* logText;
};

const Row rows[] = {
    {'0', 16, "IPC: b"},  {'1', 110, "IPC: 1"}, {'2', 111, "IPC: 2"}, {'3', 112, "IPC: 3"},
    {'4', 21, "IPC: 21"}, {'5', 22, "IPC: 22"}, {'6', 23, "IPC: 23"}, {'7', 24, "IPC: 24"},
    {'8', 17, "IPC: d"},  {'9', 113, "IPC: 9"}, {'Q', 25, "IPC: 25"}, {'a', 1, "IPC: a"},
    {'b', 108, "IPC: b"}, {'c', 107, "IPC: c"}, {'d', 104, "IPC: d"}, {'e', 7, "IPC: e"},
    {'f', 4, "IPC: f"},   {'g', 105, "IPC: g"}, {'h', 8, "IPC: h"},   {'i', 9, "IPC: i"},
    {'j', 101, "IPC: j"}, {'k', 14, "IPC: k"},  {'l', 100, "IPC: l"}, {'m', 0, "IPC: m"},
    {'n', 109, "IPC: n"}, {'o', 103, "IPC: o"}, {'p', 6, "IPC: p"},   {'q', 12, "IPC: q"},
    {'r', 15, "IPC: r"},  {'s', 3, "IPC: s"},   {'t', 2, "IPC: t"},   {'u', 102, "IPC: u"},
    {'v', 5, "IPC: v"},   {'w', 11, "IPC: w"},  {'x', 13, "IPC: x"},  {'y', 10, "IPC: i"},
    {'z', 106, "IPC: z"},
};

/// The sender is a process of its own; it makes the file first and fills it then. Whether it could.
bool send(const QString& path, const QByteArray& content)
{
    QProcess sender;
    sender.start("/bin/sh", {"-c", "cat >\"$0\"", path});
    sender.write(content);
    sender.closeWriteChannel();
    return sender.waitForFinished(patienceMs) && sender.exitCode() == 0;
}

qint64 peakMemoryKiB()
{
    const QByteArray status = contentOf("/proc/self/status");
    const int at = status.indexOf("VmHWM:");
    return status.mid(at + 6, status.indexOf("kB", at) - at - 6).trimmed().toLongLong();
}

} // namespace

class TestIpcListener : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void cleanupTestCase();

    void metaObjectIsOneSignalAndOneSlot();
    void instanceIsMadeOnce();
    void everyCommandHasItsCodeAndText_data();
    void everyCommandHasItsCodeAndText();
    void otherCharactersAreDroppedSilently_data();
    void otherCharactersAreDroppedSilently();
    void onlyTheFirstTrimmedCharacterCounts_data();
    void onlyTheFirstTrimmedCharacterCounts();
    void emitsThenLogsThenDeletes();
    void logsPathAndLine();
    void emptyFirstLineStays_data();
    void emptyFirstLineStays();
    void emptyFileIsReadEverySixtyMs();
    void lineOfAnyLengthCostsTheSame_data();
    void lineOfAnyLengthCostsTheSame();
    void whatIsNoReadableFileIsTriedAgain_data();
    void whatIsNoReadableFileIsTriedAgain();
    void linkLeadsToTheCommand();
    void leftoverIsReportedAsOneThousand_data();
    void leftoverIsReportedAsOneThousand();
    void emptyLeftoverStays_data();
    void emptyLeftoverStays();
    void writeProtectedLeftoverIsACommand();
    void firstReplyWaitsForThePause();
    void replyIsExactlyOneCharacter();
    void replyThatCannotBeWrittenIsTold();
    void fuzzerSeedsGiveTheirCommand_data();
    void fuzzerSeedsGiveTheirCommand();
    void processEndReleasesAReplyOnTheLoopsThread();

private:
    IpcListener* makeListener();
    /// Whether its loop has begun.
    bool startListener();

    /// Whether the file was taken away; what its command sets off has happened then.
    bool sendAndWait(const QByteArray& content);

    std::unique_ptr<QTemporaryDir> dir;
    std::unique_ptr<LogRecorder> log;
    QString commandPath;
    QString replyPath;
    QVector<int> codes; ///< received, in this thread
    std::vector<std::unique_ptr<IpcListener>> listeners; ///< their loops end with the process only
};

void TestIpcListener::init()
{
    dir = std::make_unique<QTemporaryDir>();
    QVERIFY(dir->isValid());
    commandPath = dir->filePath("fifo1");
    replyPath = dir->filePath("refifo");
    GS::instance()->fifo1Path = commandPath;
    GS::instance()->refifoPath = replyPath;
    log = std::make_unique<LogRecorder>();
    codes.clear();
}

void TestIpcListener::cleanup()
{
    log.reset();
    dir.reset();
}

void TestIpcListener::cleanupTestCase()
{
    WorkerThread::stopAll();
    QVERIFY(WorkerThread::waitForAll(patienceMs));
    listeners.clear();
}

IpcListener* TestIpcListener::makeListener()
{
    listeners.push_back(std::make_unique<IpcListener>());
    IpcListener* listener = listeners.back().get();
    connect(listener, &IpcListener::received, this, [this](int id) { codes.append(id); });
    return listener;
}

bool TestIpcListener::startListener()
{
    makeListener();
    return QTest::qWaitFor([this] { return log->count("Fifo position:") == 1; }, patienceMs);
}

bool TestIpcListener::sendAndWait(const QByteArray& content)
{
    const bool taken = send(commandPath, content)
        && QTest::qWaitFor([this] { return !QFile::exists(commandPath); }, patienceMs);
    // The file goes last: what was emitted is in this thread's queue by now.
    QCoreApplication::processEvents();
    return taken;
}

void TestIpcListener::metaObjectIsOneSignalAndOneSlot()
{
    const QMetaObject& meta = IpcListener::staticMetaObject;
    QCOMPARE(meta.className(), "IpcListener");
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 2);
    const QMetaMethod first = meta.method(meta.methodOffset());
    QCOMPARE(first.methodType(), QMetaMethod::Signal);
    QCOMPARE(first.methodSignature(), QByteArray("received(int)"));
    const QMetaMethod second = meta.method(meta.methodOffset() + 1);
    QCOMPARE(second.methodType(), QMetaMethod::Slot);
    QCOMPARE(second.methodSignature(), QByteArray("listenToFifos()"));
}

void TestIpcListener::instanceIsMadeOnce()
{
    IpcListener* first = IpcListener::instance();
    listeners.emplace_back(first);
    QVERIFY(!first->parent());
    QCOMPARE(IpcListener::instance(), first);
    QTRY_COMPARE_WITH_TIMEOUT(log->count("Fifo position:"), 1, patienceMs);
}

void TestIpcListener::everyCommandHasItsCodeAndText_data()
{
    QTest::addColumn<char>("character");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("logText");
    for (const Row& row : rows)
        QTest::addRow("%c", row.character) << row.character << row.code << QString(row.logText);
}

void TestIpcListener::everyCommandHasItsCodeAndText()
{
    QFETCH(char, character);
    QFETCH(int, code);
    QFETCH(QString, logText);
    QVERIFY(startListener());
    QVERIFY(sendAndWait(QByteArray(1, character)));
    QCOMPARE(codes, QVector<int> {code});
    const auto texts = log->linesWith("IPC:");
    QCOMPARE(texts.size(), 1);
    QCOMPARE(texts.front().text, logText);
    QCOMPARE(texts.front().type, QtDebugMsg);
}

void TestIpcListener::otherCharactersAreDroppedSilently_data()
{
    QTest::addColumn<QByteArray>("content");
    QByteArray known;
    for (const Row& row : rows)
        known.append(row.character);
    for (char character = '!'; character <= '~'; ++character) {
        if (!known.contains(character))
            QTest::addRow("%c", character) << QByteArray(1, character);
    }
    QTest::newRow("zero byte") << QByteArray("\0m", 2);
    QTest::newRow("two bytes") << QByteArray("\u00e4m");
    QTest::newRow("three bytes") << QByteArray("\u65e5m");
    QTest::newRow("four bytes") << QByteArray("\U0001f600m");
    QTest::newRow("not UTF-8") << QByteArray("\xe4m");
    QTest::newRow("full-width m") << QByteArray("\uff4d");
    QTest::newRow("blanks only") << QByteArray("  \n");
    QTest::newRow("blanks, then a command line") << QByteArray(" \t \nm\n");
}

void TestIpcListener::otherCharactersAreDroppedSilently()
{
    QFETCH(QByteArray, content);
    QVERIFY(startListener());
    QVERIFY(sendAndWait(content));
    QCOMPARE(codes, QVector<int> {});
    QCOMPARE(log->count("IPC:"), 0);
    QCOMPARE(log->count("read command from"), 1);
}

void TestIpcListener::onlyTheFirstTrimmedCharacterCounts_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("code");
    QTest::newRow("leading blanks") << QByteArray("  t\n") << 2;
    QTest::newRow("leading tab") << QByteArray("\tt") << 2;
    QTest::newRow("leading wide blank") << QByteArray("\u3000t") << 2;
    QTest::newRow("trailing blanks") << QByteArray("t   ") << 2;
    QTest::newRow("carriage return") << QByteArray("t\r\n") << 2;
    QTest::newRow("two characters") << QByteArray("tm") << 2;
    QTest::newRow("two words") << QByteArray("t m") << 2;
    QTest::newRow("several lines") << QByteArray("t\nm\ne\n") << 2;
    QTest::newRow("non-ASCII behind") << QByteArray("t\u00e4") << 2;
}

void TestIpcListener::onlyTheFirstTrimmedCharacterCounts()
{
    QFETCH(QByteArray, content);
    QFETCH(int, code);
    QVERIFY(startListener());
    QVERIFY(sendAndWait(content));
    QCOMPARE(codes, QVector<int> {code});
}

void TestIpcListener::emitsThenLogsThenDeletes()
{
    QVERIFY(startListener());
    std::atomic<bool> textBeforeSignal {true};
    std::atomic<bool> fileBeforeSignal {false};
    connect(
        listeners.back().get(), &IpcListener::received, listeners.back().get(),
        [&] {
            textBeforeSignal = log->count("IPC:") > 0;
            fileBeforeSignal = QFile::exists(commandPath);
        },
        Qt::DirectConnection);
    log->hold("IPC: m");
    QVERIFY(send(commandPath, "m"));
    QTRY_COMPARE_WITH_TIMEOUT(log->count("IPC: m"), 1, patienceMs);
    QVERIFY(!textBeforeSignal);
    QVERIFY(fileBeforeSignal);
    QVERIFY(QFile::exists(commandPath));
    log->release();
    QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(commandPath), patienceMs);
}

void TestIpcListener::logsPathAndLine()
{
    QVERIFY(startListener());
    QVERIFY(sendAndWait(" m n \nsecond"));
    QStringList texts;
    for (const LogRecorder::Line& line : log->lines())
        texts.append(line.text.simplified());
    const QString quoted = '"' + commandPath + '"';
    QVERIFY(texts.contains("Fifo position: " + quoted));
    QVERIFY(texts.contains("ipc read: \" m n \""));
    QVERIFY(texts.contains("read command from " + quoted));
}

void TestIpcListener::emptyFirstLineStays_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty file") << QByteArray();
    QTest::newRow("command in the second line") << QByteArray("\nm");
    QTest::newRow("carriage return alone") << QByteArray("\r\nm");
}

void TestIpcListener::emptyFirstLineStays()
{
    QFETCH(QByteArray, content);
    QVERIFY(startListener());
    QVERIFY(send(commandPath, content));
    QTRY_VERIFY_WITH_TIMEOUT(log->count("ipc read:") >= 3, patienceMs);
    QCOMPARE(contentOf(commandPath), content);
    QCOMPARE(log->count("read command from"), 0);
    QCOMPARE(codes, QVector<int> {});
    QVERIFY(sendAndWait("e"));
    QCOMPARE(codes, QVector<int> {7});
}

void TestIpcListener::emptyFileIsReadEverySixtyMs()
{
    QVERIFY(startListener());
    QVERIFY(send(commandPath, {}));
    QTRY_VERIFY_WITH_TIMEOUT(log->count("ipc read:") >= 6, patienceMs);
    const auto reads = log->linesWith("ipc read:");
    QVERIFY(reads[5].ms - reads[0].ms >= 5 * 60 - 1);
}

void TestIpcListener::lineOfAnyLengthCostsTheSame_data()
{
    QTest::addColumn<char>("character");
    QTest::addColumn<QVector<int>>("expected");
    QTest::newRow("commands") << 'm' << QVector<int> {0};
    QTest::newRow("blanks") << ' ' << QVector<int> {};
}

void TestIpcListener::lineOfAnyLengthCostsTheSame()
{
    QFETCH(char, character);
    QFETCH(QVector<int>, expected);
    QVERIFY(startListener());
    const QString aside = dir->filePath("aside");
    {
        QFile file(aside);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        const QByteArray mebibyte(1048576, character);
        for (int i = 0; i < 100; ++i)
            QCOMPARE(file.write(mebibyte), qint64 {1048576});
    }
    const qint64 before = peakMemoryKiB();
    QVERIFY(before > 0);
    QVERIFY(QFile::rename(aside, commandPath));
    QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(commandPath), patienceMs);
    QCoreApplication::processEvents();
    QCOMPARE(codes, expected);
    QVERIFY2(peakMemoryKiB() - before < 16384, "the whole line was read");
    QVERIFY(log->linesWith("ipc read:").front().text.size() < 66000);
}

void TestIpcListener::whatIsNoReadableFileIsTriedAgain_data()
{
    QTest::addColumn<QString>("what");
    for (const char* what : {"directory", "pipe", "dangling link", "unreadable file"})
        QTest::newRow(what) << QString(what);
}

void TestIpcListener::whatIsNoReadableFileIsTriedAgain()
{
    QFETCH(QString, what);
    const QByteArray path = QFile::encodeName(commandPath);
    if (what == "directory") {
        QVERIFY(QDir().mkdir(commandPath));
    } else if (what == "pipe") {
        QCOMPARE(mkfifo(path.constData(), 0600), 0);
    } else if (what == "dangling link") {
        QVERIFY(QFile::link(dir->filePath("nowhere"), commandPath));
    } else {
        QVERIFY(writeFile(commandPath, "m"));
        QVERIFY(QFile::setPermissions(commandPath, {}));
    }
    const PermissionChecks checks;
    QVERIFY(startListener());
    // Time for the left-over test and three passes; there is nothing to see them by.
    QTest::qWait(250);
    QCOMPARE(codes, QVector<int> {});
    QCOMPARE(log->count("ipc read:"), 0);
    struct stat status
    {
    };
    QCOMPARE(lstat(path.constData(), &status), 0);
    QCOMPARE(std::remove(path.constData()), 0);
    QVERIFY(!QFile::exists(dir->filePath("nowhere")));
    QVERIFY(sendAndWait("e"));
    QCOMPARE(codes, QVector<int> {7});
}

void TestIpcListener::linkLeadsToTheCommand()
{
    QVERIFY(startListener());
    const QString target = dir->filePath("target");
    QVERIFY(writeFile(target, "t"));
    QVERIFY(QFile::link(target, commandPath));
    QTRY_VERIFY_WITH_TIMEOUT(!QFileInfo(commandPath).isSymLink(), patienceMs);
    QCoreApplication::processEvents();
    QCOMPARE(codes, QVector<int> {2});
    QCOMPARE(contentOf(target), QByteArray("t"));
}

void TestIpcListener::leftoverIsReportedAsOneThousand_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("command") << QByteArray("m");
    QTest::newRow("no command") << QByteArray("T\n");
    QTest::newRow("blanks") << QByteArray("  \n");
    QTest::newRow("100 KiB line") << QByteArray(100 * 1024, 'm');
}

void TestIpcListener::leftoverIsReportedAsOneThousand()
{
    QFETCH(QByteArray, content);
    QVERIFY(send(commandPath, content));
    // The loop is held at its first line until this test is connected.
    log->hold("Fifo position:");
    makeListener();
    log->release();
    QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(commandPath), patienceMs);
    QVERIFY(sendAndWait("e"));
    QCOMPARE(codes, (QVector<int> {1000, 7}));
    QCOMPARE(log->count("read command from"), 1);
}

void TestIpcListener::emptyLeftoverStays_data()
{
    emptyFirstLineStays_data();
}

void TestIpcListener::emptyLeftoverStays()
{
    QFETCH(QByteArray, content);
    QVERIFY(send(commandPath, content));
    log->hold("Fifo position:");
    makeListener();
    log->release();
    QTRY_VERIFY_WITH_TIMEOUT(log->count("ipc read:") >= 3, patienceMs);
    QCOMPARE(contentOf(commandPath), content);
    QCOMPARE(codes, QVector<int> {});
}

void TestIpcListener::writeProtectedLeftoverIsACommand()
{
    QVERIFY(writeFile(commandPath, "m"));
    QVERIFY(QFile::setPermissions(commandPath, QFile::ReadOwner));
    const PermissionChecks checks;
    log->hold("Fifo position:");
    makeListener();
    log->release();
    QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(commandPath), patienceMs);
    QCoreApplication::processEvents();
    QCOMPARE(codes, QVector<int> {0});
}

void TestIpcListener::firstReplyWaitsForThePause()
{
    QVERIFY(startListener());
    IpcListener* listener = listeners.back().get();
    std::atomic<int> replies {0};
    const auto reply = [&] {
        listener->writeDone();
        ++replies;
    };

    log->hold("ipc read:");
    QVERIFY(send(commandPath, "e"));
    QTRY_VERIFY_WITH_TIMEOUT(log->count("ipc read:") == 1, patienceMs);
    std::thread first(reply);
    QTest::qWait(200);
    const bool waits = replies == 0 && !QFile::exists(replyPath);
    log->release();
    first.join();
    QVERIFY(waits);
    QCOMPARE(contentOf(replyPath), QByteArray("x"));
    QTRY_COMPARE_WITH_TIMEOUT(codes, QVector<int> {7}, patienceMs);

    log->hold("ipc read:");
    QVERIFY(send(commandPath, "t"));
    QTRY_VERIFY_WITH_TIMEOUT(log->count("ipc read:") == 2, patienceMs);
    QVERIFY(QFile::remove(replyPath));
    reply();
    QCOMPARE(contentOf(replyPath), QByteArray("x"));
    QVERIFY(QFile::exists(commandPath));
    log->release();
    QTRY_COMPARE_WITH_TIMEOUT(codes, (QVector<int> {7, 2}), patienceMs);
}

void TestIpcListener::replyIsExactlyOneCharacter()
{
    QVERIFY(startListener());
    QVERIFY(writeFile(replyPath, "an older and longer reply\n"));
    for (int i = 0; i < 3; ++i) {
        listeners.back()->writeDone();
        QCOMPARE(contentOf(replyPath), QByteArray("x"));
        QVERIFY(sendAndWait("e"));
    }
    QCOMPARE(codes, (QVector<int> {7, 7, 7}));
}

void TestIpcListener::replyThatCannotBeWrittenIsTold()
{
    QVERIFY(startListener());
    QVERIFY(QDir().mkdir(replyPath));
    const QByteArray outputPath = QFile::encodeName(dir->filePath("output"));
    std::fflush(stdout);
    const int savedOutput = dup(STDOUT_FILENO);
    const int output = open(outputPath.constData(), O_CREAT | O_WRONLY, 0600);
    dup2(output, STDOUT_FILENO);
    listeners.back()->writeDone();
    std::fflush(stdout);
    dup2(savedOutput, STDOUT_FILENO);
    close(output);
    close(savedOutput);
    QCOMPARE(contentOf(outputPath),
             QByteArray("cannot write to fifo! Folder is ") + replyPath.toUtf8() + ", exitting.\n");
    QVERIFY(sendAndWait("e"));
    QCOMPARE(codes, QVector<int> {7});
}

void TestIpcListener::fuzzerSeedsGiveTheirCommand_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QVector<int>>("expected");
    QTest::addColumn<bool>("stays");
    struct Seed
    {
        QVector<int> codes;
        bool stays; ///< the file, whose first line is empty
    };
    const QMap<QString, Seed> results = {
        {"blankline", {{}, true}}, {"blanks", {{2}, false}}, {"command", {{0}, false}},
        {"crlf", {{25}, false}},   {"empty", {{}, true}},    {"umlaut", {{}, false}},
        {"utf16", {{0}, false}},   {"zero", {{}, false}},
    };
    const QDir seeds(VIREON_SOURCE_DIR "/tests/fuzz/seeds/mailbox");
    const QStringList names = seeds.entryList(QDir::Files, QDir::Name);
    QCOMPARE(names, QStringList(results.keys())); // a new seed needs its result
    for (const QString& name : names) {
        const Seed& seed = results[name];
        QTest::newRow(qPrintable(name))
            << contentOf(seeds.filePath(name)) << seed.codes << seed.stays;
    }
}

void TestIpcListener::fuzzerSeedsGiveTheirCommand()
{
    QFETCH(QByteArray, content);
    QFETCH(QVector<int>, expected);
    QFETCH(bool, stays);
    QVERIFY(startListener());
    if (!stays) {
        QVERIFY(sendAndWait(content));
    } else {
        QVERIFY(send(commandPath, content));
        QTRY_VERIFY_WITH_TIMEOUT(log->count("ipc read:") >= 2, patienceMs);
    }
    QCOMPARE(QFile::exists(commandPath), stays);
    QCOMPARE(codes, expected);
}

void TestIpcListener::processEndReleasesAReplyOnTheLoopsThread()
{
    log->hold("Fifo position:");
    IpcListener* listener = makeListener();
    std::atomic<bool> waiting {false};
    connect(
        listener, &IpcListener::received, listener,
        [&] {
            waiting = true;
            listener->writeDone();
        },
        Qt::DirectConnection);
    log->release();
    QTRY_COMPARE_WITH_TIMEOUT(log->count("Fifo position:"), 1, patienceMs);
    QVERIFY(send(commandPath, {}));
    QTRY_VERIFY_WITH_TIMEOUT(log->count("ipc read:") >= 1, patienceMs);
    QVERIFY(send(commandPath, "e"));
    QTRY_VERIFY_WITH_TIMEOUT(waiting, patienceMs);
    // There is no way back from here: this must stay the last test.
    WorkerThread::stopAll();
    QVERIFY(WorkerThread::waitForAll(patienceMs));
    QCOMPARE(contentOf(replyPath), QByteArray("x"));
}

QTEST_GUILESS_MAIN(TestIpcListener)
#include "tst_ipclistener.moc"
