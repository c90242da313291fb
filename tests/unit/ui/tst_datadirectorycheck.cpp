#include "settings/globalsettings.h"
#include "ui/datadirectorycheck.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

/// What the user is told of a directory that cannot hold the program's files.
class TestDataDirectoryCheck : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void nothingIsSaidOfAGoodOne();
    void missingDocumentsDirectoryIsNamed();
    void missingOneCannotBeWrittenInto();
    void fileInItsPlaceCannotBeWrittenInto();

private:
    static QString notWritable();

    QTemporaryDir parent;
};

void TestDataDirectoryCheck::init()
{
    QVERIFY(parent.isValid());
    GS::instance()->documentsDir = parent.path() + QLatin1Char('/');
    GS::instance()->dataDir = parent.filePath(QString::fromLatin1(QTest::currentTestFunction()));
}

QString TestDataDirectoryCheck::notWritable()
{
    return QStringLiteral("Vireon cannot write into the directory \"%1\". "
                          "Change its owner or its permissions and start Vireon again.")
        .arg(GS::instance()->dataDir);
}

void TestDataDirectoryCheck::nothingIsSaidOfAGoodOne()
{
    QVERIFY(QDir().mkpath(GS::instance()->dataDir));
    QCOMPARE(DataDirectoryCheck::problem(), QString());
}

void TestDataDirectoryCheck::missingDocumentsDirectoryIsNamed()
{
    QVERIFY(QDir().mkpath(GS::instance()->dataDir));
    GS::instance()->documentsDir.clear();
    QCOMPARE(DataDirectoryCheck::problem(),
             QStringLiteral("Vireon needs the directory \"%1\", which does not exist. "
                            "Create it and start Vireon again.")
                 .arg(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)));
}

void TestDataDirectoryCheck::missingOneCannotBeWrittenInto()
{
    QCOMPARE(DataDirectoryCheck::problem(), notWritable());
}

void TestDataDirectoryCheck::fileInItsPlaceCannotBeWrittenInto()
{
    QFile file(GS::instance()->dataDir);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(DataDirectoryCheck::problem(), notWritable());
}

QTEST_GUILESS_MAIN(TestDataDirectoryCheck)
#include "tst_datadirectorycheck.moc"
