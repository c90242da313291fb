#include "app/resources.h"
#include "ui/pngpicture.h"
#include "ui/programicon.h"

#include <QFile>
#include <QTest>

#include <algorithm>

class TestProgramIcon : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }

    void iconHasTheSizesOfDesktops();
    void iconLooksAsInItsFile();
    void iconIsReadOnce();
    void pictureIsWhatQtReads_data();
    void pictureIsWhatQtReads();
    void noPictureIsNull();
};

void TestProgramIcon::iconHasTheSizesOfDesktops()
{
    QList<int> widths;
    for (const QSize& size : programIcon().availableSizes())
        widths.append(size.width());
    std::sort(widths.begin(), widths.end());
    QCOMPARE(widths, QList<int>({16, 32, 64, 128}));
}

void TestProgramIcon::iconLooksAsInItsFile()
{
    const QIcon whole(":/qml/Vireon.icns");
    for (int width : {16, 22, 32, 64, 128})
        QCOMPARE(programIcon().pixmap(width, width).toImage(),
                 whole.pixmap(width, width).toImage());
}

void TestProgramIcon::iconIsReadOnce()
{
    QCOMPARE(programIcon().cacheKey(), programIcon().cacheKey());
}

void TestProgramIcon::pictureIsWhatQtReads_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("with corners cut out") << ":/qml/splash_qor.png";
    QTest::newRow("with soft edges") << ":/qml/shadow.png";
}

void TestProgramIcon::pictureIsWhatQtReads()
{
    QFETCH(QString, path);
    const QImage wanted(path);
    QVERIFY(!wanted.isNull());
    QCOMPARE(pngPictureIn(path), wanted);
}

void TestProgramIcon::noPictureIsNull()
{
    QVERIFY(pngPictureIn(":/qml/splash_nobrand.png").isNull());
    QVERIFY(pngPicture("no picture").isNull());
    QFile file(":/qml/splash_qor.png");
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY2(pngPicture(file.readAll().left(500)).isNull(), "cut short");
}

QTEST_MAIN(TestProgramIcon)

#include "tst_programicon.moc"
