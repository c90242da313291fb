#include "app/resources.h"
#include "engine/sdkhelper.h"
#include "engine/statuslistener.h"
#include "engine/workerthread.h"
#include "settings/globalsettings.h"
#include "support/logrecorder.h"
#include "ui/mainwindow.h"
#include "ui/mywidget.h"

#include <QAction>
#include <QMenuBar>
#include <QQmlContext>
#include <QQuickItem>
#include <QtTest>

#include <memory>

/// Drives the one window of the process, offscreen, without an engine. The window's container owns
/// it, so that it lives on the heap and ends with the application.
class TestMainWindow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void showsItselfWhenBuilt();
    void viewKnowsTheControllersObjects();
    void windowKeepsItsSizeWithTheMenuBar();
    void isTouchIsTheNegationOfTheSetting();
    void brandHasItsCode_data();
    void brandHasItsCode();
    void everyStatusIsWrittenAndShowsTheWindow_data();
    void everyStatusIsWrittenAndShowsTheWindow();
    void equalStatusReachesTheViewToo();
    void statusEndsThePendingCommand();
    void calibrationsDeleteTheCacheAndMarkTheView_data();
    void calibrationsDeleteTheCacheAndMarkTheView();
    void closingOnlyHides();
    void minimisedWindowComesBack();
    void cleanupTestCase();

private:
    QWidget* topLevel() const;
    QVariant root(const char* name) const { return view->rootObject()->property(name); }

    QTemporaryDir folder;
    std::unique_ptr<LogRecorder> log;
    MainWindow* view = nullptr;
};

QWidget* TestMainWindow::topLevel() const
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->windowTitle() == QLatin1String("Vireon"))
            return widget;
    }
    return nullptr;
}

void TestMainWindow::initTestCase()
{
    initResources();
    GS* settings = GS::instance();
    settings->penSettingsPath = folder.filePath(QStringLiteral("pensettings.ini")).toStdString();
    settings->mcCachePath = folder.filePath(QStringLiteral("mcCache")).toStdString();
    settings->userIniPath = folder.filePath(QStringLiteral("user.ini")).toStdString();
    log = std::make_unique<LogRecorder>();
    view =
        new MainWindow(QStringLiteral("Open"), QStringLiteral("Exit"), QStringLiteral("1.4.121"));
}

void TestMainWindow::init()
{
    view->showWindow();
    view->rootObject()->setProperty("isLoading", false);
    log->clear();
}

void TestMainWindow::showsItselfWhenBuilt()
{
    QVERIFY(topLevel());
    QVERIFY(topLevel()->isVisible());
    QCOMPARE(view->appName(), QStringLiteral("Vireon"));
    QCOMPARE(root("status").toInt(), 1);
    QCOMPARE(root("finishedLoading").toBool(), true);
    QCOMPARE(root("versionText").toString(), QStringLiteral("1.4.121"));
    QCOMPARE(root("isGreaterEqualsWin8").toBool(), false);
    QCOMPARE(root("isAutoStart").toBool(), true);
    QCOMPARE(root("statusText").toString(), QStringLiteral("Starting up..."));
}

void TestMainWindow::viewKnowsTheControllersObjects()
{
    const QQmlContext* context = view->rootContext();
    QCOMPARE(context->contextProperty(QStringLiteral("sdk")).value<QObject*>(),
             SdkHelper::instance());
    QCOMPARE(context->contextProperty(QStringLiteral("mainwindow")).value<QObject*>(), view);
    QCOMPARE(context->contextProperty(QStringLiteral("operatingSystem")).toString(),
             QStringLiteral("linux"));
}

void TestMainWindow::windowKeepsItsSizeWithTheMenuBar()
{
    QCOMPARE(topLevel()->minimumSize(), topLevel()->maximumSize());
    QCOMPARE(topLevel()->size(), topLevel()->minimumSize());
    const auto* bar = topLevel()->findChild<QMenuBar*>();
    QVERIFY(bar);
    QVERIFY(bar->isVisible());
}

void TestMainWindow::isTouchIsTheNegationOfTheSetting()
{
    QCOMPARE(GS::instance()->isTouch, 1);
    QCOMPARE(root("isTouch").toBool(), false);
}

void TestMainWindow::brandHasItsCode_data()
{
    QTest::addColumn<int>("brand");
    QTest::addColumn<QString>("code");
    QTest::newRow("0") << 0 << QStringLiteral("qor");
    QTest::newRow("1") << 1 << QStringLiteral("tal");
    QTest::newRow("2") << 2 << QStringLiteral("wendle");
    QTest::newRow("3") << 3 << QStringLiteral("nobrand");
    QTest::newRow("4") << 4 << QStringLiteral("marrowby");
    QTest::newRow("5") << 5 << QStringLiteral("nobrand");
    QTest::newRow("-1") << -1 << QStringLiteral("nobrand");
}

void TestMainWindow::brandHasItsCode()
{
    QFETCH(int, brand);
    QFETCH(QString, code);
    GS::instance()->brand = brand;
    const QString found = view->brand();
    GS::instance()->brand = 0;
    QCOMPARE(found, code);
}

void TestMainWindow::everyStatusIsWrittenAndShowsTheWindow_data()
{
    QTest::addColumn<int>("status");
    for (const int status : {-99, -14, -12, -10, -6, -5, -4, -3, -2, -1, 0, 1, 2, 77})
        QTest::addRow("%d", status) << status;
}

void TestMainWindow::everyStatusIsWrittenAndShowsTheWindow()
{
    QFETCH(int, status);
    view->hideWindow();
    QVERIFY(!topLevel()->isVisible());
    view->onStatusChanged(status);
    QCOMPARE(root("status").toInt(), status);
    QVERIFY(topLevel()->isVisible());
    QCOMPARE(log->count(QStringLiteral("firmware version: 999")), 1);
    QCOMPARE(log->count(QStringLiteral("status %1").arg(status)), 1);
}

void TestMainWindow::equalStatusReachesTheViewToo()
{
    view->onStatusChanged(0);
    view->rootObject()->setProperty("isLoading", true);
    view->onStatusChanged(0);
    QCOMPARE(root("isLoading").toBool(), false);
    QCOMPARE(root("statusText").toString(), QStringLiteral("Started and ready"));
}

void TestMainWindow::statusEndsThePendingCommand()
{
    // There is no tool here: the command stays pending until the next report.
    StatusListener::instance()->injectStatus(0);
    view->startAutoCalibration();
    QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("returned from")), 1, 20000);
    SdkHelper::instance()->trigger(3);
    QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("Action:  3  last:  0 ")), 1, 20000);
    view->onStatusChanged(0);
    SdkHelper::instance()->trigger(3);
    QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("Action:  3  last:  -1 ")), 1, 20000);
}

void TestMainWindow::calibrationsDeleteTheCacheAndMarkTheView_data()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::addColumn<int>("action");
    QTest::addColumn<bool>("deletes");
    QTest::newRow("manual") << QByteArray("startManualCalibration") << 1 << true;
    QTest::newRow("touch") << QByteArray("startTouchCalibration") << 4 << true;
    QTest::newRow("auto") << QByteArray("startAutoCalibration") << 0 << false;
}

void TestMainWindow::calibrationsDeleteTheCacheAndMarkTheView()
{
    QFETCH(QByteArray, slot);
    QFETCH(int, action);
    QFETCH(bool, deletes);
    view->rootObject()->setProperty("aspectRatioWarningShown", false);
    QFile cache(folder.filePath(QStringLiteral("mcCache")));
    for (const bool present : {true, false}) {
        cache.remove();
        if (present)
            QVERIFY(cache.open(QIODevice::WriteOnly));
        cache.close();
        log->clear();
        QVERIFY(QMetaObject::invokeMethod(view, slot.constData()));
        QCOMPARE(cache.exists(), present && !deletes);
        QCOMPARE(root("isLoading").toBool(), true);
        QCOMPARE(root("aspectRatioWarningShown").toBool(), true);
        QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("Action:  %1 ").arg(action)), 1, 20000);
        QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("returned from")), 1, 20000);
    }
}

void TestMainWindow::closingOnlyHides()
{
    QVERIFY(!topLevel()->close());
    QVERIFY(!topLevel()->isVisible());
    view->showWindow();
    QVERIFY(topLevel()->isVisible());
}

void TestMainWindow::minimisedWindowComesBack()
{
    topLevel()->setWindowState(Qt::WindowMinimized);
    view->showWindow();
    QVERIFY(!topLevel()->isMinimized());
}

void TestMainWindow::cleanupTestCase()
{
    WorkerThread::stopAll();
    QVERIFY(WorkerThread::waitForAll(20000));
    delete topLevel();
    QCOMPARE(log->count(QStringLiteral("quiting mainwindow")), 1);
    log.reset();
}

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
