#include "ctl/reportarchive.h"
#include "ctl/supportreport.h"
#include "support/files.h"

#include <QtTest>

#include <sys/stat.h>

namespace {

const QList<ReportFile> files {{"one.txt", "first", QByteArray("1\n")},
                               {"config/two.conf", "second", QByteArray("22")},
                               {"three", "not there", std::nullopt}};

QByteArray outputOf(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished(-1);
    return process.exitCode() == 0 ? process.readAllStandardOutput() : "failed";
}

} // namespace

class TestReportArchive : public QObject
{
    Q_OBJECT

private slots:
    void init() { directory.reset(new QTemporaryDir); }
    void cleanup() { qputenv("PATH", searchPath); }

    void holdsWhatIsThere();
    void isForItsUserAlone();
    void whatIsThereStays_data();
    void whatIsThereStays();
    void missingDirectoryIsTold();
    void failedPackerLeavesNothing_data();
    void failedPackerLeavesNothing();
    void listTellsEachFile();

private:
    QString path() const { return directory->filePath("a: b.tar.gz"); }

    std::unique_ptr<QTemporaryDir> directory;
    const QByteArray searchPath = qgetenv("PATH");
};

void TestReportArchive::holdsWhatIsThere()
{
    qputenv("TAR_OPTIONS", "--no-such-option");
    const QString fault = writeReportArchive(path(), files);
    qunsetenv("TAR_OPTIONS");
    QCOMPARE(fault, QString());
    QCOMPARE(QDir(directory->path()).entryList(QDir::Files | QDir::Hidden),
             QStringList("a: b.tar.gz"));
    const QByteArray names = outputOf("tar", {"--force-local", "-tzf", path()});
    QStringList members = QString::fromUtf8(names).split('\n', Qt::SkipEmptyParts);
    members.sort();
    QCOMPARE(members,
             QStringList({"vireon-report/", "vireon-report/config/",
                          "vireon-report/config/two.conf", "vireon-report/one.txt"}));
    QCOMPARE(outputOf("tar", {"--force-local", "-xzOf", path(), "vireon-report/config/two.conf"}),
             QByteArray("22"));
    const QByteArray details =
        outputOf("tar", {"--force-local", "--numeric-owner", "-tvzf", path()});
    QCOMPARE(details.count(" 0/0 "), 4);
}

void TestReportArchive::isForItsUserAlone()
{
    const mode_t before = umask(0);
    const QString fault = writeReportArchive(path(), files);
    umask(before);
    QCOMPARE(fault, QString());
    struct stat written = {};
    QCOMPARE(stat(QFile::encodeName(path()).constData(), &written), 0);
    QCOMPARE(written.st_mode & 0777U, 0600U);
}

void TestReportArchive::whatIsThereStays_data()
{
    QTest::addColumn<bool>("link");
    QTest::newRow("file") << false;
    QTest::newRow("link that leads nowhere") << true;
}

void TestReportArchive::whatIsThereStays()
{
    QFETCH(bool, link);
    if (link)
        QVERIFY(QFile::link(directory->filePath("nothing"), path()));
    else
        QVERIFY(writeFile(path(), "before"));
    const QString fault = path() + " is there already, and stays as it is";
    QCOMPARE(reasonAgainstArchive(path()), fault);
    QCOMPARE(writeReportArchive(path(), files), fault);
    QCOMPARE(QFileInfo(path()).isSymLink(), link);
    QCOMPARE(contentOf(path()), link ? QByteArray("cannot be read") : QByteArray("before"));
    QCOMPARE(QDir(directory->path()).entryList(QDir::Files | QDir::Hidden | QDir::System),
             QStringList("a: b.tar.gz"));
}

void TestReportArchive::missingDirectoryIsTold()
{
    const QString missing = directory->filePath("no/a.tar.gz");
    QCOMPARE(reasonAgainstArchive(missing),
             missing + " cannot be written: there is no such directory");
    QVERIFY(writeReportArchive(missing, files).startsWith(missing + " cannot be written: "));
}

void TestReportArchive::failedPackerLeavesNothing_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QString>("reason");
    QTest::newRow("disk full") << QByteArray("#!/bin/sh\necho no room\nexit 2\n") << "no room";
    QTest::newRow("killed") << QByteArray("#!/bin/sh\necho ended\nkill -9 $$\n") << "ended";
    QTest::newRow("none") << QByteArray() << "";
}

void TestReportArchive::failedPackerLeavesNothing()
{
    QFETCH(QByteArray, script);
    QFETCH(QString, reason);
    const QTemporaryDir programs;
    if (!script.isEmpty())
        QVERIFY(writeScript(programs.filePath("tar"), script));
    qputenv("PATH", QFile::encodeName(programs.path()));
    const QString fault = writeReportArchive(path(), files);
    QVERIFY2(fault.startsWith(path() + " cannot be written: " + reason), qPrintable(fault));
    QVERIFY(
        QDir(directory->path()).isEmpty(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden));
}

void TestReportArchive::listTellsEachFile()
{
    QCOMPARE(listReport(files),
             QString("  one.txt                  first, 2 bytes\n"
                     "  config/two.conf          second, 2 bytes\n"
                     "  three                    not there, not there\n"));
}

QTEST_GUILESS_MAIN(TestReportArchive)
#include "tst_reportarchive.moc"
