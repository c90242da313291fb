#include "mainwindow.h"

#include "engine/sdkhelper.h"
#include "engine/statuslistener.h"
#include "mywidget.h"
#include "settings/globalsettings.h"

#include <QAction>
#include <QBoxLayout>
#include <QCoreApplication>
#include <QDebug>
#include <QFile>
#include <QGuiApplication>
#include <QMenuBar>
#include <QMessageBox>
#include <QQmlContext>
#include <QQmlError>
#include <QQuickItem>
#include <QScreen>
#include <QThread>

namespace {

constexpr unsigned long quitGraceMs = 800; // for the engine to act on the quit command

struct BrandCode
{
    int brand;
    const char* code;
};

constexpr BrandCode brandCodes[] = {{0, "qor"}, {1, "tal"}, {2, "wendle"}, {4, "marrowby"}};

} // namespace

MainWindow* mainWindow = nullptr;

// --- Construction -----------------------------------------------------------------------------

MainWindow::MainWindow(QString openText, QString exitText, QString versionText)
{
    Q_UNUSED(openText)
    Q_UNUSED(exitText)
    sdk = SdkHelper::instance(this);
    exposeToQml();
    appTitle = QStringLiteral("Vireon");
    loadView();
    writeInitialProperties(versionText);
    createWindow();
    installMenuBar();
    connect(window, &MyWidget::closeWindow, this, &MainWindow::onClosing);
    windowVisible = true;
    connectStatusSources();
    setRootProperty("isGreaterEqualsWin8", false);
    setRootProperty("status", StatusStarted);
    setRootProperty("finishedLoading", true);
    show();
}

MainWindow::~MainWindow()
{
    qDebug() << "quiting mainwindow";
}

void MainWindow::exposeToQml()
{
    QQmlContext* context = rootContext();
    context->setContextProperty(QStringLiteral("sdk"), sdk);
    context->setContextProperty(QStringLiteral("mainwindow"), this);
    context->setContextProperty(QStringLiteral("operatingSystem"), QStringLiteral("linux"));
    qDebug() << "qml loaded";
}

void MainWindow::loadView()
{
    qDebug() << "load main.qml";
    setSource(QUrl(QStringLiteral("qrc:/qml/main.qml")));
    if (rootObject())
        return;
    // The compiled view fits one Qt version only, so that an update of Qt can end here.
    QString text = tr("The main view cannot be loaded. Please install Vireon again.");
    for (const QQmlError& error : errors())
        text += QLatin1Char('\n') + error.toString();
    qCritical().noquote() << text;
    QMessageBox::critical(nullptr, appTitle, text);
}

void MainWindow::writeInitialProperties(const QString& versionText)
{
    const GS* settings = GS::instance();
    setRootProperty("isGreaterEqualsWin8", false);
    // The view's property is the negation of the setting; the view is built against that.
    setRootProperty("isTouch", settings->isTouch == 0);
    setRootProperty("versionText", versionText);
    setRootProperty("isAutoStart", settings->autostart);
}

void MainWindow::createWindow()
{
    spareWidget = new MyWidget;
    container = QWidget::createWindowContainer(this, spareWidget);
    container->setMinimumSize(geometry().size());
    container->setFocusPolicy(Qt::StrongFocus);

    window = new MyWidget;
    auto* layout = new QBoxLayout(QBoxLayout::LeftToRight, window);
    layout->addWidget(container);
    window->setWindowTitle(appTitle);
    window->adjustSize();
    centreWindow();
    window->setVisible(brand() == QLatin1String("tal"));
    windowSize = window->size();
}

void MainWindow::centreWindow()
{
    const QScreen* primary = QGuiApplication::primaryScreen();
    if (!primary)
        return;
    const QRect frame = window->geometry();
    window->move(primary->geometry().center()
                 - QPoint((frame.right() - frame.left()) / 2, (frame.bottom() - frame.top()) / 2));
}

void MainWindow::installMenuBar()
{
    createActions();
    menuBar = new QMenuBar;
    createMenus();
    window->layout()->setMenuBar(menuBar);
    // Without this the menu bar's height would raise the minimum above the fixed size.
    window->layout()->setSizeConstraint(QLayout::SetNoConstraint);
    window->setFixedSize(windowSize);
}

void MainWindow::connectStatusSources()
{
    connect(StatusListener::instance(), &StatusListener::statusChanged, this,
            &MainWindow::onStatusChanged);
    connect(SdkHelper::instance(), &SdkHelper::statusChanged, this, &MainWindow::onStatusChanged);
}

// --- Menus ------------------------------------------------------------------------------------

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
    };
    for (const ActionRow& row : rows) {
        this->*row.member = new QAction(row.text, window);
        connect(this->*row.member, &QAction::triggered, this, row.slot);
    }
}

void MainWindow::createMenus()
{
    fileMenu = new QMenu(tr("File"));
    menuBar->addMenu(fileMenu);
    fileMenu->addActions({hideAction, exitAction});
}

// --- Window -----------------------------------------------------------------------------------

void MainWindow::show()
{
    windowVisible = true;
    window->show();
}

void MainWindow::hide()
{
    windowVisible = false;
    window->hide();
}

void MainWindow::showWindow()
{
    // A plain show() would leave a minimised window where it is.
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    show();
    window->raise();
}

void MainWindow::hideWindow()
{
    hide();
}

void MainWindow::onClosing()
{
    if (!quitting)
        hide();
}

void MainWindow::appendText(QString text)
{
    Q_UNUSED(text)
}

QString MainWindow::brand()
{
    for (const BrandCode& entry : brandCodes) {
        if (entry.brand == GS::instance()->brand)
            return QLatin1String(entry.code);
    }
    return QStringLiteral("nobrand");
}

QString MainWindow::appName()
{
    return appTitle;
}

// --- Status -----------------------------------------------------------------------------------

void MainWindow::onStatusChanged(int id)
{
    qDebug() << "firmware version:" << StatusListener::instance()->firmware.load();
    qDebug() << "status" << id;
    writeStatus(id);
    showWindow();
    sdk->resetLastAction();
}

void MainWindow::writeStatus(int id)
{
    QQuickItem* root = rootObject();
    if (!root)
        return;
    // A write of an equal value tells the view nothing, yet it must react to every report.
    const bool equal = root->property("status").toInt() == id;
    root->setProperty("status", id);
    if (equal)
        QMetaObject::invokeMethod(root, "statusChanged");
}

void MainWindow::setRootProperty(const char* name, const QVariant& value)
{
    if (QQuickItem* root = rootObject())
        root->setProperty(name, value);
}

// --- Calibrations -----------------------------------------------------------------------------

void MainWindow::startAutoCalibration()
{
    markCalibration();
    sdk->trigger(SdkHelper::AutoCalibration);
}

void MainWindow::startManualCalibration()
{
    deleteCalibrationCache();
    markCalibration();
    sdk->trigger(SdkHelper::ManualCalibration);
}

void MainWindow::startTouchCalibration()
{
    deleteCalibrationCache();
    markCalibration();
    sdk->trigger(SdkHelper::TouchCalibration);
}

void MainWindow::deleteCalibrationCache()
{
    QFile::remove(QString::fromStdString(GS::instance()->mcCachePath));
}

void MainWindow::markCalibration()
{
    setRootProperty("isLoading", true);
    setRootProperty("aspectRatioWarningShown", true);
}

// --- Quit -------------------------------------------------------------------------------------

void MainWindow::exitApp()
{
    sdk->trigger(SdkHelper::QuitEngine);
    quitting = true;
    qDebug() << "Quit Vireon clicked";
    hide();
    // Not a nested event loop, in which the engine's exit would be taken for a crash.
    QThread::msleep(quitGraceMs);
    close();
    QCoreApplication::quit();
}
