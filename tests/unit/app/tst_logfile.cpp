#include "app/logfile.h"

#include <QtTest>

#include <csignal>
#include <sys/resource.h>
#include <thread>
#include <vector>

namespace {

const QString line(30, 'x'); // 31 bytes with its break

/// Lets no file of the process grow beyond this many bytes, as on a full disk.
class FullDisk
{
public:
    explicit FullDisk(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &saved);
        const rlimit reduced {bytes, saved.rlim_max};
        setrlimit(RLIMIT_FSIZE, &reduced);
    }
    ~FullDisk() { setrlimit(RLIMIT_FSIZE, &saved); }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    rlimit saved {};
};

} // namespace

class TestLogFile : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        dir.reset(new QTemporaryDir);
        path = dir->filePath("log");
    }

    void linesAreAppended();
    void newOneBeginsAtTheLimit_data();
    void newOneBeginsAtTheLimit();
    void longLineHasAFileToItself();
    void fullDiskEndsTheWriting();
    void whatIsNoFileEndsTheWriting();
    void oldOneThatStaysEndsTheWriting();
    void threadsWriteWholeLines();

private:
    QByteArray content(const QString& suffix = {}) const
    {
        QFile file(path + suffix);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    std::unique_ptr<QTemporaryDir> dir;
    QString path;
};

void TestLogFile::linesAreAppended()
{
    LogFile(path, 2000, 1).write("first");
    LogFile(path, 2000, 1).write(QString::fromUtf8("second \u00e4"));
    QCOMPARE(QString::fromUtf8(content()), QString::fromUtf8("first\nsecond \u00e4\n"));
}

void TestLogFile::newOneBeginsAtTheLimit_data()
{
    QTest::addColumn<int>("kept");
    QTest::newRow("none") << 0;
    QTest::newRow("one") << 1;
    QTest::newRow("three") << 3;
}

void TestLogFile::newOneBeginsAtTheLimit()
{
    QFETCH(int, kept);
    LogFile log(path, 31 * 4, kept);
    for (int i = 0; i < 22; ++i)
        log.write(QString("%1").arg(i, 30));
    const auto first = [this](const QString& suffix) {
        return content(suffix).left(30).trimmed().toInt();
    };
    QCOMPARE(content().size(), 31 * 2);
    QCOMPARE(first({}), 20);
    QCOMPARE(QDir(dir->path()).entryList(QDir::Files).size(), kept + 1);
    for (int number = 1; number <= kept; ++number) {
        QCOMPARE(content(QString(".%1").arg(number)).size(), 31 * 4);
        QCOMPARE(first(QString(".%1").arg(number)), 20 - 4 * number);
    }
}

void TestLogFile::longLineHasAFileToItself()
{
    LogFile log(path, 100, 1);
    log.write(QString(500, 'y'));
    QCOMPARE(content().size(), 501);
    log.write(line);
    QCOMPARE(content().size(), 31);
    QCOMPARE(content(".1").size(), 501);
}

void TestLogFile::fullDiskEndsTheWriting()
{
    LogFile log(path, 100000, 1);
    {
        const FullDisk disk(31 * 10);
        for (int i = 0; i < 20; ++i)
            log.write(line);
    }
    QCOMPARE(content().size(), 31 * 10);
    log.write(line); // there is room again, but not for this one
    QCOMPARE(content().size(), 31 * 10);
}

void TestLogFile::whatIsNoFileEndsTheWriting()
{
    QVERIFY(QDir().mkdir(path));
    LogFile log(path, 100, 1);
    log.write(line);
    QCOMPARE(QDir(dir->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), 1);
}

void TestLogFile::oldOneThatStaysEndsTheWriting()
{
    QVERIFY(QDir().mkpath(path + ".1/in the way"));
    LogFile log(path, 31 * 4, 1);
    for (int i = 0; i < 9; ++i)
        log.write(line);
    QCOMPARE(content().size(), 31 * 4);
}

void TestLogFile::threadsWriteWholeLines()
{
    constexpr int threads = 4;
    constexpr int lines = 500;
    constexpr int kept = 40; // more than are begun
    {
        LogFile log(path, 400, kept);
        std::vector<std::thread> writers;
        for (int number = 0; number < threads; ++number) {
            writers.emplace_back([&log, number] {
                for (int i = 0; i < lines; ++i)
                    log.write(QString("%1 %2").arg(number).arg(i));
            });
        }
        for (std::thread& writer : writers)
            writer.join();
    }
    QByteArray all;
    for (int number = kept; number > 0; --number)
        all += content(QString(".%1").arg(number));
    QMap<QByteArray, int> next;
    for (const QByteArray& written : (all + content()).trimmed().split('\n')) {
        const QList<QByteArray> words = written.split(' ');
        QCOMPARE(words.size(), 2);
        QCOMPARE(words[1].toInt(), next[words[0]]++);
    }
    QCOMPARE(next.values(), QList<int>({lines, lines, lines, lines}));
}

QTEST_GUILESS_MAIN(TestLogFile)
#include "tst_logfile.moc"
