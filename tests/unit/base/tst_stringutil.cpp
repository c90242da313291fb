#include "base/stringutil.h"

#include <QtTest>

#include <memory>
#include <stdexcept>

class TestStringUtil : public QObject
{
    Q_OBJECT

private slots:
    void trimRemovesSpacesAtBothEnds_data();
    void trimRemovesSpacesAtBothEnds();
    void trimOfSpacesAloneThrows_data();
    void trimOfSpacesAloneThrows();
    void copyIsFreshAndEndsWithNul_data();
    void copyIsFreshAndEndsWithNul();
    void copyLeavesTheOldArrayAlone();
};

void TestStringUtil::trimRemovesSpacesAtBothEnds_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("trimmed");
    QTest::newRow("both ends") << QByteArray("  a b  ") << QByteArray("a b");
    QTest::newRow("leading tab") << QByteArray("\ta ") << QByteArray("\ta");
    QTest::newRow("space before a tab") << QByteArray(" \ta\t ") << QByteArray("\ta\t");
    QTest::newRow("tab alone") << QByteArray(" \t ") << QByteArray("\t");
    QTest::newRow("carriage return") << QByteArray("a \r") << QByteArray("a \r");
    QTest::newRow("no-break space") << QByteArray("\xc2\xa0") << QByteArray("\xc2\xa0");
    QTest::newRow("one character") << QByteArray(" a") << QByteArray("a");
    QTest::newRow("nothing to do") << QByteArray("a") << QByteArray("a");
    QTest::newRow("empty") << QByteArray("") << QByteArray("");
    QTest::newRow("NUL byte") << QByteArray(" \0 ", 3) << QByteArray("\0", 1);
}

void TestStringUtil::trimRemovesSpacesAtBothEnds()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, trimmed);
    QCOMPARE(QByteArray::fromStdString(StringUtil::trim(text.toStdString())), trimmed);
}

void TestStringUtil::trimOfSpacesAloneThrows_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("one") << 1;
    QTest::newRow("many") << 1000;
}

void TestStringUtil::trimOfSpacesAloneThrows()
{
    QFETCH(int, count);
    try {
        StringUtil::trim(std::string(static_cast<std::size_t>(count), ' '));
        QFAIL("nothing was thrown");
    } catch (const std::out_of_range& error) {
        QCOMPARE(error.what(), "basic_string::substr");
    }
}

void TestStringUtil::copyIsFreshAndEndsWithNul_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("text") << QByteArray("abc");
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("NUL byte") << QByteArray("a\0b", 3);
}

void TestStringUtil::copyIsFreshAndEndsWithNul()
{
    QFETCH(QByteArray, text);
    char* copy = nullptr;
    StringUtil::copy(text.toStdString(), &copy);
    const std::unique_ptr<char[]> owner(copy);
    QVERIFY(copy);
    QCOMPARE(QByteArray(copy, text.size() + 1), text + '\0');
}

void TestStringUtil::copyLeavesTheOldArrayAlone()
{
    char old[] = "old";
    char* target = old;
    StringUtil::copy("new", &target);
    const std::unique_ptr<char[]> owner(target);
    QVERIFY(target != old);
    QCOMPARE(target, "new");
    QCOMPARE(old, "old");
}

QTEST_APPLESS_MAIN(TestStringUtil)
#include "tst_stringutil.moc"
