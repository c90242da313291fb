#include "app/runguard.h"

#include "subjects/subjectprocess.h"

#include <QtTest>

#include <memory>
#include <vector>

namespace {

const QString theKey = QStringLiteral("tst_runguard");

class Copy : public SubjectProcess
{
public:
    explicit Copy(const QStringList& prefix = {}, const QString& key = theKey)
        : SubjectProcess(QStringLiteral("guardsubject"), {key}, prefix)
    {
    }
};

} // namespace

class TestRunGuard : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void secondCopyIsRefusedUntilTheFirstEnds();
    void nextCopyWinsAfterTheFirstWasKilled();
    void holderSeesNoOther();
    void differentKeysDoNotBlock();

private:
    std::unique_ptr<QTemporaryDir> temporary;
    std::unique_ptr<QTemporaryDir> working;
};

void TestRunGuard::init()
{
    temporary = std::make_unique<QTemporaryDir>();
    working = std::make_unique<QTemporaryDir>();
    qputenv("TMPDIR", QFile::encodeName(temporary->path()));
    QDir::setCurrent(working->path());
}

void TestRunGuard::cleanup()
{
    QDir::setCurrent(QDir::homePath());
    qputenv("TMPDIR", QFile::encodeName(QDir::homePath() + "/tmp"));
}

void TestRunGuard::secondCopyIsRefusedUntilTheFirstEnds()
{
    Copy first;
    QCOMPARE(first.ask("try"), QByteArray("won"));
    Copy second;
    QCOMPARE(second.ask("try"), QByteArray("refused"));
    QVERIFY(second.ends());
    QCOMPARE(first.ask("end"), QByteArray("ended"));
    QVERIFY(first.ends());
    Copy third;
    QCOMPARE(third.ask("try"), QByteArray("won"));
}

void TestRunGuard::nextCopyWinsAfterTheFirstWasKilled()
{
    Copy first;
    QCOMPARE(first.ask("try"), QByteArray("won"));
    first.killHard();
    Copy second;
    QCOMPARE(second.ask("try"), QByteArray("won"));
}

void TestRunGuard::holderSeesNoOther()
{
    RunGuard guard(theKey);
    QVERIFY(guard.tryToRun());
    QVERIFY(!guard.isAnotherRunning());
    Copy other;
    QCOMPARE(other.ask("ask"), QByteArray("running"));
    guard.release();
    QCOMPARE(other.ask("ask"), QByteArray("free"));
    QVERIFY(!guard.isAnotherRunning());
}

void TestRunGuard::differentKeysDoNotBlock()
{
    RunGuard guard(theKey);
    QVERIFY(guard.tryToRun());
    RunGuard other(theKey + "2");
    QVERIFY(!other.isAnotherRunning());
    QVERIFY(other.tryToRun());
}

QTEST_GUILESS_MAIN(TestRunGuard)
#include "tst_runguard.moc"
