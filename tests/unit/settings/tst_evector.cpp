#include "settings/evector.h"

#include <QtTest>

#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>
#include <vector>

namespace {

EVector vectorWithAttributes()
{
    EVector v(1, 2);
    v.attributes = {1.5, 2.5, 3.5, 4.5};
    v.attributeBlock = {5, 6, 7};
    v.attributeFlag = true;
    v.attributeValue = 8;
    v.attributeNumber = 9;
    v.altX = 9.0;
    v.altY = 10.0;
    v.altAttributes = {11, 12};
    v.trailingValue = 13;
    v.trailingShort = 15;
    v.trailingNumber = 14;
    return v;
}

/// The name of the first attribute in which they differ; empty when they are equal.
QByteArray difference(const EVector& a, const EVector& b)
{
    const std::vector<std::pair<const char*, bool>> attributes {
        {"attributes", a.attributes == b.attributes},
        {"attributeBlock", a.attributeBlock == b.attributeBlock},
        {"attributeFlag", a.attributeFlag == b.attributeFlag},
        {"attributeValue", a.attributeValue == b.attributeValue},
        {"attributeNumber", a.attributeNumber == b.attributeNumber},
        {"altX", a.altX == b.altX},
        {"altY", a.altY == b.altY},
        {"altAttributes", a.altAttributes == b.altAttributes},
        {"trailingValue", a.trailingValue == b.trailingValue},
        {"trailingShort", a.trailingShort == b.trailingShort},
        {"trailingNumber", a.trailingNumber == b.trailingNumber},
    };
    for (const auto& [name, isEqual] : attributes) {
        if (!isEqual)
            return name;
    }
    return {};
}

} // namespace

class TestEVector : public QObject
{
    Q_OBJECT

private slots:
    void angleIsSignedAndInDegrees();
    void angleWithoutLengthIsZero();
    void angleOfCosineBeyondOneIsZero_data();
    void angleOfCosineBeyondOneIsZero();
    void lengthIsEuclidean();
    void divisionByVectorIsGuarded();
    void divisionByNumberIsNot();
    void onlyRealCrossingsIntersect_data();
    void onlyRealCrossingsIntersect();
    void newVectorsHaveZeroedAttributes();
    void copiesCarryAttributes();
    void resultsDropAttributes_data();
    void resultsDropAttributes();
    void membersKeepTheirOrder();
    void altPointKeepsItsAttributes();
    void arithmetic_data();
    void arithmetic();
    void crossProduct();
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
    QCOMPARE(EVector(0, 0).angle(EVector(0, 0)), 0.0);
}

void TestEVector::angleOfCosineBeyondOneIsZero_data()
{
    QTest::addColumn<double>("factor");
    QTest::newRow("beyond 1") << 1.0;
    QTest::newRow("beyond -1") << -1.0; // opposite directions, and yet not 180
}

void TestEVector::angleOfCosineBeyondOneIsZero()
{
    QFETCH(double, factor);
    const EVector v(1, 5);
    const EVector o = v * factor;
    QVERIFY(std::abs((v.x * o.x + v.y * o.y) / (o.length() * v.length())) > 1.0);
    QCOMPARE(v.angle(o), 0.0);
    // Without that rounding the same directions have their angle.
    QCOMPARE(EVector(3, 4).angle(EVector(3, 4) * factor), factor > 0 ? 0.0 : 180.0);
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

void TestEVector::newVectorsHaveZeroedAttributes()
{
    const EVector v(1, 2);
    QCOMPARE(v.attributes, (std::array<double, 4> {}));
    QCOMPARE(v.attributeBlock, (std::array<std::int64_t, 3> {}));
    QCOMPARE(v.altAttributes, (std::array<std::int64_t, 2> {}));
    QCOMPARE(v.altX, 0.0);
    QCOMPARE(v.altY, 0.0);
    QCOMPARE(v.attributeFlag, false);
    QCOMPARE(v.attributeValue, std::int64_t {0});
    QCOMPARE(v.attributeNumber, 0);
    QCOMPARE(v.trailingValue, std::int64_t {0});
    QCOMPARE(v.trailingShort, std::int16_t {0});
    QCOMPARE(v.trailingNumber, 0);
}

void TestEVector::copiesCarryAttributes()
{
    const EVector v = vectorWithAttributes();
    const EVector copy = v;
    QCOMPARE(copy.x, 1.0);
    QCOMPARE(copy.y, 2.0);
    QCOMPARE(difference(copy, v), QByteArray());
    QCOMPARE(copy.trailingNumber, 14);
}

void TestEVector::resultsDropAttributes_data()
{
    QTest::addColumn<int>("operation");
    const QStringList names {"Clone", "+", "-", "* vector", "* number", "/ vector", "/ number"};
    for (int i = 0; i < names.size(); ++i)
        QTest::newRow(qPrintable(names[i])) << i;
}

void TestEVector::resultsDropAttributes()
{
    QFETCH(int, operation);
    const EVector v = vectorWithAttributes();
    const std::array<EVector, 7> results {v.Clone(),
                                          v + EVector(0, 0),
                                          v - EVector(0, 0),
                                          v * EVector(1, 1),
                                          v * 1.0,
                                          v / EVector(1, 1),
                                          v / 1.0};
    const EVector& result = results.at(static_cast<std::size_t>(operation));
    QCOMPARE(result.x, 1.0);
    QCOMPARE(result.y, 2.0);
    QCOMPARE(difference(result, EVector(0, 0)), QByteArray());
}

void TestEVector::altPointKeepsItsAttributes()
{
    const EVector point = vectorWithAttributes().altPoint();
    EVector expected(9, 10);
    expected.altAttributes = {11, 12};
    QCOMPARE(point.x, expected.x);
    QCOMPARE(point.y, expected.y);
    QCOMPARE(difference(point, expected), QByteArray());
}

void TestEVector::membersKeepTheirOrder()
{
    const EVector v(0, 0);
    const std::vector<const void*> members {&v.x,
                                            &v.y,
                                            &v.attributes,
                                            &v.attributeBlock,
                                            &v.attributeFlag,
                                            &v.attributeValue,
                                            &v.attributeNumber,
                                            &v.altX,
                                            &v.altY,
                                            &v.altAttributes,
                                            &v.trailingValue,
                                            &v.trailingShort,
                                            &v.trailingNumber};
    QVERIFY(std::is_sorted(members.begin(), members.end(), std::less<const void*>()));
}

void TestEVector::arithmetic_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::addColumn<double>("expectedX");
    QTest::addColumn<double>("expectedY");
    const auto addRow = [](const char* operation, EVector result, double x, double y) {
        QTest::newRow(operation) << result.x << result.y << x << y;
    };
    // Every number of its own: no component can stand in for another one.
    const EVector v(30, 56);
    const EVector o(5, 7);
    EVector in = v;
    addRow("+", v + o, 35, 63);
    addRow("-", v - o, 25, 49);
    addRow("* vector", v * o, 150, 392);
    addRow("* number", v * 3.0, 90, 168);
    addRow("/ vector", v / o, 6, 8);
    addRow("/ number", v / 2.0, 15, 28);
    addRow("+=", in += o, 35, 63);
    addRow("-=", in -= EVector(10, 20), 25, 43);
    addRow("*= vector", in *= EVector(2, 3), 50, 129);
    addRow("*= number", in *= 4.0, 200, 516);
    addRow("/= number", in /= 8.0, 25, 64.5);
    addRow("in place", in, 25, 64.5);
    addRow("operand", v, 30, 56);
}

void TestEVector::arithmetic()
{
    QFETCH(double, x);
    QFETCH(double, y);
    QTEST(x, "expectedX");
    QTEST(y, "expectedY");
}

void TestEVector::crossProduct()
{
    QCOMPARE(EVector(1, 2).cross(EVector(3, 5)), -1.0);
    QCOMPARE(EVector(7, 2).cross(EVector(3, 5)), 29.0);
}

QTEST_APPLESS_MAIN(TestEVector)
#include "tst_evector.moc"
