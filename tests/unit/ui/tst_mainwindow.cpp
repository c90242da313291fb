#include "app/resources.h"
#include "base/workerthread.h"
#include "engine/sdkhelper.h"
#include "engine/statuslistener.h"
#include "settings/globalsettings.h"
#include "support/logrecorder.h"
#include "ui/looks.h"
#include "ui/mainwindow.h"
#include "ui/mywidget.h"
#include "ui/supportaddresses.h"

#include <QAction>
#include <QDesktopServices>
#include <QGraphicsSceneMouseEvent>
#include <QLayout>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QQmlContext>
#include <QQuickItem>
#include <QtTest>

#include <csignal>
#include <cstdio>
#include <memory>
#include <thread>
#include <unistd.h>

/// Drives the one window of the process, offscreen, without an engine. The window's container owns
/// it, so that it lives on the heap.
class TestMainWindow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void showsItselfWhenBuilt();
    void viewKnowsTheControllersObjects();
    void windowKeepsItsSizeWithTheMenuBar();
    void viewFillsTheWindowBelowTheMenuBar();
    void windowHasTheColourOfTheView();
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

    void slotsKeepTheirOrder();
    void menuBarHasThreeMenus();
    void helpEntriesOpenTheirPages_data();
    void helpEntriesOpenTheirPages();
    void actionsRunTheirSlots_data();
    void actionsRunTheirSlots();
    void pointerModeSetsTheCheckMarks();
    void firmwareActionFollowsStatusAndVersion_data();
    void firmwareActionFollowsStatusAndVersion();
    void firmwareBoxTellsHow_data();
    void firmwareBoxTellsHow();
    void onlyAPlainTrayClickOpensTheWindow();
    void trayIconIsConnected();
    void trayMenuHasOneItem();
    void resolutionChangeShowsTheWindowAnewOnlyIfShown();
    void touchPointsBecomeSceneEvents_data();
    void touchPointsBecomeSceneEvents();
    void everyPointIsTranslatedInItsOrder();
    void otherEventTypesPress();
    void pressAndReleaseClickOnce_data();
    void pressAndReleaseClickOnce();
    void releaseOutsideDoesNotClick_data();
    void releaseOutsideDoesNotClick();
    void secondFingerClicksNothingElse();
    void clickMakesTheWindowActive_data();
    void clickMakesTheWindowActive();
    void clickInTheActiveWindowMovesNoFocus_data();
    void clickInTheActiveWindowMovesNoFocus();
    void commandSlotsSendTheirAction_data();
    void commandSlotsSendTheirAction();
    void parallaxCorrectionLeavesCacheAndViewAlone();
    void resetIsRefusedWithoutAnEngine();
    void resetShowsNotCalibratedAtOnce();
    void pauseAndResumeTakeTurns();
    void autoStartIsSavedWithEveryToggle();
    void missingHelperLeavesTheSwitchOn();
    void keepAwakeHelperRunsWhileSwitchedOn();
    void wastingEndsWithTheSetting();
    void otherCpuStateIsKept();
    void warningsAreRemembered();
    void wakingUpPresentsStarted();
    void quittingShowsNoHint(); // the last but one: there is no way back
    void cleanupTestCase();

private:
    QWidget* topLevel() const;
    QAction* action(const QString& text) const;
    QByteArray savedSettings() const;
    QVariant root(const char* name) const { return view->rootObject()->property(name); }
    QPoint centreOf(const QString& buttonText) const;
    void makeReady();
    void expectOneCommand(int code);
    qint64 helperPid() const;

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
    applyLooks();
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
    const auto colour = view->rootObject()->property("color").value<QColor>();
    QCOMPARE(view->color(), colour);
    QCOMPARE(topLevel()->palette().color(QPalette::Window), colour);
    // Where the bar has no entry.
    const QImage window = topLevel()->grab().toImage();
    QCOMPARE(window.pixelColor(window.width() - 5, 5), colour);
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

QAction* TestMainWindow::action(const QString& text) const
{
    for (QAction* candidate : topLevel()->findChildren<QAction*>()) {
        if (candidate->text() == text)
            return candidate;
    }
    return nullptr;
}

QByteArray TestMainWindow::savedSettings() const
{
    QFile file(folder.filePath(QStringLiteral("user.ini")));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
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

void TestMainWindow::menuBarHasThreeMenus()
{
    QStringList titles;
    QList<QStringList> entries;
    for (const QAction* title : topLevel()->findChild<QMenuBar*>()->actions()) {
        titles.append(title->text());
        QStringList texts;
        for (const QAction* entry : title->menu()->actions())
            texts.append(entry->text());
        entries.append(texts);
    }
    QCOMPARE(titles,
             QStringList(
                 {QStringLiteral("File"), QStringLiteral("Calibration"), QStringLiteral("Help")}));
    QCOMPARE(entries.at(0),
             QStringList({QStringLiteral("&Hide"), QStringLiteral("Update Firmware"),
                          QStringLiteral("&Exit")}));
    QCOMPARE(entries.at(1), QStringList({QStringLiteral("&Reset")}));
    QCOMPARE(entries.at(2),
             QStringList({QStringLiteral("Troubleshoot"), QStringLiteral("Video Tutorial"),
                          QStringLiteral("Get Help")}));
    QVERIFY(action(QStringLiteral("&Reload Ccf")));
}

namespace {

/// The user's browser.
class Browser : public QObject
{
    Q_OBJECT

public:
    QList<QUrl> opened;

public slots:
    void open(const QUrl& address) { opened.append(address); }
};

} // namespace

void TestMainWindow::helpEntriesOpenTheirPages_data()
{
    QTest::addColumn<QString>("address");
    QTest::newRow("Troubleshoot") << knowledgeBaseAddress;
    QTest::newRow("Video Tutorial") << videoTutorialAddress;
    QTest::newRow("Get Help") << newTicketAddress;
}

void TestMainWindow::helpEntriesOpenTheirPages()
{
    QFETCH(QString, address);
    Browser browser;
    QDesktopServices::setUrlHandler("https", &browser, "open");
    action(QTest::currentDataTag())->trigger();
    QDesktopServices::unsetUrlHandler("https");
    QCOMPARE(browser.opened, QList<QUrl> {QUrl(address)});
}

void TestMainWindow::actionsRunTheirSlots_data()
{
    QTest::addColumn<int>("code");
    QTest::newRow("&Reload Ccf") << 19;
    QTest::newRow("&Reset") << 11;
    QTest::newRow("&Single Input") << 14;
    QTest::newRow("&Multi Input") << 15;
    QTest::newRow("&Hide") << -1; // no command
}

void TestMainWindow::actionsRunTheirSlots()
{
    QFETCH(int, code);
    makeReady();
    action(QTest::currentDataTag())->trigger();
    QCOMPARE(topLevel()->isVisible(), code != -1);
    if (code != -1)
        QTRY_COMPARE_WITH_TIMEOUT(log->count(QString("Action:  %1 ").arg(code)), 1, 20000);
    QCOMPARE(log->count("Quit Vireon clicked"), 0);
    QCOMPARE(action("&Single Input")->isChecked(), code != 15);
    QCOMPARE(action("&Multi Input")->isChecked(), code == 15);
    view->setPointerMode(true);
}

void TestMainWindow::pointerModeSetsTheCheckMarks()
{
    QAction* single = action(QStringLiteral("&Single Input"));
    QAction* multi = action(QStringLiteral("&Multi Input"));
    QVERIFY(single && single->isCheckable() && single->isChecked());
    QVERIFY(multi && multi->isCheckable() && !multi->isChecked());
    view->setPointerMode(false);
    QVERIFY(!single->isChecked());
    QVERIFY(multi->isChecked());
    view->setPointerMode(true);
    QVERIFY(single->isChecked());
    QVERIFY(!multi->isChecked());
    QCOMPARE(log->count(QStringLiteral("Action:")), 0);
}

// --- Status -----------------------------------------------------------------------------------

void TestMainWindow::firmwareActionFollowsStatusAndVersion_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<int>("firmware");
    QTest::addColumn<bool>("enabled");
    QTest::newRow("nothing read yet") << 0 << 999 << false;
    QTest::newRow("new") << 0 << 2 << false;
    QTest::newRow("old") << 0 << 1 << true;
    QTest::newRow("very old") << -6 << 0 << true;
    QTest::newRow("old, not ready") << -1 << 1 << false;
    QTest::newRow("old, restarting") << -10 << 1 << false;
    QTest::newRow("old, given up") << -12 << 1 << false;
}

void TestMainWindow::firmwareActionFollowsStatusAndVersion()
{
    QFETCH(int, status);
    QFETCH(int, firmware);
    QFETCH(bool, enabled);
    StatusListener::instance()->firmware = firmware;
    view->onStatusChanged(status);
    StatusListener::instance()->firmware = 999;
    QCOMPARE(action(QStringLiteral("Update Firmware"))->isEnabled(), enabled);
}

namespace {

const char* const firmwareText =
    "A new firmware (Ver. 1.2) is available (you have Ver. 1.1).<br><br>It supports to store the "
    "calibration data onto Vireon. If you want to update it, please see the Firmware Update Manual "
    "in the website link below and click 'Start' button below. This will open the firmware "
    "updater. Select the file 'firmware.iic' from your installation folder.<br><br><br><br>"
    "Manual: <a href='%1'>Download here.</a>";
const char* const remotePenFirmwareText =
    "A new firmware (Ver. 1.2) is available (you have Ver. 1.1).<br><br>It supports to store the "
    "calibration data onto Vireon. If you want to update it, If you want to update it, please "
    "prepare the Windows computer and see the Firmware Update Manual in the website link below."
    "<br><br>Manual: <a href='%1'>Download here.</a>";

} // namespace

void TestMainWindow::firmwareBoxTellsHow_data()
{
    QTest::addColumn<int>("brand");
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("text");
    QTest::newRow("start") << 0 << "Start" << QString(firmwareText).arg(firmwareManualAddress);
    QTest::newRow("exit") << 4 << "Exit" << QString(firmwareText).arg(firmwareManualAddress);
    QTest::newRow("remote pen") << 1 << "Exit"
                                << QString(remotePenFirmwareText).arg(remotePenDownloadAddress);
}

void TestMainWindow::firmwareBoxTellsHow()
{
    QFETCH(int, brand);
    QFETCH(QString, button);
    QFETCH(QString, text);
    StatusListener::instance()->firmware = 1;
    GS::instance()->brand = brand;
    QString title;
    QString shown;
    QStringList buttons;
    QList<int> roles;
    Qt::TextFormat format = Qt::PlainText;
    QTimer::singleShot(0, view, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box)
            return;
        title = box->windowTitle();
        shown = box->text();
        format = box->textFormat();
        QAbstractButton* chosen = nullptr;
        for (QAbstractButton* candidate : box->buttons()) {
            buttons.append(candidate->text());
            roles.append(box->buttonRole(candidate));
            if (candidate->text() == button)
                chosen = candidate;
        }
        chosen->click();
    });
    action("Update Firmware")->setEnabled(true);
    action("Update Firmware")->trigger();
    GS::instance()->brand = 0;
    StatusListener::instance()->firmware = 999;
    QCOMPARE(title, QString("Update Firmware"));
    QCOMPARE(shown, text);
    QCOMPARE(format, Qt::RichText);
    QCOMPARE(buttons, QStringList({"Start", "Exit"}));
    QCOMPARE(roles, QList<int>({QMessageBox::YesRole, QMessageBox::NoRole}));
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(log->count("Action:"), 0);
}

// --- Window -----------------------------------------------------------------------------------

void TestMainWindow::onlyAPlainTrayClickOpensTheWindow()
{
    view->hideWindow();
    for (const auto reason : {QSystemTrayIcon::Context, QSystemTrayIcon::DoubleClick,
                              QSystemTrayIcon::MiddleClick, QSystemTrayIcon::Unknown}) {
        view->onTrayIconClicked(reason);
        QVERIFY(!topLevel()->isVisible());
    }
    QCOMPARE(log->count(QStringLiteral("closing splash ")), 0);
    view->onTrayIconClicked();
    QVERIFY(topLevel()->isVisible());
    QCOMPARE(log->count(QStringLiteral("closing splash ")), 1);
}

void TestMainWindow::trayIconIsConnected()
{
    auto* icon = view->findChild<QSystemTrayIcon*>();
    QVERIFY(icon && icon->isVisible() && !icon->icon().isNull());
    view->hideWindow();
    emit icon->activated(QSystemTrayIcon::DoubleClick);
    QVERIFY(!topLevel()->isVisible());
    emit icon->activated(QSystemTrayIcon::Trigger);
    QVERIFY(topLevel()->isVisible());
    view->hideWindow();
    emit icon->messageClicked();
    QVERIFY(topLevel()->isVisible());
}

void TestMainWindow::trayMenuHasOneItem()
{
    const QMenu* menu = view->findChild<QSystemTrayIcon*>()->contextMenu();
    QVERIFY(menu && !menu->parent());
    QCOMPARE(menu->actions().size(), 1);
    QCOMPARE(menu->actions().first()->text(), QStringLiteral("Exit"));
    QCOMPARE(menu->actions().first()->parent(), view);
}

void TestMainWindow::resolutionChangeShowsTheWindowAnewOnlyIfShown()
{
    class Counter : public QObject
    {
    public:
        QVector<QEvent::Type> seen;
        bool eventFilter(QObject*, QEvent* event) override
        {
            if (event->type() == QEvent::Show || event->type() == QEvent::Hide)
                seen.append(event->type());
            return false;
        }
    } counter;
    topLevel()->installEventFilter(&counter);
    view->onResolutionChanged(1280, 720);
    QCOMPARE(counter.seen, QVector<QEvent::Type>({QEvent::Hide, QEvent::Show}));
    view->hideWindow();
    counter.seen.clear();
    view->onResolutionChanged();
    QCOMPARE(counter.seen, QVector<QEvent::Type>());
    QVERIFY(!topLevel()->isVisible());
}

namespace {

/// Takes the scene events that a window gets.
class SceneRecorder : public QObject
{
public:
    QVector<QEvent::Type> types;
    QVector<QPointF> positions;
    bool leftOnly = true;

    bool eventFilter(QObject*, QEvent* event) override
    {
        const auto* scene = dynamic_cast<QGraphicsSceneMouseEvent*>(event);
        if (!scene)
            return false;
        types.append(event->type());
        positions.append(scene->scenePos());
        leftOnly =
            leftOnly && scene->button() == Qt::LeftButton && scene->buttons() == Qt::LeftButton;
        return true;
    }
};

} // namespace

void TestMainWindow::touchPointsBecomeSceneEvents_data()
{
    using Events = QVector<QEvent::Type>;
    const auto move = QEvent::GraphicsSceneMouseMove;
    QTest::addColumn<int>("touchState");
    QTest::addColumn<Events>("events");
    QTest::newRow("pressed") << int(Qt::TouchPointPressed)
                             << Events {move, QEvent::GraphicsSceneMousePress};
    QTest::newRow("moved") << int(Qt::TouchPointMoved) << Events {move};
    QTest::newRow("stationary") << int(Qt::TouchPointStationary) << Events {};
    QTest::newRow("released") << int(Qt::TouchPointReleased)
                              << Events {move, QEvent::GraphicsSceneMouseRelease};
}

void TestMainWindow::touchPointsBecomeSceneEvents()
{
    QFETCH(int, touchState);
    const auto state = Qt::TouchPointState(touchState);
    QFETCH(QVector<QEvent::Type>, events);
    SceneRecorder recorder;
    view->installEventFilter(&recorder);
    QTouchEvent::TouchPoint first(0);
    first.setState(state);
    first.setPos(QPointF(120, 45));
    QTouchEvent::TouchPoint second(1);
    second.setState(Qt::TouchPointStationary);
    QTouchEvent event(QEvent::TouchUpdate, nullptr, Qt::NoModifier,
                      state | Qt::TouchPointStationary, {first, second});
    view->touchEvent(&event);
    view->removeEventFilter(&recorder);
    QCOMPARE(recorder.types, events);
    QVERIFY(recorder.leftOnly);
    const QPointF expected = QPointF(120, 45) - view->geometry().topLeft();
    for (const QPointF& position : qAsConst(recorder.positions))
        QCOMPARE(position, expected);
}

void TestMainWindow::everyPointIsTranslatedInItsOrder()
{
    SceneRecorder recorder;
    view->installEventFilter(&recorder);
    QList<QTouchEvent::TouchPoint> points;
    for (const auto state :
         {Qt::TouchPointReleased, Qt::TouchPointStationary, Qt::TouchPointMoved}) {
        QTouchEvent::TouchPoint point(points.size());
        point.setState(state);
        point.setPos(QPointF(100 * points.size(), 7));
        points.append(point);
    }
    QTouchEvent event(QEvent::TouchUpdate, nullptr, Qt::NoModifier, Qt::TouchPointMoved, points);
    view->touchEvent(&event);
    view->removeEventFilter(&recorder);
    const QPointF origin = view->geometry().topLeft();
    QVERIFY(!origin.isNull()); // or its part in the position would not be seen
    QCOMPARE(
        recorder.types,
        QVector<QEvent::Type>({QEvent::GraphicsSceneMouseMove, QEvent::GraphicsSceneMouseRelease,
                               QEvent::GraphicsSceneMouseMove}));
    QCOMPARE(recorder.positions,
             QVector<QPointF>(
                 {QPointF(0, 7) - origin, QPointF(0, 7) - origin, QPointF(200, 7) - origin}));
}

void TestMainWindow::otherEventTypesPress()
{
    SceneRecorder recorder;
    view->installEventFilter(&recorder);
    for (const int type : {0, 1, 2, 3, -1})
        view->sendEventToUI(12.5, 7.25, type);
    view->removeEventFilter(&recorder);
    QCOMPARE(
        recorder.types,
        QVector<QEvent::Type>({QEvent::GraphicsSceneMousePress, QEvent::GraphicsSceneMouseMove,
                               QEvent::GraphicsSceneMouseRelease, QEvent::GraphicsSceneMousePress,
                               QEvent::GraphicsSceneMousePress}));
    QCOMPARE(recorder.positions.first(), QPointF(12.5, 7.25) - view->geometry().topLeft());
    QVERIFY(recorder.leftOnly);
}

namespace {

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
            QTest::touchEvent(view, touchDevice()).press(0, at, view);
        else
            QTest::mousePress(view, Qt::LeftButton, {}, at);
    }

    void move(QPoint to)
    {
        if (finger)
            QTest::touchEvent(view, touchDevice()).move(0, to, view);
        else
            QTest::mouseMove(view, to);
    }

    void release(QPoint at)
    {
        if (finger)
            QTest::touchEvent(view, touchDevice()).release(0, at, view);
        else
            QTest::mouseRelease(view, Qt::LeftButton, {}, at);
    }

    static QTouchDevice* touchDevice()
    {
        static QTouchDevice* const device = QTest::createTouchDevice();
        return device;
    }

private:
    QWindow* view;
    bool finger;
};

void addPointers()
{
    QTest::addColumn<bool>("isFinger");
    QTest::newRow("mouse") << false;
    QTest::newRow("finger") << true;
}

} // namespace

QPoint TestMainWindow::centreOf(const QString& buttonText) const
{
    for (const QQuickItem* item : view->rootObject()->findChildren<QQuickItem*>()) {
        if (item->isVisible() && item->property("btnText").toString().trimmed() == buttonText)
            return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
    }
    return {};
}

/// Ready, with buttons that can be pressed.
void TestMainWindow::makeReady()
{
    QVERIFY(QTest::qWaitForWindowExposed(view));
    // A change of the active window in the midst of a click cancels it. Requests that are still
    // on their way to the window system may come in between.
    const auto isActive = [&] {
        if (QGuiApplication::focusWindow() != view)
            view->requestActivate();
        return QGuiApplication::focusWindow() == view;
    };
    QTRY_VERIFY(isActive());
    StatusListener::instance()->injectStatus(0);
    QTRY_COMPARE(root("status").toInt(), 0);
    QTRY_COMPARE(root("buttonsDisabled").toBool(), false);
    log->clear();
}

/// A command comes, and no second one until a third, which is known to be given after it.
void TestMainWindow::expectOneCommand(int code)
{
    QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("Action:  %1 ").arg(code)), 1, 20000);
    view->onLoadCcf();
    QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("Action:  19 ")), 1, 20000);
    QCOMPARE(log->count(QStringLiteral("Action:")), 2);
}

void TestMainWindow::pressAndReleaseClickOnce_data()
{
    addPointers();
}

void TestMainWindow::pressAndReleaseClickOnce()
{
    QFETCH(bool, isFinger);
    for (const auto& [text, code] :
         {std::pair("Manual Calibration", 1), std::pair("Touch Calibration", 4)}) {
        makeReady();
        Pointer pointer(view, isFinger);
        const QPoint place = centreOf(QString(text));
        QVERIFY(!place.isNull());
        pointer.press(place);
        QCOMPARE(root("isLoading").toBool(), false); // it is the release that clicks
        pointer.release(place);
        QCOMPARE(root("isLoading").toBool(), true);
        expectOneCommand(code);
    }
}

void TestMainWindow::releaseOutsideDoesNotClick_data()
{
    addPointers();
}

void TestMainWindow::releaseOutsideDoesNotClick()
{
    QFETCH(bool, isFinger);
    makeReady();
    Pointer pointer(view, isFinger);
    const QPoint place = centreOf("Manual Calibration");
    const QPoint outside(2, 2);
    pointer.press(place);
    pointer.move((place + outside) / 2);
    pointer.move(outside);
    pointer.release(outside);
    QCOMPARE(root("isLoading").toBool(), false);
    // Nor is anything left pressed: the next click is a click.
    pointer.press(place);
    pointer.release(place);
    expectOneCommand(1);
}

void TestMainWindow::secondFingerClicksNothingElse()
{
    const auto fingers = [&] { return QTest::touchEvent(view, Pointer::touchDevice()); };
    for (const bool firstLiftsFirst : {true, false}) {
        makeReady();
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
        expectOneCommand(1);
        view->onStatusChanged(0);
    }
    // Both lifted, one finger does what it did before.
    makeReady();
    fingers().press(0, centreOf("Touch Calibration"), view);
    fingers().release(0, centreOf("Touch Calibration"), view);
    expectOneCommand(4);
}

void TestMainWindow::clickMakesTheWindowActive_data()
{
    addPointers();
}

void TestMainWindow::clickMakesTheWindowActive()
{
    QFETCH(bool, isFinger);
    QWidget other;
    other.show();
    other.activateWindow();
    QTRY_VERIFY(other.isActiveWindow());
    Pointer pointer(view, isFinger);
    pointer.press({2, 2});
    pointer.release({2, 2});
    QTRY_VERIFY(!other.isActiveWindow());
    QTRY_COMPARE(QGuiApplication::focusWindow(), view);
}

void TestMainWindow::clickInTheActiveWindowMovesNoFocus_data()
{
    addPointers();
}

void TestMainWindow::clickInTheActiveWindowMovesNoFocus()
{
    QFETCH(bool, isFinger);
    makeReady();
    QSignalSpy changes(qApp, &QGuiApplication::focusWindowChanged);
    Pointer pointer(view, isFinger);
    for (int click = 0; click < 3; ++click) {
        pointer.press({2, 2});
        pointer.release({2, 2});
    }
    QCoreApplication::processEvents();
    QVERIFY(changes.isEmpty());
}

// --- Commands ---------------------------------------------------------------------------------

void TestMainWindow::commandSlotsSendTheirAction_data()
{
    QTest::addColumn<int>("code");
    QTest::newRow("singlePointerMode") << 14;
    QTest::newRow("multiPointerMode") << 15;
    QTest::newRow("startAutoCalibration") << 0;
    QTest::newRow("startManualCalibration") << 1;
    QTest::newRow("startTouchCalibration") << 4;
    QTest::newRow("startParallaxCorrection") << 4;
    QTest::newRow("calibrateRayline") << 16;
    QTest::newRow("openSensorViewer") << 2;
    QTest::newRow("offsetCorrection") << 17;
    QTest::newRow("pauseResumeCalibration") << 12;
    QTest::newRow("resetCalibration") << 11;
    QTest::newRow("onLoadCcf") << 19;
}

void TestMainWindow::commandSlotsSendTheirAction()
{
    QFETCH(int, code);
    view->onStatusChanged(0);
    QVERIFY(QMetaObject::invokeMethod(view, QTest::currentDataTag()));
    QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("Action:")), 1, 20000);
    QCOMPARE(log->count(QStringLiteral("Action:  %1 ").arg(code)), 1);
    view->setPointerMode(true);
}

void TestMainWindow::parallaxCorrectionLeavesCacheAndViewAlone()
{
    QFile cache(folder.filePath(QStringLiteral("mcCache")));
    QVERIFY(cache.open(QIODevice::WriteOnly));
    cache.close();
    view->startParallaxCorrection();
    QVERIFY(cache.exists());
    QCOMPARE(root("isLoading").toBool(), false);
    QVERIFY(cache.remove());
}

void TestMainWindow::resetIsRefusedWithoutAnEngine()
{
    for (const int status : {-1, -12}) {
        view->onStatusChanged(status);
        log->clear();
        view->resetCalibration();
        QCOMPARE(root("status").toInt(), status);
        QCOMPARE(log->lines().size(), 0);
    }
}

void TestMainWindow::resetShowsNotCalibratedAtOnce()
{
    view->onStatusChanged(0);
    view->resetCalibration();
    QCOMPARE(root("status").toInt(), -6);
    QCOMPARE(root("statusText").toString(), QStringLiteral("Started, Vireon not calibrated."));
    QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("Action:  11 ")), 1, 20000);
}

void TestMainWindow::pauseAndResumeTakeTurns()
{
    const bool paused = root("pauseCalib").toBool(); // an earlier test has toggled it
    view->pauseResumeCalibration();
    QCOMPARE(root("pauseCalib").toBool(), !paused);
    view->pauseResumeCalibration();
    QCOMPARE(root("pauseCalib").toBool(), paused);
    QCOMPARE(log->count(QStringLiteral("pause resume")), 2);
    QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("Action:  12 ")), 2, 20000);
}

void TestMainWindow::autoStartIsSavedWithEveryToggle()
{
    QCOMPARE(root("isAutoStart").toBool(), true);
    view->toggleAutoStart();
    QCOMPARE(root("isAutoStart").toBool(), false);
    QCOMPARE(GS::instance()->autostart, false);
    QCOMPARE(savedSettings().split('\n').at(2), QByteArray("0"));
    view->toggleAutoStart();
    QCOMPARE(root("isAutoStart").toBool(), true);
    QCOMPARE(savedSettings().split('\n').at(2), QByteArray("1"));
    QCOMPARE(log->count(QStringLiteral("auto Start clicked")), 2);
}

void TestMainWindow::missingHelperLeavesTheSwitchOn()
{
    view->rootObject()->setProperty("isKeepACpuRunning", false);
    view->keepACpuRunning();
    QCOMPARE(root("isKeepACpuRunning").toBool(), true);
    QStringList told;
    for (const LogRecorder::Line& line : log->linesWith("keepACpuRunning"))
        told.append(line.text);
    QCOMPARE(told,
             QStringList({"keepACpuRunning", "keepACpuRunning", "keepACpuRunning create ",
                          "keepACpuRunning", "keepACpuRunning done"}));
    log->clear();
    view->keepACpuRunning();
    QCOMPARE(log->count("keepACpuRunning create "), 0); // the object is used again
    view->enableProcessorIdleMode();
    QCOMPARE(root("isKeepACpuRunning").toBool(), false);
}

/// 0 while no helper has told it.
qint64 TestMainWindow::helperPid() const
{
    QFile file(folder.filePath("helper.pid"));
    return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed().toLongLong() : 0;
}

void TestMainWindow::keepAwakeHelperRunsWhileSwitchedOn()
{
    // Found through PATH, as a name without a directory is.
    const QString helper = folder.filePath(QStringLiteral("VireonIdle.exe"));
    const QString pidFile = folder.filePath(QStringLiteral("helper.pid"));
    QFile script(helper);
    QVERIFY(script.open(QIODevice::WriteOnly));
    script.write("#!/bin/sh\necho $$ > \"" + QFile::encodeName(pidFile) + "\"\nexec sleep 600\n");
    script.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    script.close();
    qputenv("PATH", QFile::encodeName(folder.path()) + ':' + qgetenv("PATH"));

    GS::instance()->cpuState = 0;
    view->toggleKeepACpuAwake();
    QCOMPARE(GS::instance()->cpuState.load(), 2);
    QCOMPARE(root("isKeepACpuRunning").toBool(), true);
    QCOMPARE(savedSettings().split('\n').at(4), QByteArray("2"));
    QTRY_VERIFY_WITH_TIMEOUT(helperPid() > 0, 20000);
    const qint64 pid = helperPid();
    QCOMPARE(log->count(QStringLiteral(" Keep a CPU running")), 1);

    view->toggleKeepACpuAwake();
    QCOMPARE(GS::instance()->cpuState.load(), 0);
    QCOMPARE(root("isKeepACpuRunning").toBool(), false);
    QCOMPARE(savedSettings().split('\n').at(4), QByteArray("0"));
    QCOMPARE(log->count(QStringLiteral(" Disabled Processor idle state")), 1);
    QTRY_VERIFY_WITH_TIMEOUT(kill(static_cast<pid_t>(pid), 0) != 0, 20000);
}

void TestMainWindow::wastingEndsWithTheSetting()
{
    GS::instance()->cpuState = 2;
    std::thread worker([&] { QMetaObject::invokeMethod(view, "wasteCpu", Qt::DirectConnection); });
    QTRY_COMPARE_WITH_TIMEOUT(log->count("start wasting cpu now"), 1, 20000);
    const int early = log->count("not wasting cpu now");
    GS::instance()->cpuState = 0;
    worker.join();
    QCOMPARE(early, 0);
    QCOMPARE(log->count("not wasting cpu now"), 1);
    GS::instance()->cpuState = 2;
}

void TestMainWindow::otherCpuStateIsKept()
{
    GS::instance()->cpuState = 1;
    view->rootObject()->setProperty("isKeepACpuRunning", true);
    view->toggleKeepACpuAwake();
    QCOMPARE(GS::instance()->cpuState.load(), 1);
    QCOMPARE(root("isKeepACpuRunning").toBool(), false); // by the helper's end
    QCOMPARE(log->count(QStringLiteral(" Disabled Processor idle state")), 1);
    QCOMPARE(savedSettings().split('\n').at(4), QByteArray("1"));
    GS::instance()->cpuState = 2;
}

void TestMainWindow::warningsAreRemembered()
{
    QVERIFY(!view->aspectRatioWarningShown());
    QVERIFY(view->setAspectRatioWarningShown(true));
    QVERIFY(view->aspectRatioWarningShown());
    QCOMPARE(savedSettings().split('\n').at(13), QByteArray("1"));
    QVERIFY(view->setAcPopUpDisabled());
    QCOMPARE(savedSettings().split('\n').at(14), QByteArray("0"));
    QVERIFY(!GS::instance()->acPopUpEnabled);
    QCOMPARE(log->count(QStringLiteral("setAcPopUpDisabled ")), 1);
    QVERIFY(!view->stylusOnly());
    QCOMPARE(view->os(), QStringLiteral("linux"));
}

void TestMainWindow::wakingUpPresentsStarted()
{
    view->onStatusChanged(-6);
    view->onGoingToSleep();
    view->onWakingUp();
    QCOMPARE(root("status").toInt(), 1);
    QCOMPARE(root("statusText").toString(), QStringLiteral("Started and ready"));
    QCOMPARE(log->count(QStringLiteral("starting ./vireon-main")), 1);
}

void TestMainWindow::quittingShowsNoHint()
{
    view->showWindow();
    QFile::remove(folder.filePath("helper.pid"));
    view->keepACpuRunning();
    QTRY_VERIFY_WITH_TIMEOUT(helperPid() > 0, 20000);
    log->clear();
    QElapsedTimer clock;
    clock.start();
    view->exitApp();
    QVERIFY(clock.elapsed() >= 800);
    QCOMPARE(log->count(QStringLiteral("Quit Vireon clicked")), 1);
    QVERIFY(!topLevel()->isVisible());
    QVERIFY(!view->findChild<QSystemTrayIcon*>()->isVisible());
    QCOMPARE(root("isKeepACpuRunning").toBool(), false);
    QVERIFY(kill(static_cast<pid_t>(helperPid()), 0) != 0);
    topLevel()->show();
    view->onClosing();
    QVERIFY(topLevel()->isVisible()); // left alone: the program ends
    QTRY_COMPARE_WITH_TIMEOUT(log->count(QStringLiteral("Action:  18 ")), 1, 20000);
}

void TestMainWindow::cleanupTestCase()
{
    WorkerThread::stopAll();
    QVERIFY(WorkerThread::waitForAll(20000));
    log.reset();
}

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    TestMainWindow test;
    const int failures = QTest::qExec(&test, argc, argv);
    // As the program does: the window and what it leaves to the kernel are not deleted.
    std::fflush(nullptr);
    _exit(failures);
}

#include "tst_mainwindow.moc"
