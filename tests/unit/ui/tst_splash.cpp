#include "support/files.h"
#include "support/logrecorder.h"
#include "ui/splash.h"

#include <QApplication>
#include <QBitmap>
#include <QDir>
#include <QPainter>
#include <QProcess>
#include <QResource>
#include <QSplashScreen>
#include <QTest>

#include <memory>

namespace {

const Qt::WindowFlags expectedFlags =
    Qt::SplashScreen | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint;

QVector<QSplashScreen*> screens()
{
    QVector<QSplashScreen*> found;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* screen = qobject_cast<QSplashScreen*>(widget))
            found.append(screen);
    }
    return found;
}

QSplashScreen* theScreen()
{
    const auto found = screens();
    return found.size() == 1 ? found.first() : nullptr;
}

/// The log without what Qt says about the platform of these tests.
QStringList textsOf(LogRecorder& log)
{
    QStringList texts;
    for (const LogRecorder::Line& line : log.lines()) {
        if (!line.text.startsWith("This plugin does not support"))
            texts.append((line.type == QtDebugMsg ? "" : "not debug: ") + line.text);
    }
    return texts;
}

/// The brands' real pictures are for the eye; this one's shape is known.
QPixmap testPicture()
{
    QPixmap picture(40, 30);
    picture.fill(Qt::transparent);
    QPainter(&picture).fillRect(10, 5, 20, 20, Qt::red);
    return picture;
}

/// What hidden, masked or re-shown at which moment: the events of a splash in their order.
class EventRecorder : public QObject
{
public:
    QStringList events;

    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (auto* screen = qobject_cast<QSplashScreen*>(object)) {
            if (event->type() == QEvent::Show && screen->windowFlags() == expectedFlags)
                events.append("shown with its flags");
            if (event->type() == QEvent::Close)
                events.append("closed");
        }
        return false;
    }
};

} // namespace

class TestSplash : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void metaObjectIsTwoSignalsAndTwoSlots();
    void isOnScreenAtOnce();
    void everyStepIsLogged();
    void flagsAreSetAtEachShow();
    void maskIsThePicturesShape();
    void signalsRunTheirSlots();
    void closingTwiceOnlyLogs();
    void isShownAgainAfterAClose();
    void unknownBrandIsAnEmptyWindow();
    void splashIsGoneWithItsObject();

private:
    std::unique_ptr<LogRecorder> log;
};

void TestSplash::initTestCase()
{
    // A picture of the test's own, at the place where the brands' pictures are.
    QVERIFY(testPicture().save("splash_test.png"));
    QVERIFY(writeFile(
        "splash.qrc",
        "<RCC><qresource prefix=\"/qml\"><file>splash_test.png</file></qresource></RCC>"));
    QCOMPARE(QProcess::execute(RCC_PROGRAM, {"--binary", "splash.qrc", "-o", "splash.rcc"}), 0);
    QVERIFY(QResource::registerResource(QDir::currentPath() + "/splash.rcc"));
}

void TestSplash::init()
{
    log = std::make_unique<LogRecorder>();
}

void TestSplash::cleanup()
{
    log.reset();
    QVERIFY(screens().isEmpty());
}

void TestSplash::metaObjectIsTwoSignalsAndTwoSlots()
{
    const QMetaObject& meta = Splash::staticMetaObject;
    QCOMPARE(meta.className(), "Splash");
    QStringList found;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        found.append(meta.method(i).methodSignature());
    QCOMPARE(found,
             (QStringList {"splashShowWindow()", "splashCloseWindow()", "slotShowWindow()",
                           "slotCloseWindow()"}));
}

void TestSplash::isOnScreenAtOnce()
{
    const Splash splash("test");
    QVERIFY(theScreen());
    QVERIFY(theScreen()->isVisible());
    QCOMPARE(theScreen()->size(), QSize(40, 30));
    QCOMPARE(theScreen()->windowFlags(), expectedFlags);
}

void TestSplash::everyStepIsLogged()
{
    {
        Splash splash("test");
        splash.slotCloseWindow();
    }
    QCOMPARE(
        textsOf(*log),
        (QStringList {"splash image for brand:  \"test\"", "showing splash ", "closing splash "}));
}

void TestSplash::flagsAreSetAtEachShow()
{
    Splash splash("test");
    EventRecorder recorder;
    theScreen()->installEventFilter(&recorder);
    splash.slotCloseWindow();
    theScreen()->setWindowFlags(Qt::Window);
    splash.slotShowWindow();
    splash.slotCloseWindow();
    QCOMPARE(recorder.events, (QStringList {"closed", "shown with its flags", "closed"}));
    QCOMPARE(theScreen()->windowFlags(), expectedFlags);
}

void TestSplash::maskIsThePicturesShape()
{
    const Splash splash("test");
    // Setting the flags makes a new native window; the mask must be there nevertheless.
    QCOMPARE(theScreen()->mask(), QRegion(10, 5, 20, 20));
    QCOMPARE(theScreen()->mask(), QRegion(testPicture().mask()));
}

void TestSplash::signalsRunTheirSlots()
{
    Splash splash("test");
    emit splash.splashCloseWindow();
    QVERIFY(!theScreen()->isVisible());
    QCOMPARE(log->count("closing splash "), 1);
    emit splash.splashShowWindow();
    QVERIFY(theScreen()->isVisible());
    QCOMPARE(log->count("showing splash "), 2);
    emit splash.splashCloseWindow();
    QVERIFY(!theScreen()->isVisible());
    QCOMPARE(log->count("closing splash "), 2);
}

void TestSplash::closingTwiceOnlyLogs()
{
    Splash splash("test");
    EventRecorder recorder;
    theScreen()->installEventFilter(&recorder);
    splash.slotCloseWindow();
    splash.slotCloseWindow();
    QCOMPARE(log->count("closing splash "), 2);
    QCOMPARE(recorder.events, QStringList {"closed"});
    // Not even what someone else brought back is closed then.
    theScreen()->show();
    splash.slotCloseWindow();
    QVERIFY(theScreen()->isVisible());
}

void TestSplash::isShownAgainAfterAClose()
{
    Splash splash("test");
    splash.slotCloseWindow();
    splash.slotShowWindow();
    QVERIFY(theScreen()->isVisible());
    splash.slotCloseWindow();
    QVERIFY(!theScreen()->isVisible());
}

void TestSplash::unknownBrandIsAnEmptyWindow()
{
    Splash splash("nobrand");
    QVERIFY(theScreen()->pixmap().isNull());
    QVERIFY(theScreen()->isVisible());
    QCOMPARE(theScreen()->size(), QSize(0, 0));
    QVERIFY(theScreen()->mask().isEmpty());
    splash.slotCloseWindow();
    QVERIFY(!theScreen()->isVisible());
    QCOMPARE(textsOf(*log),
             (QStringList {"splash image for brand:  \"nobrand\"", "showing splash ",
                           "closing splash "}));
}

void TestSplash::splashIsGoneWithItsObject()
{
    auto splash = std::make_unique<Splash>("test");
    QVERIFY(theScreen());
    splash.reset();
    QVERIFY(screens().isEmpty());
}

QTEST_MAIN(TestSplash)
#include "tst_splash.moc"
