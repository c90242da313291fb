#include "app/resources.h"

#include <QBitmap>
#include <QIcon>
#include <QImageReader>
#include <QtTest>

#include <cmath>

namespace {

/// What a viewer sees of one picture of an animation.
struct Writing
{
    QPoint penTip {-1, -1};
    QVector<QPoint> ink;
};

bool isPen(QRgb colour)
{
    return qRed(colour) > 200 && qGreen(colour) > 200 && qBlue(colour) > 200;
}

bool isInk(QRgb colour)
{
    return qRed(colour) < 60 && qBlue(colour) > 230;
}

/// The pen leans to the upper right, so that its tip is the lowest of it.
Writing writingIn(const QImage& frame)
{
    Writing writing;
    for (int y = 0; y < frame.height(); ++y) {
        for (int x = 0; x < frame.width(); ++x) {
            if (isPen(frame.pixel(x, y)))
                writing.penTip = QPoint(x, y);
            else if (isInk(frame.pixel(x, y)))
                writing.ink.append(QPoint(x, y));
        }
    }
    return writing;
}

/// From the pen's tip to the nearest ink, in px.
double gap(const Writing& writing)
{
    double nearest = INFINITY;
    for (const QPoint& point : writing.ink) {
        const QPoint way = point - writing.penTip;
        nearest = std::min(nearest, std::hypot(way.x(), way.y()));
    }
    return nearest;
}

/// What an animation shows over its whole length.
struct Performance
{
    double meanGap = 0; ///< px, over the frames with pen and ink
    int updates = 0; ///< frames in which the amount of ink grew
    int duration = 0; ///< ms
    int inkAtEnd = 0; ///< px
};

Performance watch(const QString& path)
{
    Performance seen;
    QImageReader reader(path);
    int inkBefore = 0;
    int measured = 0;
    QImage frame;
    while (reader.read(&frame)) {
        seen.duration += reader.nextImageDelay();
        const Writing writing = writingIn(frame);
        const int ink = writing.ink.size();
        // Moving the pen away uncovers some ink, too: count only what a stroke adds.
        if (ink > inkBefore + 15)
            ++seen.updates;
        inkBefore = ink;
        seen.inkAtEnd = ink;
        if (ink > 0 && writing.penTip.y() > 0) {
            seen.meanGap += gap(writing);
            ++measured;
        }
    }
    seen.meanGap /= measured;
    return seen;
}

} // namespace

class TestPictures : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void pictureOfTheResourceTreeHasItsSizeAndClearCorners_data();
    void pictureOfTheResourceTreeHasItsSizeAndClearCorners();
    void maskCutsTheSplashCleanly_data();
    void maskCutsTheSplashCleanly();
    void eachBrandHasASplashOfItsOwn();
    void iconHasAllSizes_data();
    void iconHasAllSizes();
    void installedIconHasItsSize_data();
    void installedIconHasItsSize();
    void scalableIconStandsAlone();
    void animationLoopsInAClearCorneredFrame_data();
    void animationLoopsInAClearCorneredFrame();
    void inkFallsBehindAtThirtyHertzAndKeepsUpAtSixty();
    void shadowIsSymmetricAndFadesOut();
    void tooltipLeavesItsAreaPlain();
    void restOfTheResourceTreeIsThere_data();
    void restOfTheResourceTreeIsThere();
};

void TestPictures::initTestCase()
{
    initResources();
}

void TestPictures::pictureOfTheResourceTreeHasItsSizeAndClearCorners_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("splash_qor.png") << QSize(640, 360);
    QTest::newRow("splash_wendle.png") << QSize(640, 360);
    QTest::newRow("splash_marrowby.png") << QSize(640, 360);
    QTest::newRow("splash_tal.png") << QSize(640, 360);
    QTest::newRow("shadow.png") << QSize(36, 36);
    // These are twice the size at which the views show them.
    QTest::newRow("warningIcon.png") << QSize(80, 80);
    QTest::newRow("error.png") << QSize(80, 80);
    QTest::newRow("alert.png") << QSize(80, 80);
    QTest::newRow("loading.png") << QSize(96, 96);
    QTest::newRow("loading_black.png") << QSize(96, 96);
    QTest::newRow("okbtn.png") << QSize(160, 70);
    QTest::newRow("tooltip2.png") << QSize(480, 192);
    QTest::newRow("Corvanthel.png") << QSize(256, 256);
    QTest::newRow("Vireon-X.png") << QSize(640, 160);
}

void TestPictures::pictureOfTheResourceTreeHasItsSizeAndClearCorners()
{
    QFETCH(QSize, size);
    const QImage picture(QString(":/qml/") + QTest::currentDataTag());
    QCOMPARE(picture.size(), size);
    QVERIFY(picture.hasAlphaChannel());
    const int right = size.width() - 1;
    const int bottom = size.height() - 1;
    for (const QPoint& corner :
         {QPoint(0, 0), QPoint(right, 0), QPoint(0, bottom), QPoint(right, bottom)})
        QVERIFY(qAlpha(picture.pixel(corner)) < 16);

    int strongest = 0;
    for (int y = 0; y <= bottom; ++y)
        for (int x = 0; x <= right; ++x)
            strongest = std::max(strongest, qAlpha(picture.pixel(x, y)));
    QVERIFY(strongest > 128);
}

void TestPictures::maskCutsTheSplashCleanly_data()
{
    QTest::addColumn<QString>("path");
    for (const char* brand : {"qor", "wendle", "marrowby", "tal"})
        QTest::newRow(brand) << QString(":/qml/splash_%1.png").arg(brand);
}

void TestPictures::maskCutsTheSplashCleanly()
{
    QFETCH(QString, path);
    const QPixmap splash(path);
    const QImage picture = splash.toImage();
    const QImage mask = splash.mask().toImage();
    QCOMPARE(mask.size(), picture.size());
    int cutOut = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const int alpha = qAlpha(picture.pixel(x, y));
            QVERIFY2(alpha == 0 || alpha == 255, "a half transparent fringe");
            const bool shown = qGray(mask.pixel(x, y)) == 0; // Qt::color1
            QCOMPARE(shown, alpha == 255);
            cutOut += shown ? 0 : 1;
        }
    }
    // Four corners of a radius of 24 px.
    QVERIFY2(cutOut > 300 && cutOut < 800, qPrintable(QString::number(cutOut)));
}

void TestPictures::eachBrandHasASplashOfItsOwn()
{
    QSet<QByteArray> contents;
    for (const char* brand : {"qor", "wendle", "marrowby", "tal"}) {
        QFile file(QString(":/qml/splash_%1.png").arg(brand));
        QVERIFY(file.open(QIODevice::ReadOnly));
        contents.insert(file.readAll());
    }
    QCOMPARE(contents.size(), 4);
    QVERIFY(!QFile::exists(":/qml/splash_nobrand.png"));
}

void TestPictures::iconHasAllSizes_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("Vireon") << ":/qml/Vireon.icns";
    QTest::newRow("Palmora") << ":/qml/Palmora.icns";
}

void TestPictures::iconHasAllSizes()
{
    QFETCH(QString, path);
    const QIcon icon(path);
    QList<int> widths;
    for (const QSize& size : icon.availableSizes())
        widths.append(size.width());
    std::sort(widths.begin(), widths.end());
    QCOMPARE(widths, QList<int>({16, 32, 64, 128, 256, 512, 1024}));
    for (int width : widths)
        QCOMPARE(icon.pixmap(width, width).size(), QSize(width, width));
}

void TestPictures::installedIconHasItsSize_data()
{
    QTest::addColumn<int>("size");
    for (int size : {16, 22, 24, 32, 48, 64, 128, 256, 512}) {
        const QString path = QString("icons/hicolor/%1x%1/apps/vireon.png").arg(size);
        QTest::newRow(qPrintable(path)) << size;
    }
    QTest::newRow("vireon/CorvanthelSmall.png") << 48;
    QTest::newRow("vireon/Corvanthel.png") << 256;
}

void TestPictures::installedIconHasItsSize()
{
    QFETCH(int, size);
    const QImage icon(QString(VIREON_SHARE_DIR "/") + QTest::currentDataTag());
    QCOMPARE(icon.size(), QSize(size, size));
    QVERIFY(icon.hasAlphaChannel());
    QCOMPARE(qAlpha(icon.pixel(0, 0)), 0);
    QCOMPARE(qAlpha(icon.pixel(size / 2, size / 2)), 255);
}

void TestPictures::scalableIconStandsAlone()
{
    QFile file(VIREON_SHARE_DIR "/icons/hicolor/scalable/apps/vireon.svg");
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    QVERIFY(text.startsWith("<svg"));
    QVERIFY2(!text.contains(".svg"), "it needs a file that is not installed");
}

void TestPictures::animationLoopsInAClearCorneredFrame_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("30 Hz") << ":/qml/30hz.gif";
    QTest::newRow("60 Hz") << ":/qml/60hz.gif";
}

void TestPictures::animationLoopsInAClearCorneredFrame()
{
    QFETCH(QString, path);
    QVERIFY(QFile(path).size() < 250 * 1024);
    QImageReader reader(path);
    QVERIFY(reader.supportsAnimation());
    QVERIFY(reader.imageCount() > 50);
    QImage frame;
    while (reader.read(&frame)) {
        QCOMPARE(frame.size(), QSize(246, 160)); // twice the size at which the view shows it
        QVERIFY(reader.nextImageDelay() >= 20);
        for (const QPoint& corner :
             {QPoint(0, 0), QPoint(245, 0), QPoint(0, 159), QPoint(245, 159)})
            QCOMPARE(qAlpha(frame.pixel(corner)), 0);
        QCOMPARE(qAlpha(frame.pixel(123, 156)), 255);
    }
    QCOMPARE(reader.loopCount(), -1);
}

void TestPictures::inkFallsBehindAtThirtyHertzAndKeepsUpAtSixty()
{
    const Performance slow = watch(":/qml/30hz.gif");
    const Performance fast = watch(":/qml/60hz.gif");
    QVERIFY(slow.meanGap > 2 * fast.meanGap);
    QVERIFY(fast.updates > 2 * slow.updates);
    // Side by side they must not drift apart, and both write the whole word.
    QCOMPARE(slow.duration, fast.duration);
    QCOMPARE(slow.inkAtEnd, fast.inkAtEnd);
}

void TestPictures::shadowIsSymmetricAndFadesOut()
{
    const QImage shadow(":/qml/shadow.png");
    const int last = shadow.width() - 1;
    for (int y = 0; y <= last; ++y) {
        for (int x = 0; x <= last; ++x) {
            const int alpha = qAlpha(shadow.pixel(x, y));
            QVERIFY(std::abs(alpha - qAlpha(shadow.pixel(last - x, y))) <= 2);
            QVERIFY(std::abs(alpha - qAlpha(shadow.pixel(y, x))) <= 2);
            if (x == 0)
                QVERIFY(alpha < 8);
        }
    }
}

void TestPictures::tooltipLeavesItsAreaPlain()
{
    const QImage bubble(":/qml/tooltip2.png");
    const QRect textArea(30, 16, 434, 160);
    const QRgb surface = bubble.pixel(textArea.center());
    for (int y = textArea.top(); y <= textArea.bottom(); ++y)
        for (int x = textArea.left(); x <= textArea.right(); ++x)
            QCOMPARE(bubble.pixel(x, y), surface);
}

void TestPictures::restOfTheResourceTreeIsThere_data()
{
    QTest::addColumn<bool>("isCompiled");
    for (const char* path :
         {":/fontawesome-webfont.ttf", ":/translations/vireon-menu-desktop-en.qm",
          ":/translations/vireon-menu-desktop-ja.qm", ":/translations/vireon-menu-desktop-de.qm"})
        QTest::newRow(path) << false;
    for (const char* path : {":/qml/main.qml", ":/qml/LogWindow.qml", ":/qml/colors.js"})
        QTest::newRow(path) << true;
}

void TestPictures::restOfTheResourceTreeIsThere()
{
    QFETCH(bool, isCompiled);
    const QFileInfo file(QTest::currentDataTag());
    QVERIFY(file.exists());
    QCOMPARE(file.size() == 0, isCompiled);
}

QTEST_MAIN(TestPictures)
#include "tst_pictures.moc"
