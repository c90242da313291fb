#pragma once

#include <QQuickView>
#include <QSize>
#include <QString>

class MyWidget;
class QAction;
class QMenu;
class QMenuBar;
class SdkHelper;

/**
 * The hub of the program: the main view and all that is around it.
 *
 * It is the Qt Quick view that shows "qrc:/qml/main.qml", and it owns the top-level window that
 * holds the view and the menu bar. It connects the engine's supervisor and the status file's
 * watcher to the view, and runs the commands of menus and view.
 *
 * Made once, on the heap, and not deleted before the process ends. GUI thread only. The view is
 * never shown or hidden by itself: it lives in the top-level window.
 *
 * QML knows it as "mainwindow"; all public slots can be called from there. It writes properties of
 * the root object by name. A view that cannot be loaded is reported in a message box and on the
 * log, and the program goes on without it.
 */
class MainWindow : public QQuickView
{
    Q_OBJECT

public:
    /// Builds and shows everything. @p openText and @p exitText are the labels of the tray's
    /// items, @p versionText is shown in the view.
    MainWindow(QString openText, QString exitText, QString versionText);
    ~MainWindow() override;

    /// Show and hide the top-level window, not the view.
    void show();
    void hide();

    void createActions();
    void createMenus();

    /// Takes every line of the log handler. Nothing shows them yet.
    void appendText(QString text);

public slots:
    /// Quits the program: tells the engine, hides the window and leaves 800 ms later.
    void exitApp();

    // Calibrations. Each marks the view as loading; the next report ends that.
    void startAutoCalibration();
    void startManualCalibration(); ///< deletes the calibration's cache file first
    void startTouchCalibration(); ///< as startManualCalibration()

    /// Presents a status code, whichever it is, and brings the window to the front. Ends with
    /// SdkHelper::resetLastAction().
    void onStatusChanged(int id);

    void showWindow();
    void hideWindow();

    /// The user closed the window: only hides it, unless the program is quitting.
    void onClosing();

    /// The code of GS::brand: "qor", "tal", "wendle", "marrowby", or "nobrand" for any other.
    QString brand();
    QString appName();

private:
    // The steps of the construction, in their order.
    void exposeToQml();
    void loadView();
    void writeInitialProperties(const QString& versionText);
    void createWindow();
    void centreWindow();
    void installMenuBar();
    void connectStatusSources();

    void setRootProperty(const char* name, const QVariant& value);
    void writeStatus(int id);
    void deleteCalibrationCache();
    void markCalibration();

    SdkHelper* sdk = nullptr;
    QString appTitle;
    bool quitting = false;
    bool windowVisible = false;
    MyWidget* window = nullptr;
    MyWidget* spareWidget = nullptr; ///< the container's parent at first; never shown or deleted
    QWidget* container = nullptr;
    QSize windowSize; ///< of the top-level window, px; fixed
    QAction* exitAction = nullptr;
    QAction* hideAction = nullptr;
    QMenuBar* menuBar = nullptr;
    QMenu* fileMenu = nullptr;
};

/// The one main window; null until its constructor has returned.
extern MainWindow* mainWindow;
