#include "app/fonts.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QtTest>

class TestFonts : public QObject
{
    Q_OBJECT

private slots:
    void allNamesShowOneFamily_data();
    void allNamesShowOneFamily();
};

void TestFonts::allNamesShowOneFamily_data()
{
    QTest::addColumn<QString>("name");
    for (const char* name : {"Helvetica Neue", "Poppins", "Tahoma"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void TestFonts::allNamesShowOneFamily()
{
    QFETCH(QString, name);
    if (QFontDatabase().hasFamily(name))
        QSKIP("This desktop has the family itself.");
    unifyFonts();
    QCOMPARE(QFontInfo(QFont(name)).family(),
             QFontInfo(QFont(QStringLiteral("Helvetica"))).family());
}

QTEST_MAIN(TestFonts)
#include "tst_fonts.moc"
