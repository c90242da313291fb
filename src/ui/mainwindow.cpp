#include "ui/mainwindow.h"

#include "base/desktop.h"
#include "base/logcategories.h"
#include "display/resolutionchangenotifier.h"
#include "engine/childprocess.h"
#include "engine/sdkhelper.h"
#include "engine/statuslistener.h"
#include "ipc/runguard.h"
#include "settings/brand.h"
#include "settings/globalsettings.h"
#include "ui/errorbox.h"
#include "ui/firmwareprompt.h"
#include "ui/keyboardrouter.h"
#include "ui/linuxtrayiconmanager.h"
#include "ui/logview.h"
#include "ui/looks.h"
#include "ui/mapwatch.h"
#include "ui/messagechannel.h"
#include "ui/mywidget.h"
#include "ui/programicon.h"
#include "ui/splash.h"
#include "ui/supportaddresses.h"
#include "ui/viewcolours.h"
#include "ui/windowframe.h"
#include "ui/windowsystem.h"

#include <QAction>
#include <QCoreApplication>
#include <QDebug>
#include <QDesktopServices>
#include <QFile>
#include <QMenuBar>
#include <QQmlContext>
#include <QQmlError>
#include <QQuickItem>
#include <QThread>
#include <QTimer>
#include <QUrl>

#include <cstdio>

namespace {

constexpr int splashTimeMs = 10000;
constexpr int messageTimeMs = 5000;
constexpr unsigned long quitGraceMs = 800; // for the engine to act on the quit command
const char* const keepAwakeHelper = "VireonIdle.exe"; // its name on every platform

// Values of GS::cpuState.
constexpr int cpuMayIdle = 0;
constexpr int cpuKeptAwake = 2;

bool isNotCalibrated(int status)
{
    return status == StatusNotCalibrated || status == StatusNotCalibrated2;
}

void openPage(const char* address)
{
    QDesktopServices::openUrl(QUrl(QLatin1String(address)));
}

} // namespace

std::atomic<MainWindow*> mainWindow {nullptr};

// --- Construction -----------------------------------------------------------------------------

MainWindow::MainWindow(QString openText, QString exitText, QString versionText)
{
    createSplash();
    sdk = SdkHelper::instance(this);
    exposeToQml();
    createTray(openText, exitText);
    loadView();
    if (GS::instance()->autostart) {
        qDebug() << "Autostart is enabled!";
        autoStart = false;
        toggleAutoStart();
    }
    writeInitialProperties(versionText);
    createWindow();
    installMenuBar();
    connect(window, &MyWidget::closeWindow, this, &MainWindow::onClosing);
    applyPointerMode();
    connect(ResolutionChangeNotifier::instance(), &ResolutionChangeNotifier::resolutionChanged,
            this, &MainWindow::onResolutionChanged);
    windowVisible = true;
    connectStatusSources();
    reserved = nullptr;
    viewRoot.setGreaterEqualsWin8(false);
    viewRoot.setStatus(StatusStarted);
    viewRoot.setFinishedLoading(true);
    show();
    new MapWatch(*window, this);
    constructed = true;
    showWarnings();
}

MainWindow::MainWindow(QWidget* parent)
{
    Q_UNUSED(parent)
}

MainWindow::~MainWindow()
{
    qDebug() << "quiting mainwindow";
}

void MainWindow::createSplash()
{
    splash = new Splash(brand());
    QTimer::singleShot(splashTimeMs, splash, &Splash::splashCloseWindow);
}

void MainWindow::exposeToQml()
{
    QQmlContext* context = rootContext();
    context->setContextProperty(QStringLiteral("sdk"), sdk);
    context->setContextProperty(QStringLiteral("mainwindow"), this);
    context->setContextProperty(QStringLiteral("operatingSystem"), os());
    qDebug() << "qml loaded";
}

void MainWindow::createTray(const QString& openText, const QString& exitText)
{
    isUnity = isUnityDesktop();
    if (isUnity)
        createIndicator(openText, exitText);
    else
        createTrayIcon(exitText);
    messages = new MessageChannel(trayIcon, trayIconManager, this);
    connect(messages, &MessageChannel::clicked, this, &MainWindow::bringToFront);
}

void MainWindow::createIndicator(const QString& openText, const QString& exitText)
{
    trayIconManager = new LinuxTrayIconManager;
    connect(trayIconManager, &LinuxTrayIconManager::trayIconClicked, this,
            &MainWindow::bringToFront);
    connect(trayIconManager, &LinuxTrayIconManager::trayIconQuit, this, &MainWindow::exitApp);
    trayIconManager->createIndicator(openText, exitText);
}

void MainWindow::createTrayIcon(const QString& exitText)
{
    trayIcon = new QSystemTrayIcon(this);
    trayIcon->setIcon(programIcon());
    trayIcon->setVisible(true);
    trayMenu = new QMenu;
    auto* trayExitAction = new QAction(exitText, this);
    connect(trayExitAction, &QAction::triggered, this, &MainWindow::exitApp);
    trayMenu->addAction(trayExitAction);
    trayIcon->setContextMenu(trayMenu);
    connect(trayIcon, &QSystemTrayIcon::activated, this, &MainWindow::onTrayIconClicked);
    connect(trayIcon, &QSystemTrayIcon::messageClicked, this, &MainWindow::bringToFront);
}

void MainWindow::loadView()
{
    qDebug() << "load main.qml";
    // What the view does not cover: nothing flashes up before its first picture.
    setColor(QLatin1String(ViewColours::surface));
    setSource(QUrl(QStringLiteral("qrc:/qml/main.qml")));
    if (viewRoot.exists())
        return;
    // The compiled view fits one Qt version only, so that an update of Qt can end here.
    viewError = tr("The main view cannot be loaded. Please install Vireon again.");
    for (const QQmlError& error : errors())
        viewError += QLatin1Char('\n') + error.toString();
    qCCritical(viewLog).noquote() << viewError;
}

void MainWindow::writeInitialProperties(const QString& versionText)
{
    const GS* settings = GS::instance();
    viewRoot.setGreaterEqualsWin8(false);
    viewRoot.setTouch(settings->isTouch == 0);
    viewRoot.setVersionText(versionText);
    viewRoot.setAutoStart(settings->autostart);
}

void MainWindow::createWindow()
{
    spareWidget = new MyWidget;
    container = QWidget::createWindowContainer(this, spareWidget);
    container->setMinimumSize(geometry().size());
    container->setFocusPolicy(Qt::StrongFocus);

    window = new MyWidget;
    window->setWindowTitle(appTitle);
    frame = std::make_unique<WindowFrame>(*window);
    frame->fill(*container);
    frame->centre();
    window->setVisible(isBrand(GS::instance()->brand, Brand::Tal));
    windowSize = window->size();
    // Queued: the height is the last of what follows the desktop's text size.
    if (const QQuickItem* root = rootObject())
        connect(root, &QQuickItem::heightChanged, this, &MainWindow::fitWindow,
                Qt::QueuedConnection);
}

void MainWindow::fitWindow()
{
    refreshLooks();
    windowSize = frame->refit(*container, rootObject()->size().toSize());
}

void MainWindow::installMenuBar()
{
    createActions();
    menuBar = new QMenuBar;
    createMenus();
    frame->installMenuBar(*menuBar, windowSize);
    new KeyboardRouter(this, container, menuBar, this);
}

void MainWindow::applyPointerMode()
{
    const bool single = GS::instance()->singlePointerMode == 0;
    qDebug() << (single ? " single pointer mode " : "Multi pointer mode ");
    setPointerMode(single);
}

void MainWindow::connectStatusSources()
{
    connect(StatusListener::instance(), &StatusListener::statusChanged, this,
            &MainWindow::onStatusChanged);
    connect(SdkHelper::instance(), &SdkHelper::statusChanged, this, &MainWindow::onStatusChanged);
}

void MainWindow::showWarnings()
{
    if (!ResolutionChangeNotifier::isOptimumFreq()) {
        qDebug() << "show freq error";
        viewRoot.showFreqPopup();
    }
    if (!GS::instance()->acPopUpEnabled)
        viewRoot.disableAcPopUp();
}

void MainWindow::showViewError()
{
    splash->slotCloseWindow();
    if (trayIcon)
        trayIcon->hide();
    hide();
    showErrorBox(appTitle, viewError);
}

// --- Menus and their pages --------------------------------------------------------------------

void MainWindow::createActions()
{
    struct ActionRow
    {
        QAction* MainWindow::*member;
        QString text;
        void (MainWindow::*slot)();
    };
    const ActionRow rows[] = {
        {&MainWindow::exitAction, tr("&Exit"), &MainWindow::exitApp},
        {&MainWindow::hideAction, tr("&Hide"), &MainWindow::onClosing},
        {&MainWindow::reloadCcfAction, tr("&Reload Ccf"), &MainWindow::onLoadCcf},
        {&MainWindow::updateFirmwareAction, tr("Update Firmware"),
         &MainWindow::onUpdateFirmwareTriggered},
        {&MainWindow::resetAction, tr("&Reset"), &MainWindow::resetCalibration},
        {&MainWindow::singleInputAction, tr("&Single Input"), &MainWindow::singlePointerMode},
        {&MainWindow::multiInputAction, tr("&Multi Input"), &MainWindow::multiPointerMode},
        {&MainWindow::troubleshootAction, tr("Troubleshoot"), &MainWindow::onTroubleshootTriggered},
        {&MainWindow::videoTutorialAction, tr("Video Tutorial"),
         &MainWindow::onVideoTutorialTriggered},
        {&MainWindow::getHelpAction, tr("Get Help"), &MainWindow::onGetHelpTriggered},
    };
    for (const ActionRow& row : rows) {
        this->*row.member = new QAction(row.text, window);
        connect(this->*row.member, &QAction::triggered, this, row.slot);
    }
    exitAction->setShortcut(QStringLiteral("Ctrl+Q"));
    hideAction->setShortcut(QStringLiteral("Ctrl+W"));
    updateFirmwareAction->setEnabled(false);
    for (QAction* action : {singleInputAction, multiInputAction}) {
        action->setCheckable(true);
        action->setChecked(isSinglePointer);
    }
}

void MainWindow::createMenus()
{
    struct MenuRow
    {
        QMenu* MainWindow::*member;
        QString title;
        bool inMenuBar;
        QList<QAction*> entries;
    };
    const MenuRow rows[] = {
        {&MainWindow::fileMenu, tr("File"), true, {hideAction, updateFirmwareAction, exitAction}},
        {&MainWindow::calibrationMenu, tr("Calibration"), true, {resetAction}},
        {&MainWindow::inputMenu, tr("Input"), false, {singleInputAction, multiInputAction}},
        {&MainWindow::helpMenu,
         tr("Help"),
         true,
         {troubleshootAction, videoTutorialAction, getHelpAction}},
    };
    for (const MenuRow& row : rows) {
        auto* menu = new QMenu(row.title);
        this->*row.member = menu;
        menu->addActions(row.entries);
        if (row.inMenuBar)
            menuBar->addMenu(menu);
    }
    if (isBrand(GS::instance()->brand, Brand::Tal))
        connect(fileMenu, &QMenu::aboutToShow, this, &MainWindow::onFileMenuShow);
}

void MainWindow::onLoadCcf()
{
    send(SdkHelper::LoadCcf);
}

void MainWindow::onTroubleshootTriggered()
{
    openPage(knowledgeBaseAddress);
}

void MainWindow::onVideoTutorialTriggered()
{
    openPage(videoTutorialAddress);
}

void MainWindow::onGetHelpTriggered()
{
    openPage(newTicketAddress);
}

// --- Window -----------------------------------------------------------------------------------

void MainWindow::show()
{
    windowVisible = true;
    if (!window)
        return;
    frame->keepOnScreen();
    window->show();
}

void MainWindow::hide()
{
    windowVisible = false;
    if (window)
        window->hide();
}

void MainWindow::showWindow()
{
    if (splash)
        splash->slotCloseWindow();
    if (!window)
        return;
    // A plain show() would leave a minimised window where it is.
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    show();
    window->raise();
}

void MainWindow::bringToFront()
{
    showWindow();
    if (window && window->windowHandle())
        bringUpForUser(*window->windowHandle());
}

void MainWindow::onTrayIconClicked(QSystemTrayIcon::ActivationReason reason)
{
    if (reason == QSystemTrayIcon::Trigger)
        bringToFront();
}

void MainWindow::onClosing()
{
    if (quitting)
        return;
    hide();
    if (!closeHintShown) {
        showMessage(messages && messages->hasTray()
                        ? tr("Running in background, you can open and quit the window from the ")
                            + tr("icon-tray.")
                        : tr("Running in background. Start Vireon again to open the window."));
    }
    closeHintShown = true;
}

void MainWindow::onResolutionChanged(int width, int height)
{
    Q_UNUSED(width)
    Q_UNUSED(height)
    if (windowVisible) {
        hideWindow();
        showWindow();
    }
    viewRoot.checkAspectRatio();
    if (!ResolutionChangeNotifier::isOptimumFreq())
        viewRoot.showFreqPopup();
}

void MainWindow::appendText(QString text)
{
    if (LogView* view = logView)
        view->append(text);
}

void MainWindow::openLogWindow()
{
    if (LogView* view = logView)
        view->open();
}

QString MainWindow::brand()
{
    return brandCode(GS::instance()->brand);
}

// --- Mouse and touch --------------------------------------------------------------------------

bool MainWindow::event(QEvent* ev)
{
    const bool handled = QQuickView::event(ev);
    const bool lifted = ev->type() == QEvent::MouseButtonRelease || ev->type() == QEvent::TouchEnd;
    // The router leads on from there; asking for the window once more would take the focus back.
    if (lifted && window && !window->isActiveWindow())
        window->activateWindow();
    return handled;
}

void MainWindow::touchEvent(QTouchEvent* ev)
{
    touchTranslator.translate(*ev);
}

void MainWindow::sendEventToUI(double x, double y, int type)
{
    touchTranslator.send(x, y, type);
}

// --- Status -----------------------------------------------------------------------------------

void MainWindow::onStatusChanged(int id)
{
    qDebug() << "firmware version:" << StatusListener::instance()->firmware.load();
    updateFirmwareHint(id);
    qDebug() << "status" << id;
    if (isNotCalibrated(id))
        showMessage(tr("Vireon not calibrated. Please Calibrate!"));
    viewRoot.setStatus(id);
    showWindow();
    if (sdk)
        sdk->resetLastAction();
}

void MainWindow::updateFirmwareHint(int id)
{
    const bool offered = FirmwarePrompt::isOffered(id, StatusListener::instance()->firmware);
    if (updateFirmwareAction)
        updateFirmwareAction->setEnabled(offered);
    if (!offered)
        return;
    if (!firmwarePromptShown)
        showMessage(FirmwarePrompt::hint());
    firmwarePromptShown = true;
}

bool MainWindow::aspectRatioWarningShown()
{
    return GS::instance()->aspectRatioWarningShown;
}

bool MainWindow::setAspectRatioWarningShown(bool value)
{
    GS::instance()->aspectRatioWarningShown = value;
    GS::instance()->saveUserSettings();
    return true;
}

bool MainWindow::setAcPopUpDisabled()
{
    qDebug() << "setAcPopUpDisabled ";
    GS::instance()->acPopUpEnabled = false;
    GS::instance()->saveUserSettings();
    return true;
}

// --- Messages ---------------------------------------------------------------------------------

void MainWindow::showMessage(QString text)
{
    if (!text.isEmpty()) {
        if (messageShowing)
            pendingMessages.append(text);
        else
            displayMessage(text);
        return;
    }
    messageShowing = false;
    if (!pendingMessages.isEmpty())
        displayMessage(pendingMessages.takeFirst());
}

void MainWindow::showMessage()
{
    showMessage(QString());
}

void MainWindow::displayMessage(const QString& text)
{
    if (messages)
        messages->show(appTitle, text);
    messageShowing = true;
    QTimer::singleShot(messageTimeMs, this, qOverload<>(&MainWindow::showMessage));
}

void MainWindow::hideMessage()
{
    if (messages)
        messages->hide();
}

void MainWindow::onUpdateFirmwareTriggered()
{
    FirmwarePrompt::exec(StatusListener::instance()->firmware, GS::instance()->brand, appTitle);
}

// --- Calibration and other commands to the engine ---------------------------------------------

void MainWindow::send(int action)
{
    if (sdk)
        sdk->trigger(action);
}

void MainWindow::startAutoCalibration()
{
    markCalibration();
    send(SdkHelper::AutoCalibration);
}

void MainWindow::startManualCalibration()
{
    deleteCalibrationCache();
    markCalibration();
    send(SdkHelper::ManualCalibration);
}

void MainWindow::startTouchCalibration()
{
    deleteCalibrationCache();
    markCalibration();
    send(SdkHelper::TouchCalibration);
}

void MainWindow::deleteCalibrationCache()
{
    QFile::remove(QString::fromStdString(GS::instance()->mcCachePath));
}

void MainWindow::markCalibration()
{
    viewRoot.setLoading(true);
    viewRoot.setAspectRatioWarningShown(true);
}

void MainWindow::startParallaxCorrection()
{
    send(SdkHelper::TouchCalibration);
}

void MainWindow::calibrateRayline()
{
    send(SdkHelper::CalibrateRayline);
}

void MainWindow::openSensorViewer()
{
    send(SdkHelper::SensorViewer);
}

void MainWindow::offsetCorrection()
{
    send(SdkHelper::OffsetCorrection);
}

void MainWindow::pauseResumeCalibration()
{
    qDebug() << "pause resume";
    calibrationPaused = !calibrationPaused;
    viewRoot.setCalibrationPaused(calibrationPaused);
    send(SdkHelper::PauseResumeCalibration);
    showMessage(calibrationPaused ? tr("Calibration is paused! Mouse/Touch will not work")
                                  : tr("Calibration resumed"));
}

void MainWindow::resetCalibration()
{
    const int shown = viewRoot.status();
    if (shown == StatusNotReady || shown == StatusEngineGaveUp)
        return;
    send(SdkHelper::ResetCalibration);
    // Shown at once, before the engine reports anything.
    onStatusChanged(StatusNotCalibrated);
}

// --- Pointer mode -----------------------------------------------------------------------------

void MainWindow::singlePointerMode()
{
    isSinglePointer = true;
    setPointerMode(true);
    showMessage(tr("Single Input(Mouse) mode is active"));
    send(SdkHelper::SinglePointer);
}

void MainWindow::multiPointerMode()
{
    isSinglePointer = false;
    setPointerMode(false);
    showMessage(tr("Multi Input (Touch) mode is active"));
    send(SdkHelper::MultiPointer);
}

void MainWindow::setPointerMode(bool single)
{
    isSinglePointer = single;
    if (!menuBar)
        return;
    singleInputAction->setChecked(isSinglePointer);
    multiInputAction->setChecked(!isSinglePointer);
}

bool MainWindow::stylusOnly()
{
    return GS::instance()->stylusOnly;
}

// --- Autostart, processor, sleep --------------------------------------------------------------

void MainWindow::toggleAutoStart()
{
    qDebug() << "auto Start clicked";
    autoStart = !autoStart;
    viewRoot.setAutoStart(autoStart);
    GS::instance()->autostart = autoStart;
    GS::instance()->saveUserSettings();
}

void MainWindow::toggleKeepACpuAwake()
{
    std::atomic<int>& state = GS::instance()->cpuState;
    if (state == cpuMayIdle) {
        state = cpuKeptAwake;
        viewRoot.setKeepingACpuRunning(true);
    } else if (state == cpuKeptAwake) {
        state = cpuMayIdle;
        viewRoot.setKeepingACpuRunning(false);
    }
    setCpuState();
    GS::instance()->saveUserSettings();
}

void MainWindow::setCpuState()
{
    if (GS::instance()->cpuState == cpuKeptAwake) {
        qDebug() << " Keep a CPU running";
        keepACpuRunning();
    } else {
        qDebug() << " Disabled Processor idle state"; // says the opposite; log readers match it
        enableProcessorIdleMode();
    }
}

void MainWindow::keepACpuRunning()
{
    qDebug() << "keepACpuRunning";
    viewRoot.setKeepingACpuRunning(true);
    qDebug() << "keepACpuRunning";
    if (!keepAwakeProcess) {
        keepAwakeProcess = new ChildProcess;
        // Nobody reads its output, which would pile up here.
        keepAwakeProcess->setStandardOutputFile(QProcess::nullDevice());
        qDebug() << "keepACpuRunning create ";
    }
    qDebug() << "keepACpuRunning";
    keepAwakeProcess->launch(QLatin1String(keepAwakeHelper));
    qDebug() << "keepACpuRunning done";
}

void MainWindow::enableProcessorIdleMode()
{
    viewRoot.setKeepingACpuRunning(false);
    if (keepAwakeProcess)
        keepAwakeProcess->endNow();
}

void MainWindow::wasteCpu()
{
    qDebug() << "start wasting cpu now";
    while (GS::instance()->cpuState == cpuKeptAwake) { }
    qDebug() << "not wasting cpu now";
}

void MainWindow::onGoingToSleep()
{
    if (sdk)
        sdk->stopVireon();
}

void MainWindow::onWakingUp()
{
    StatusListener::instance()->injectStatus(StatusStarted);
    if (sdk)
        sdk->startVireon();
}

// --- Quit -------------------------------------------------------------------------------------

void MainWindow::exitApp()
{
    if (quitting)
        return;
    RunGuard::announceEnd();
    send(SdkHelper::QuitEngine);
    if (trayIcon)
        trayIcon->hide();
    enableProcessorIdleMode();
    quitting = true;
    qDebug() << "Quit Vireon clicked";
    hide();
    if (keepAwakeProcess)
        keepAwakeProcess->endNow();
    // Not a nested event loop, in which the engine's exit would be taken for a crash.
    QThread::msleep(quitGraceMs);
    close();
    QCoreApplication::quit();
}

void MainWindow::slotAppQuitting()
{
    std::puts("quitting");
    hide();
}
