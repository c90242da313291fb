#include "settings/brand.h"

#include <QTest>

/// The product variants by their numbers in the configuration file.
class TestBrand : public QObject
{
    Q_OBJECT

private slots:
    void everyNumberHasACode_data();
    void everyNumberHasACode();
    void brandIsItselfOnly_data();
    void brandIsItselfOnly();
};

void TestBrand::everyNumberHasACode_data()
{
    QTest::addColumn<int>("brand");
    QTest::addColumn<QString>("code");
    const char* const codes[] = {"nobrand", "qor",      "tal",    "wendle",
                                 "nobrand", "marrowby", "nobrand"};
    int brand = -1;
    for (const char* code : codes) {
        QTest::addRow("%d", brand) << brand << QString(code);
        ++brand;
    }
}

void TestBrand::everyNumberHasACode()
{
    QFETCH(int, brand);
    QFETCH(QString, code);
    QCOMPARE(brandCode(brand), code);
}

void TestBrand::brandIsItselfOnly_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("qor") << int(Brand::Qor);
    QTest::newRow("tal") << int(Brand::Tal);
    QTest::newRow("wendle") << int(Brand::Wendle);
    QTest::newRow("marrowby") << int(Brand::Marrowby);
}

void TestBrand::brandIsItselfOnly()
{
    QFETCH(int, number);
    for (int other = -1; other <= 5; ++other)
        QCOMPARE(isBrand(other, Brand(number)), other == number);
}

QTEST_APPLESS_MAIN(TestBrand)

#include "tst_brand.moc"
