#pragma once

#include "ui/touchtranslator.h"
#include "ui/viewroot.h"

#include <QList>
#include <QQuickView>
#include <QSize>
#include <QString>
#include <QSystemTrayIcon>

#include <atomic>
#include <memory>

class LinuxTrayIconManager;
class LogView;
class ChildProcess;
class MessageChannel;
class MyWidget;
class QAction;
class QMenu;
class QMenuBar;
class SdkHelper;
class Splash;
class WindowFrame;

/**
 * The hub of the program: the main view and all that is around it.
 *
 * It is the Qt Quick view that shows "qrc:/qml/main.qml", and it owns the top-level window that
 * holds the view and the menu bar, the tray icon (on Unity: the indicator) and the splash. It
 * connects the engine's supervisor, the status file's watcher and the screens' watcher to the
 * view, shows messages to the user, and runs the commands of menus, view and tray.
 *
 * Made once, on the heap, and not deleted before the process ends. GUI thread only. The view is
 * never shown or hidden by itself: it lives in the top-level window.
 *
 * QML knows it as "mainwindow"; all public slots can be called from there. It writes properties of
 * the root object and calls its functions by name. A view that cannot be loaded is reported on the
 * log, and remembered. What is not made yet, or at all on the bare one, a slot leaves out.
 */
class MainWindow : public QQuickView
{
    Q_OBJECT

public:
    /// Builds and shows everything. @p openText and @p exitText are the labels of the tray's
    /// items, @p versionText is shown in the view.
    MainWindow(QString openText, QString exitText, QString versionText);

    /// Only the view, with every member at its initial value.
    explicit MainWindow(QWidget* parent);

    ~MainWindow() override;

    bool hasView() const { return viewRoot.exists(); }

    /// Tells the user, in a box above everything, why there is no view, and takes all else of the
    /// program off the screen. Returns when the box is closed, or the program has been told to
    /// quit.
    void showViewError();

    /// Show and hide the top-level window, not the view.
    void show();
    void hide();

    /// Shows the window on top of all others and gives it the keyboard, for a user who asks for it:
    /// starts the program again, clicks its icon or a message.
    void bringToFront();

    void createActions();
    void createMenus();

    /// Starts the helper that keeps a processor awake; what became of it is not looked at. It ends
    /// with the program, however that ends.
    void keepACpuRunning();

    /// Starts or ends that helper, as GS::cpuState says.
    void setCpuState();

    void enableProcessorIdleMode();

    /// Takes every line of the log handler, on the thread that logs. Where there is a log view, it
    /// shows them.
    void appendText(QString text);

    /// The view of the log, if there is to be one; it must live as long as the process.
    void setLogView(LogView* view) { logView = view; }

    /// Delivers a scene mouse event to this view, see TouchTranslator::send().
    void sendEventToUI(double x, double y, int type);

    /// Turns touch points into scene mouse events. An entry for callers only: the view itself
    /// handles real touches before they come here, and presses its items natively.
    void touchEvent(QTouchEvent* ev) override;

public slots:
    // Each opens a page of the help desk in the browser.
    void onGetHelpTriggered();
    void onTroubleshootTriggered();
    void onVideoTutorialTriggered();

    /// Asks to update the camera's firmware. The box only tells how: neither button starts it.
    void onUpdateFirmwareTriggered();

    /// Quits the program: tells the engine, hides everything and leaves 800 ms later. Without
    /// effect while it quits.
    void exitApp();

    // Commands to the engine. A calibration marks the view as loading.
    void calibrateRayline();
    void startAutoCalibration();
    void startManualCalibration(); ///< deletes the calibration's cache file first
    void startTouchCalibration(); ///< as startManualCalibration()
    void openSensorViewer();
    void startParallaxCorrection(); ///< sends what the touch calibration sends, and nothing else

    /// Presents a status code, whichever it is, and brings the window to the front. Ends with
    /// SdkHelper::resetLastAction().
    void onStatusChanged(int id);

    /// A plain click opens the window; anything else does nothing.
    void onTrayIconClicked(QSystemTrayIcon::ActivationReason reason = QSystemTrayIcon::Trigger);

    void slotAppQuitting();

    /// Without effect while the view's status is StatusNotReady or StatusEngineGaveUp.
    void resetCalibration();

    /// The engine toggles on its side; the controller keeps a flag of its own.
    void pauseResumeCalibration();

    void toggleAutoStart();

    /// Shows @p text for 5 s, or queues it behind the one that is shown. An empty text shows the
    /// next one of the queue.
    void showMessage(QString text);

    /// Takes the message away that is shown; the queue stays. Not on Unity.
    void hideMessage();

    void showWindow();
    void hideWindow() { hide(); }
    void openLogWindow(); ///< nothing happens where there is no log view

    /// The user closed the window: hides it, with a hint the first time, unless the program quits.
    void onClosing();

    void singlePointerMode();
    void multiPointerMode();
    void setPointerMode(bool single); ///< only remembers it and sets the check marks
    void offsetCorrection();
    QString os() { return QStringLiteral("linux"); }

    /// The code of GS::brand: "qor", "tal", "wendle", "marrowby", or "nobrand" for any other.
    QString brand();

    QString appName() { return appTitle; }

    /// Shows the window anew, for the new screens, and lets the view check them.
    void onResolutionChanged(int width = 0, int height = 0);

    void toggleKeepACpuAwake();
    bool stylusOnly();
    bool aspectRatioWarningShown();

    // The results of these two carry no meaning.
    bool setAspectRatioWarningShown(bool value);
    bool setAcPopUpDisabled();

    void onGoingToSleep(); ///< ends the engine
    void onWakingUp(); ///< starts it again

    /// Does nothing: the window's size is fixed.
    void adaptWindowSize(int /*width*/, int /*height*/, double /*factor*/) { }

    void onFileMenuShow() { } ///< nothing to bring up to date yet

    /// Lets the engine read its calibration configuration file again.
    void onLoadCcf();

    /// The next message of the queue.
    void showMessage();

private slots:
    /// Keeps a processor busy in place of the helper while GS::cpuState is 2; only for a thread
    /// of its own.
    void wasteCpu();

protected:
    /// A click or a touch also makes the top-level window active, which some window managers do not
    /// do for one in a view inside it: keys would be lost. Only after it, since a change of the
    /// active window would cancel it.
    bool event(QEvent* ev) override;

private:
    // The steps of the construction, in their order.
    void createSplash();
    void exposeToQml();
    void createTray(const QString& openText, const QString& exitText);
    void createTrayIcon(const QString& exitText);
    void createIndicator(const QString& openText, const QString& exitText);
    void loadView();
    void writeInitialProperties(const QString& versionText);
    void createWindow();
    void fitWindow(); ///< around the view, whose size follows the desktop's text size
    void installMenuBar();
    void applyPointerMode();
    void connectStatusSources();
    void showWarnings();

    // Small pieces that several slots share.
    void updateFirmwareHint(int id);
    void displayMessage(const QString& text);
    void send(int action); ///< an SdkHelper::Action
    void markCalibration();
    static void deleteCalibrationCache();

    bool isUnity = false;
    bool isSinglePointer = false;
    SdkHelper* sdk = nullptr;
    QSystemTrayIcon* trayIcon = nullptr; ///< null on Unity
    QMenu* trayMenu = nullptr;
    LinuxTrayIconManager* trayIconManager = nullptr; ///< the indicator, on Unity only
    QString appTitle = QStringLiteral("Vireon");
    bool calibrationPaused = false;
    bool autoStart = true; ///< true whatever the setting: the first toggle writes false
    bool closeHintShown = false;
    bool quitting = false;
    bool windowVisible = false;
    MyWidget* window = nullptr;
    MyWidget* spareWidget = nullptr; ///< the container's parent at first; never shown or deleted
    QWidget* container = nullptr;
    QSize windowSize; ///< of the top-level window, px; fixed
    QAction* exitAction = nullptr;
    QAction* hideAction = nullptr;
    QAction* reloadCcfAction = nullptr; ///< in no menu
    QAction* updateFirmwareAction = nullptr;
    QAction* resetAction = nullptr;
    QAction* singleInputAction = nullptr;
    QAction* multiInputAction = nullptr;
    QAction* troubleshootAction = nullptr;
    QAction* videoTutorialAction = nullptr;
    QAction* getHelpAction = nullptr;
    QMenu* helpMenu = nullptr;
    QMenuBar* menuBar = nullptr;
    QMenu* fileMenu = nullptr;
    QMenu* calibrationMenu = nullptr;
    QMenu* inputMenu = nullptr; ///< attached nowhere
    void* reserved = nullptr; ///< never used
    ChildProcess* keepAwakeProcess = nullptr;
    Splash* splash = nullptr;
    bool firmwarePromptShown = false;
    bool constructed = false; ///< the constructor has come to its end
    int lastWidth = -1; ///< this and the next two are never used
    int lastHeight = -1;
    double lastFactor = -1.0;
    QList<QString> pendingMessages;
    bool messageShowing = false;

    QString viewError; ///< why there is no view; empty when there is one

    // What the members above are handled with.
    ViewRoot viewRoot {*this};
    TouchTranslator touchTranslator {*this};
    MessageChannel* messages = nullptr;
    std::atomic<LogView*> logView {nullptr};
    std::unique_ptr<WindowFrame> frame; ///< of the top-level window
};

/// The one main window; null until its constructor has returned. Threads that log read it, too.
extern std::atomic<MainWindow*> mainWindow;
