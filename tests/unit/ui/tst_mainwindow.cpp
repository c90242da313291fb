#include "support/windowfixture.h"

#include <QLayout>
#include <QMenuBar>
#include <QQmlContext>
#include <QQuickItem>
#include <QtMath>

/// The window as others see it: its interface, its size, how it is shown and hidden.
class TestMainWindow : public WindowFixture
{
    Q_OBJECT

private slots:
    void init();

    void slotsKeepTheirOrder();
    void viewKnowsTheControllersObjects();
    void showsItselfWhenBuilt();
    void brandHasItsCode_data();
    void brandHasItsCode();
    void systemIsTold();
    void stylusOnlyIsTheSetting();

    void windowKeepsItsSizeWithTheMenuBar();
    void viewFillsTheWindowBelowTheMenuBar();
    void windowHasTheColourOfTheView();
    void closingOnlyHides();
    void viewIsNeverHiddenByItself();
    void minimisedWindowComesBack();
    void shownWindowIsRaisedAndTheSplashClosed();
    void broughtToTheFrontItIsActive();
    void resolutionChangeShowsTheWindowAnewOnlyIfShown_data();
    void resolutionChangeShowsTheWindowAnewOnlyIfShown();
    void resolutionChangePutsTheWindowOnAScreen();
    void resolutionChangeChecksTheScreens_data();
    void resolutionChangeChecksTheScreens();
};

void TestMainWindow::init()
{
    WindowFixture::init();
    build();
    log->clear();
}

// --- Interface --------------------------------------------------------------------------------

void TestMainWindow::slotsKeepTheirOrder()
{
    const QList<QByteArray> expected {
        "onGetHelpTriggered()",
        "onTroubleshootTriggered()",
        "onVideoTutorialTriggered()",
        "onUpdateFirmwareTriggered()",
        "exitApp()",
        "calibrateRayline()",
        "startAutoCalibration()",
        "startManualCalibration()",
        "startTouchCalibration()",
        "openSensorViewer()",
        "startParallaxCorrection()",
        "onStatusChanged(int)",
        "onTrayIconClicked(QSystemTrayIcon::ActivationReason)",
        "slotAppQuitting()",
        "resetCalibration()",
        "pauseResumeCalibration()",
        "toggleAutoStart()",
        "showMessage(QString)",
        "hideMessage()",
        "showWindow()",
        "hideWindow()",
        "openLogWindow()",
        "onClosing()",
        "singlePointerMode()",
        "multiPointerMode()",
        "setPointerMode(bool)",
        "offsetCorrection()",
        "os()",
        "brand()",
        "appName()",
        "onResolutionChanged(int,int)",
        "toggleKeepACpuAwake()",
        "stylusOnly()",
        "aspectRatioWarningShown()",
        "setAspectRatioWarningShown(bool)",
        "setAcPopUpDisabled()",
        "onGoingToSleep()",
        "onWakingUp()",
        "adaptWindowSize(int,int,double)",
        "onFileMenuShow()",
        "onLoadCcf()",
        "showMessage()",
        "wasteCpu()",
    };
    const QMetaObject& meta = MainWindow::staticMetaObject;
    QList<QByteArray> found;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (!(meta.method(i).attributes() & QMetaMethod::Cloned))
            found.append(meta.method(i).methodSignature());
    }
    QCOMPARE(found, expected);
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
}

void TestMainWindow::viewKnowsTheControllersObjects()
{
    const QQmlContext* context = view->rootContext();
    QCOMPARE(context->contextProperty("sdk").value<QObject*>(), SdkHelper::instance());
    QCOMPARE(context->contextProperty("mainwindow").value<QObject*>(), view);
    QCOMPARE(context->contextProperty("operatingSystem").toString(), QString("linux"));
}

void TestMainWindow::showsItselfWhenBuilt()
{
    QVERIFY(topLevel());
    QVERIFY(topLevel()->isVisible());
    QCOMPARE(view->appName(), QString("Vireon"));
    QCOMPARE(root("status").toInt(), int(StatusStarted));
    QCOMPARE(root("finishedLoading").toBool(), true);
    QCOMPARE(root("versionText").toString(), QString("1.4.121"));
    QCOMPARE(root("isGreaterEqualsWin8").toBool(), false);
    QCOMPARE(root("isAutoStart").toBool(), true);
    QCOMPARE(root("statusText").toString(), QString("Starting up..."));
}

void TestMainWindow::brandHasItsCode_data()
{
    QTest::addColumn<int>("brand");
    QTest::addColumn<QString>("code");
    QTest::newRow("0") << 0 << "qor";
    QTest::newRow("1") << 1 << "tal";
    QTest::newRow("2") << 2 << "wendle";
    QTest::newRow("3") << 3 << "nobrand";
    QTest::newRow("4") << 4 << "marrowby";
    QTest::newRow("5") << 5 << "nobrand";
    QTest::newRow("-1") << -1 << "nobrand";
}

void TestMainWindow::brandHasItsCode()
{
    QFETCH(int, brand);
    QFETCH(QString, code);
    GS::instance()->brand = brand;
    QCOMPARE(view->brand(), code);
}

void TestMainWindow::systemIsTold()
{
    QCOMPARE(view->os(), QString("linux"));
}

void TestMainWindow::stylusOnlyIsTheSetting()
{
    QVERIFY(!view->stylusOnly());
    GS::instance()->stylusOnly = true;
    QVERIFY(view->stylusOnly());
}

// --- Window -----------------------------------------------------------------------------------

void TestMainWindow::windowKeepsItsSizeWithTheMenuBar()
{
    QCOMPARE(topLevel()->minimumSize(), topLevel()->maximumSize());
    QCOMPARE(topLevel()->size(), topLevel()->minimumSize());
    const auto* bar = topLevel()->findChild<QMenuBar*>();
    QVERIFY(bar);
    QVERIFY(bar->isVisible());
}

void TestMainWindow::viewFillsTheWindowBelowTheMenuBar()
{
    const QRect bar = topLevel()->findChild<QMenuBar*>()->geometry();
    QCOMPARE(bar.topLeft(), QPoint(0, 0));
    QCOMPARE(bar.width(), topLevel()->width());
    const QRect below(0, bar.height(), bar.width(), topLevel()->height() - bar.height());
    QCOMPARE(topLevel()->layout()->itemAt(0)->geometry(), below);
    const QQuickItem* root = view->rootObject();
    QCOMPARE(below.size(), QSize(qFloor(root->width()), qFloor(root->height())));
}

void TestMainWindow::windowHasTheColourOfTheView()
{
    const auto colour = root("color").value<QColor>();
    QCOMPARE(view->color(), colour);
    QCOMPARE(topLevel()->palette().color(QPalette::Window), colour);
    // Where the bar has no entry.
    const QImage window = topLevel()->grab().toImage();
    QCOMPARE(window.pixelColor(window.width() - 5, 5), colour);
}

void TestMainWindow::closingOnlyHides()
{
    QVERIFY(!topLevel()->close());
    QVERIFY(!topLevel()->isVisible());
    view->showWindow();
    QVERIFY(topLevel()->isVisible());
}

void TestMainWindow::viewIsNeverHiddenByItself()
{
    view->hideWindow();
    QVERIFY(!topLevel()->isVisible());
    view->showWindow();
    QVERIFY(view->isVisible());
    QCOMPARE(toldOf("MainWindow.setVisible"), QStringList());
}

void TestMainWindow::minimisedWindowComesBack()
{
    topLevel()->setWindowState(Qt::WindowMinimized);
    view->showWindow();
    QVERIFY(!topLevel()->isMinimized());
}

void TestMainWindow::shownWindowIsRaisedAndTheSplashClosed()
{
    view->hideWindow();
    log->clear();
    view->showWindow();
    const QStringList wanted {"closing splash ", "MyWidget.setVisible(true)", "MyWidget.raise()"};
    QCOMPARE(told(wanted), wanted);
}

void TestMainWindow::broughtToTheFrontItIsActive()
{
    view->hideWindow();
    log->clear();
    view->bringToFront();
    const QStringList wanted {"MyWidget.setVisible(true)", "MyWidget.raise()"};
    QCOMPARE(told(wanted), wanted);
    QTRY_VERIFY_WITH_TIMEOUT(topLevel()->isActiveWindow(), patienceMs);
}

void TestMainWindow::resolutionChangeShowsTheWindowAnewOnlyIfShown_data()
{
    QTest::addColumn<bool>("shown");
    QTest::newRow("shown") << true;
    QTest::newRow("hidden") << false;
}

void TestMainWindow::resolutionChangeShowsTheWindowAnewOnlyIfShown()
{
    QFETCH(bool, shown);
    const QStringList again {"MyWidget.setVisible(false)", "MyWidget.setVisible(true)"};
    if (!shown)
        view->hideWindow();
    log->clear();
    view->onResolutionChanged(1280, 720);
    QCOMPARE(told(again), shown ? again : QStringList());
    QCOMPARE(topLevel()->isVisible(), shown);
}

void TestMainWindow::resolutionChangePutsTheWindowOnAScreen()
{
    const QPoint centred = topLevel()->pos();
    for (const bool shown : {true, false}) {
        topLevel()->move(-5000, 30);
        if (!shown)
            view->hideWindow();
        view->onResolutionChanged();
        view->showWindow();
        QCOMPARE(topLevel()->pos(), centred);
    }
}

void TestMainWindow::resolutionChangeChecksTheScreens_data()
{
    QTest::addColumn<double>("rate");
    QTest::addColumn<bool>("warns");
    QTest::newRow("fast") << 60.0 << false;
    QTest::newRow("slow") << 30.0 << true;
}

void TestMainWindow::resolutionChangeChecksTheScreens()
{
    QFETCH(double, rate);
    QFETCH(bool, warns);
    calls->refreshRate = rate;
    view->onResolutionChanged();
    QCOMPARE(log->count("aspect ratio changed to: "), 1);
    QCOMPARE(log->count("show freq warning popup"), warns ? 1 : 0);
}

int main(int argc, char* argv[])
{
    runWindowTest<TestMainWindow>(argc, argv);
}

#include "tst_mainwindow.moc"
