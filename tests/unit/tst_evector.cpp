#include "settings/evector.h"

#include <QtTest>

#include <cmath>

class TestEVector : public QObject
{
    Q_OBJECT

private slots:
    void angleIsSignedAndInDegrees();
    void angleWithoutLengthIsZero();
    void lengthIsEuclidean();
    void divisionByVectorIsGuarded();
    void divisionByNumberIsNot();
    void onlyRealCrossingsIntersect_data();
    void onlyRealCrossingsIntersect();
    void resultsDropAttributes();
    void altPointKeepsItsAttributes();
    void arithmetic();
};

void TestEVector::angleIsSignedAndInDegrees()
{
    QCOMPARE(EVector(1, 0).angle(EVector(0, 1)), 90.0);
    QCOMPARE(EVector(0, 1).angle(EVector(1, 0)), -90.0);
    QCOMPARE(EVector(1, 0).angle(EVector(-1, 0)), 180.0);
}

void TestEVector::angleWithoutLengthIsZero()
{
    QCOMPARE(EVector(0, 0).angle(EVector(3, 4)), 0.0);
    QCOMPARE(EVector(3, 4).angle(EVector(0, 0)), 0.0);
    // Rounding pushes this cosine to 1.0000000000000002.
    const EVector v(0.1, 0.7);
    QVERIFY(!std::isnan(v.angle(v * 3.0)));
}

void TestEVector::lengthIsEuclidean()
{
    QCOMPARE(EVector(6, 8).length(), 10.0);
}

void TestEVector::divisionByVectorIsGuarded()
{
    const EVector guarded = EVector(4, 6) / EVector(2, 0);
    QCOMPARE(guarded.x, 0.0);
    QCOMPARE(guarded.y, 0.0);
    const EVector guardedX = EVector(4, 6) / EVector(0, 3);
    QCOMPARE(guardedX.x, 0.0);
    QCOMPARE(guardedX.y, 0.0);
    const EVector quotient = EVector(4, 6) / EVector(2, 3);
    QCOMPARE(quotient.x, 2.0);
    QCOMPARE(quotient.y, 2.0);
}

void TestEVector::divisionByNumberIsNot()
{
    QVERIFY(std::isinf((EVector(4, 6) / 0.0).x));
    EVector v(4, 0);
    v /= 0.0;
    QVERIFY(std::isinf(v.x));
    QVERIFY(std::isnan(v.y));
}

void TestEVector::onlyRealCrossingsIntersect_data()
{
    QTest::addColumn<QVector<double>>("points");
    QTest::addColumn<bool>("intersect");
    QTest::newRow("diagonals of a square") << QVector<double> {0, 0, 1, 1, 0, 1, 1, 0} << true;
    QTest::newRow("shared end point") << QVector<double> {0, 0, 1, 1, 1, 1, 2, 0} << false;
    QTest::newRow("T-junction") << QVector<double> {0, 0, 2, 0, 1, 0, 1, 1} << false;
    QTest::newRow("collinear overlap") << QVector<double> {0, 0, 2, 0, 1, 0, 3, 0} << false;
    QTest::newRow("zero length") << QVector<double> {0, 0, 2, 0, 1, 0, 1, 0} << false;
    QTest::newRow("apart") << QVector<double> {0, 0, 1, 0, 0, 1, 1, 1} << false;
}

void TestEVector::onlyRealCrossingsIntersect()
{
    QFETCH(QVector<double>, points);
    QFETCH(bool, intersect);
    const EVectorSegment a {{points[0], points[1]}, {points[2], points[3]}};
    const EVectorSegment b {{points[4], points[5]}, {points[6], points[7]}};
    QCOMPARE(EVector::segmentsIntersect(a, b), intersect);
    QCOMPARE(EVector::segmentsIntersect(b, a), intersect);
}

void TestEVector::resultsDropAttributes()
{
    EVector v(1, 2);
    v.attributes[2] = 5.0;
    v.attributeFlag = true;
    v.trailingNumber = 7;
    const EVector copy = v;
    QCOMPARE(copy.attributes[2], 5.0);
    QCOMPARE(copy.trailingNumber, 7);

    for (const EVector& result : {v.Clone(), v + EVector(0, 0), v * 1.0}) {
        QCOMPARE(result.x, 1.0);
        QCOMPARE(result.y, 2.0);
        QCOMPARE(result.attributes[2], 0.0);
        QVERIFY(!result.attributeFlag);
        QCOMPARE(result.trailingNumber, 0);
    }
}

void TestEVector::altPointKeepsItsAttributes()
{
    EVector v(1, 2);
    v.altX = 3.0;
    v.altY = 4.0;
    v.altAttributes[0] = 11;
    v.altAttributes[1] = 12;
    v.trailingNumber = 7;
    const EVector point = v.altPoint();
    QCOMPARE(point.x, 3.0);
    QCOMPARE(point.y, 4.0);
    QCOMPARE(point.altAttributes[0], 11);
    QCOMPARE(point.altAttributes[1], 12);
    QCOMPARE(point.trailingNumber, 0);
}

void TestEVector::arithmetic()
{
    EVector v = EVector(1, 2) + EVector(3, 4);
    QCOMPARE(v.x, 4.0);
    QCOMPARE(v.y, 6.0);
    v -= EVector(1, 1);
    QCOMPARE(v.x, 3.0);
    QCOMPARE(v.y, 5.0);
    v *= EVector(2, 3);
    QCOMPARE(v.x, 6.0);
    QCOMPARE(v.y, 15.0);
    v += EVector(0, 1);
    v *= 0.5;
    QCOMPARE(v.x, 3.0);
    QCOMPARE(v.y, 8.0);
    v /= 2.0;
    QCOMPARE(v.x, 1.5);
    QCOMPARE(v.y, 4.0);
    const EVector product = EVector(2, 3) * EVector(4, 5);
    QCOMPARE(product.x, 8.0);
    QCOMPARE(product.y, 15.0);
    QCOMPARE((EVector(5, 7) - EVector(2, 3)).y, 4.0);
    QCOMPARE((EVector(6, 8) / 2.0).y, 4.0);
    QCOMPARE(EVector(1, 2).cross(EVector(3, 5)), -1.0);
}

QTEST_APPLESS_MAIN(TestEVector)
#include "tst_evector.moc"
