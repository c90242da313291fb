#include "engine/statuslistener.h"
#include "support/scenerecorder.h"
#include "support/windowfixture.h"

#include <QQuickItem>
#include <QSignalSpy>
#include <QWidget>

/// Mouse and fingers in the view.
class TestMainWindowPointer : public WindowFixture
{
    Q_OBJECT

private slots:
    void init();

    void touchEventsBecomeSceneEvents();
    void pressAndReleaseClickOnce_data();
    void pressAndReleaseClickOnce();
    void releaseOutsideDoesNotClick_data();
    void releaseOutsideDoesNotClick();
    void secondFingerClicksNothingElse_data();
    void secondFingerClicksNothingElse();
    void oneFingerClicksAfterTwo();
    void clickMakesTheWindowActive_data();
    void clickMakesTheWindowActive();
    void windowIsActiveOnlyAfterTheClick_data();
    void windowIsActiveOnlyAfterTheClick();
    void clickInTheActiveWindowMovesNoFocus_data();
    void clickInTheActiveWindowMovesNoFocus();

private:
    QPoint centreOf(const QString& buttonText) const;
    bool makeClickable();
};

namespace {

QTouchDevice* touchScreen()
{
    static QTouchDevice* const device = QTest::createTouchDevice();
    return device;
}

/// The mouse or a finger at the view, as the window system reports it.
class Pointer
{
public:
    Pointer(QWindow* target, bool isFinger)
        : view(target)
        , finger(isFinger)
    {
    }

    void press(QPoint at)
    {
        if (finger)
            QTest::touchEvent(view, touchScreen()).press(0, at, view);
        else
            QTest::mousePress(view, Qt::LeftButton, {}, at);
    }

    void move(QPoint to)
    {
        if (finger)
            QTest::touchEvent(view, touchScreen()).move(0, to, view);
        else
            QTest::mouseMove(view, to);
    }

    void release(QPoint at)
    {
        if (finger)
            QTest::touchEvent(view, touchScreen()).release(0, at, view);
        else
            QTest::mouseRelease(view, Qt::LeftButton, {}, at);
    }

private:
    QWindow* view;
    bool finger;
};

/// Shows another window and makes it the one in use. Whether it is.
bool use(QWidget& other)
{
    other.show();
    other.activateWindow();
    return QTest::qWaitFor([&other] { return other.isActiveWindow(); }, patienceMs);
}

void addPointers()
{
    QTest::addColumn<bool>("isFinger");
    QTest::newRow("mouse") << false;
    QTest::newRow("finger") << true;
}

} // namespace

void TestMainWindowPointer::init()
{
    WindowFixture::init();
    build();
    log->clear();
}

QPoint TestMainWindowPointer::centreOf(const QString& buttonText) const
{
    for (const QQuickItem* item : view->rootObject()->findChildren<QQuickItem*>()) {
        if (item->isVisible() && item->property("btnText").toString().trimmed() == buttonText)
            return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
    }
    return {};
}

/// The view has the focus, and buttons that can be pressed.
bool TestMainWindowPointer::makeClickable()
{
    if (!QTest::qWaitForWindowExposed(view, patienceMs))
        return false;
    // A change of the active window in the midst of a click cancels it. Requests that are still
    // on their way to the window system may come in between.
    const bool active = QTest::qWaitFor(
        [&] {
            if (QGuiApplication::focusWindow() != view)
                view->requestActivate();
            return QGuiApplication::focusWindow() == view;
        },
        patienceMs);
    return active && makeReady();
}

// --- Scene events -----------------------------------------------------------------------------

void TestMainWindowPointer::touchEventsBecomeSceneEvents()
{
    const SceneRecorder recorder(view);
    QTouchEvent::TouchPoint point(0);
    point.setState(Qt::TouchPointPressed);
    point.setPos(QPointF(120, 45));
    QTouchEvent event(QEvent::TouchBegin, nullptr, Qt::NoModifier, Qt::TouchPointPressed, {point});
    view->touchEvent(&event);
    view->sendEventToUI(12.5, 7.25, 2);
    QCOMPARE(recorder.types,
             SceneRecorder::Types({QEvent::GraphicsSceneMouseMove, QEvent::GraphicsSceneMousePress,
                                   QEvent::GraphicsSceneMouseRelease}));
    const QPointF origin = view->geometry().topLeft();
    QCOMPARE(recorder.positions,
             QVector<QPointF>({QPointF(120, 45) - origin, QPointF(120, 45) - origin,
                               QPointF(12.5, 7.25) - origin}));
}

// --- Clicks -----------------------------------------------------------------------------------

void TestMainWindowPointer::pressAndReleaseClickOnce_data()
{
    QTest::addColumn<bool>("isFinger");
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("code");
    for (const bool isFinger : {false, true}) {
        const char* const pointer = isFinger ? "finger" : "mouse";
        QTest::addRow("%s, manual", pointer)
            << isFinger << "Manual Calibration" << int(SdkHelper::ManualCalibration);
        QTest::addRow("%s, touch", pointer)
            << isFinger << "Touch Calibration" << int(SdkHelper::TouchCalibration);
    }
}

void TestMainWindowPointer::pressAndReleaseClickOnce()
{
    QFETCH(bool, isFinger);
    QFETCH(QString, button);
    QFETCH(int, code);
    QVERIFY(makeClickable());
    Pointer pointer(view, isFinger);
    const QPoint place = centreOf(button);
    QVERIFY(!place.isNull());
    pointer.press(place);
    QCOMPARE(root("isLoading").toBool(), false); // it is the release that clicks
    pointer.release(place);
    QCOMPARE(root("isLoading").toBool(), true);
    QCoreApplication::processEvents();
    QCOMPARE(commands(), QVector<int> {code});
}

void TestMainWindowPointer::releaseOutsideDoesNotClick_data()
{
    addPointers();
}

void TestMainWindowPointer::releaseOutsideDoesNotClick()
{
    QFETCH(bool, isFinger);
    QVERIFY(makeClickable());
    Pointer pointer(view, isFinger);
    const QPoint place = centreOf("Manual Calibration");
    const QPoint outside(2, 2);
    pointer.press(place);
    pointer.move((place + outside) / 2);
    pointer.move(outside);
    pointer.release(outside);
    QCOMPARE(root("isLoading").toBool(), false);
    QCOMPARE(commands(), QVector<int> {});
    // Nor is anything left pressed: the next click is a click.
    pointer.press(place);
    pointer.release(place);
    QCoreApplication::processEvents();
    QCOMPARE(commands(), QVector<int> {SdkHelper::ManualCalibration});
}

void TestMainWindowPointer::secondFingerClicksNothingElse_data()
{
    QTest::addColumn<bool>("firstLiftsFirst");
    QTest::newRow("first lifts first") << true;
    QTest::newRow("second lifts first") << false;
}

void TestMainWindowPointer::secondFingerClicksNothingElse()
{
    QFETCH(bool, firstLiftsFirst);
    QVERIFY(makeClickable());
    const auto fingers = [&] { return QTest::touchEvent(view, touchScreen()); };
    const QPoint first = centreOf("Manual Calibration");
    const QPoint second = centreOf("Touch Calibration");
    QVERIFY(first != second);
    fingers().press(0, first, view);
    fingers().stationary(0).press(1, second, view);
    if (firstLiftsFirst) {
        fingers().release(0, first, view).stationary(1);
        fingers().release(1, second, view);
    } else {
        fingers().stationary(0).release(1, second, view);
        fingers().release(0, first, view);
    }
    QCoreApplication::processEvents();
    QCOMPARE(commands(), QVector<int> {SdkHelper::ManualCalibration});
}

void TestMainWindowPointer::oneFingerClicksAfterTwo()
{
    QVERIFY(makeClickable());
    const auto fingers = [&] { return QTest::touchEvent(view, touchScreen()); };
    const QPoint first = centreOf("Manual Calibration");
    const QPoint second = centreOf("Touch Calibration");
    fingers().press(0, first, view);
    fingers().stationary(0).press(1, second, view);
    fingers().release(0, first, view).stationary(1);
    fingers().release(1, second, view);
    QCOMPARE(commands(), QVector<int> {SdkHelper::ManualCalibration});
    QVERIFY(makeClickable());
    fingers().press(0, second, view);
    fingers().release(0, second, view);
    QCOMPARE(commands(), QVector<int> {SdkHelper::TouchCalibration});
}

// --- Activation -------------------------------------------------------------------------------

void TestMainWindowPointer::clickMakesTheWindowActive_data()
{
    addPointers();
}

void TestMainWindowPointer::clickMakesTheWindowActive()
{
    QFETCH(bool, isFinger);
    QVERIFY(makeClickable());
    QWidget other;
    QVERIFY(use(other));
    Pointer pointer(view, isFinger);
    pointer.press({2, 2});
    pointer.release({2, 2});
    QTRY_VERIFY_WITH_TIMEOUT(!other.isActiveWindow(), patienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(QGuiApplication::focusWindow(), view, patienceMs);
}

void TestMainWindowPointer::windowIsActiveOnlyAfterTheClick_data()
{
    addPointers();
}

void TestMainWindowPointer::windowIsActiveOnlyAfterTheClick()
{
    QFETCH(bool, isFinger);
    QVERIFY(makeClickable());
    QWidget other;
    QVERIFY(use(other));
    const QPoint place = centreOf("Manual Calibration");
    log->clear();
    Pointer pointer(view, isFinger);
    pointer.press(place);
    QCOMPARE(toldOf("MyWidget.activateWindow"), QStringList());
    pointer.release(place);
    // What the click has done comes first.
    const QStringList wanted {"set isLoading = true", "MyWidget.activateWindow()"};
    QCOMPARE(told(wanted), wanted);
    QCOMPARE(commands(), QVector<int> {SdkHelper::ManualCalibration});
}

void TestMainWindowPointer::clickInTheActiveWindowMovesNoFocus_data()
{
    addPointers();
}

void TestMainWindowPointer::clickInTheActiveWindowMovesNoFocus()
{
    QFETCH(bool, isFinger);
    QVERIFY(makeClickable());
    const QSignalSpy changes(qApp, &QGuiApplication::focusWindowChanged);
    Pointer pointer(view, isFinger);
    for (int click = 0; click < 3; ++click) {
        pointer.press({2, 2});
        pointer.release({2, 2});
    }
    QCoreApplication::processEvents();
    QVERIFY(changes.isEmpty());
    QCOMPARE(toldOf("activateWindow"), QStringList());
}

int main(int argc, char* argv[])
{
    runWindowTest<TestMainWindowPointer>(argc, argv);
}

#include "tst_mainwindowpointer.moc"
