#include "app/applicationservice.h"
#include "app/fonts.h"
#include "app/quitrequests.h"
#include "app/resources.h"
#include "base/desktop.h"
#include "base/workerthread.h"
#include "engine/sdkhelper.h"
#include "ipc/runguard.h"
#include "settings/filehelper.h"
#include "settings/globalsettings.h"
#include "ui/looks.h"
#include "ui/mainwindow.h"

#include <QApplication>
#include <QDebug>
#include <QIcon>
#include <QLocale>
#include <QMessageBox>
#include <QQuickWindow>
#include <QTextCodec>
#include <QTranslator>

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

// How the program ends. MainWindow::exitApp() is the only way out, for the user and, through
// QuitRequests, for the system. On the GUI thread: the engine's command "Q" goes to its own thread,
// tray icon, keep-awake helper and window go, and 800 ms pass without an event loop, in which an
// exit of the engine would be taken for a crash; then the event loop ends. Until here the workers
// go on: the status reader may report to nobody, a command that still waits for its engine runs
// when that gets ready. Then WorkerThread::stopAll() cuts every sleep and every loop leaves at its
// next test, 500 ms for all. After that no thread but this one uses anything of the program, or
// nothing more is destroyed than the guard's hold; the process leaves without static destructors.

namespace {

constexpr int applicationFlags = 330762; // version 5.12.10, as Qt numbers it
constexpr int quitBudgetMs = 500; // for all workers together
const char* const version = "1.4.121";

void installTranslation(QTranslator& translator)
{
    const QString language = QLocale::system().name().split(QLatin1Char('_')).first();
    const bool loaded = translator.load(QLatin1String("vireon-menu-desktop-") + language,
                                        QStringLiteral(":/translations"));
    qDebug() << language << " translation loading: " << (loaded ? "true" : "false");
    QCoreApplication::installTranslator(&translator);
}

/// The view is small and mostly still: drawn without GL it starts sooner, takes half the memory and
/// a fraction of the processor while "Loading..." turns (bench/README.md, renderers).
void chooseRenderer()
{
    // Or Qt loads the GL driver for the windows around the view all the same.
    QCoreApplication::setAttribute(Qt::AA_ForceRasterWidgets);
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND"))
        QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software);
}

// --- The three steps of a run -----------------------------------------------------------------

/// What holds for the process from its first window on.
void prepareApplication()
{
    QCoreApplication::setOrganizationDomain(QStringLiteral("com.corvanthel.Vireon"));
    QCoreApplication::setOrganizationName(QStringLiteral("Vireon"));
    QCoreApplication::setApplicationVersion(QLatin1String(version));
    // The window only hides when it is closed, and must never hold up the end of a session.
    QApplication::setQuitOnLastWindowClosed(false);
    QGuiApplication::setFallbackSessionManagementEnabled(false);
    applyLooks();
    chooseRenderer();
}

/// Makes and shows the main window, and starts the engine. False when there is nothing to show: the
/// user knows then.
bool start(QTranslator& translator)
{
    qDebug() << "Start vireon-main";
    installTranslation(translator);
    unifyFonts();
    qDebug() << "Create MainWindow";
    const QString openText = QObject::tr("Open");
    const QString exitText = QObject::tr("Exit");
    FileHelper::cleanWorkingDirectory();
    mainWindow = new MainWindow(openText, exitText, QLatin1String(version));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/qml/Vireon.icns")));
    auto* quitRequests = new QuitRequests(mainWindow);
    QObject::connect(quitRequests, &QuitRequests::quitRequested, mainWindow, &MainWindow::exitApp);
    if (!mainWindow->hasView()) {
        mainWindow->showViewError();
        return false;
    }
    auto* service = new ApplicationService(mainWindow);
    QObject::connect(service, &ApplicationService::activateRequested, mainWindow,
                     &MainWindow::bringToFront);
    service->start();
    qDebug() << "Run Vireon";
    SdkHelper::instance(nullptr)->startVireon();
    return true;
}

/// Ends the threads once the event loop has ended. False when one is still alive, in a tool that
/// hangs: it may use whatever the application object takes with it.
bool endThreads()
{
    WorkerThread::stopAll();
    return WorkerThread::waitForAll(quitBudgetMs);
}

/// Tells that the program runs already, and lets the copy that does show its window.
void giveWay(const QByteArray& startupId)
{
    QMessageBox::critical(nullptr, QStringLiteral("Error"),
                          QStringLiteral("Vireon application is already running."), QMessageBox::Ok,
                          QMessageBox::NoButton);
    ApplicationService::activateOther(startupId);
}

/// Ends the process without the static destructors, which must not run under living threads.
[[noreturn]] void leave(int status)
{
    std::fflush(nullptr);
    _exit(status);
}

int run(int& argc, char** argv)
{
    // Read and hidden before Qt looks: it takes both out of the environment.
    const QByteArray startupId = qgetenv("DESKTOP_STARTUP_ID");
    GtkThemeBlocker themeBlocker;
    QApplication application(argc, argv, applicationFlags);
    themeBlocker.restore();
    prepareApplication();

    RunGuard guard(GS::instance()->appName);
    if (!guard.tryToRun()) {
        giveWay(startupId);
        return 0;
    }
    QTranslator translator;
    const int status = start(translator) ? QApplication::exec() : EXIT_FAILURE;
    if (!endThreads()) {
        guard.release();
        leave(status);
    }
    return status;
}

} // namespace

int main(int argc, char* argv[])
{
    // File names are UTF-8 whatever the locale: under "C" Qt would lose all but ASCII.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    initResources();
    leave(run(argc, argv));
}
