#include "base/linereader.h"

#include <QtTest>

/// Lines of texts that come in parts of every length, kept up to five characters.
class TestLineReader : public QObject
{
    Q_OBJECT

private slots:
    void linesAreSplitAndCut_data();
    void linesAreSplitAndCut();
    void partsAreAskedForOneByOne();
};

void TestLineReader::linesAreSplitAndCut_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArrayList>("lines"); // "+" is a break, "~" a cut
    QTest::newRow("nothing") << QByteArray() << QByteArrayList();
    QTest::newRow("no break") << QByteArray("ab") << QByteArrayList {"ab"};
    QTest::newRow("break") << QByteArray("ab\n") << QByteArrayList {"ab+"};
    QTest::newRow("two") << QByteArray("ab\nc") << QByteArrayList {"ab+", "c"};
    QTest::newRow("empty ones") << QByteArray("\n\nc\n") << QByteArrayList {"+", "+", "c+"};
    QTest::newRow("carriage returns") << QByteArray("a\r\n\r") << QByteArrayList {"a\r+", "\r"};
    QTest::newRow("at the limit") << QByteArray("abcde\nx") << QByteArrayList {"abcde+", "x"};
    QTest::newRow("beyond") << QByteArray("abcdef\nx") << QByteArrayList {"abcde+~", "x"};
    QTest::newRow("far beyond") << QByteArray("abcdefghijklm\nx\n")
                                << QByteArrayList {"abcde+~", "x+"};
    QTest::newRow("last at the limit") << QByteArray("x\nabcde") << QByteArrayList {"x+", "abcde"};
    QTest::newRow("last beyond") << QByteArray("x\nabcdef") << QByteArrayList {"x+", "abcde~"};
}

void TestLineReader::linesAreSplitAndCut()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArrayList, lines);
    for (int partSize = 1; partSize < 16; ++partSize) {
        int position = 0;
        LineReader<QString> reader(
            [&](int) {
                const QByteArray part = text.mid(position, partSize);
                position += part.size();
                return QString::fromLatin1(part);
            },
            5);
        QByteArrayList found;
        while (reader.next()) {
            found << reader.line().toLatin1() + (reader.hasBreak() ? "+" : "")
                    + (reader.isCut() ? "~" : "");
        }
        QCOMPARE(found, lines);
        QCOMPARE(reader.line(), QString());
        QVERIFY(!reader.hasBreak() && !reader.isCut());
    }
}

void TestLineReader::partsAreAskedForOneByOne()
{
    int asked = 0;
    LineReader<QByteArray> reader(
        [&](int size) {
            ++asked;
            return QByteArray(size, asked == 100 ? '\n' : 'x');
        },
        10);
    QVERIFY(reader.next());
    QCOMPARE(asked, 100);
    QCOMPARE(reader.line(), QByteArray(10, 'x'));
    QVERIFY(reader.next());
    QCOMPARE(asked, 100);
    QCOMPARE(reader.line(), QByteArray());
}

QTEST_APPLESS_MAIN(TestLineReader)
#include "tst_linereader.moc"
