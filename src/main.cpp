#include "app/applicationservice.h"
#include "app/commandline.h"
#include "app/fonts.h"
#include "app/integration.h"
#include "app/quitrequests.h"
#include "app/resources.h"
#include "app/version.h"
#include "base/desktop.h"
#include "base/workerthread.h"
#include "engine/graceperiod.h"
#include "engine/sdkhelper.h"
#include "ipc/runguard.h"
#include "settings/filehelper.h"
#include "settings/globalsettings.h"
#include "ui/errorbox.h"
#include "ui/looks.h"
#include "ui/mainwindow.h"

#include <QApplication>
#include <QDebug>
#include <QIcon>
#include <QLocale>
#include <QQuickWindow>
#include <QTextCodec>
#include <QTranslator>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <unistd.h>
#include <utility>

// How the program ends. MainWindow::exitApp() is the only way out, for the user and, through
// QuitRequests, for the system. It sends the engine's command "Q" to a thread of its own, hides all
// that shows and waits 800 ms without an event loop, in which an exit of the engine would be taken
// for a crash. The workers go on meanwhile: a command that waits for its engine runs when that gets
// ready, and the status reader reports to nobody. Then the event loop ends, and end() follows:
//  1. WorkerThread::stopAll() cuts every sleep, and each worker leaves at its next look, 500 ms for
//     all. A tool that still runs is left alone.
//  2. What the process holds is given back: the guard always, translator and application only when
//     no thread is alive that might use them. Main window and supervisor are never destroyed.
//  3. GracePeriod: an engine or a tool that still runs has 5 s after the SIGTERM that it gets with
//     the end of this process.
//  4. The process leaves without its static destructors.

namespace {

constexpr int applicationFlags = 330762; // version 5.12.10, as Qt numbers it
constexpr int quitBudgetMs = 500; // for all workers together

// What menus write for the key. Qt asks for it in its own name, and its catalogues are not here.
[[maybe_unused]] constexpr const char* controlKey = QT_TRANSLATE_NOOP("QShortcut", "Ctrl");

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

/// Tells that the program runs already, and lets the copy that does show its window.
void giveWay(const QByteArray& startupId)
{
    showErrorBox(QStringLiteral("Error"), QStringLiteral("Vireon application is already running."));
    ApplicationService::activateOther(startupId);
}

// --- The three steps of a run -----------------------------------------------------------------

/// What holds for the process from its first window on.
void prepareApplication()
{
    QCoreApplication::setOrganizationDomain(QStringLiteral("com.corvanthel.Vireon"));
    QCoreApplication::setOrganizationName(QStringLiteral("Vireon"));
    QCoreApplication::setApplicationVersion(QLatin1String(applicationVersion));
    // The window only hides when it is closed, and must never hold up the end of a session.
    QApplication::setQuitOnLastWindowClosed(false);
    QGuiApplication::setFallbackSessionManagementEnabled(false);
    unifyFonts();
    applyLooks();
    chooseRenderer();
}

/// Makes and shows the main window, and starts the engine. False when there is nothing to show: the
/// user knows then.
bool start(QTranslator& translator, Integration& integration)
{
    qDebug() << "Start vireon-main";
    installTranslation(translator);
    qDebug() << "Create MainWindow";
    const QString openText = QObject::tr("Open");
    const QString exitText = QObject::tr("Exit");
    FileHelper::cleanWorkingDirectory();
    mainWindow = new MainWindow(openText, exitText, QLatin1String(applicationVersion));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/qml/Vireon.icns")));
    // These two live as long as the process, as the window does.
    auto* quitRequests = new QuitRequests;
    QObject::connect(quitRequests, &QuitRequests::quitRequested, mainWindow, &MainWindow::exitApp);
    if (!mainWindow->hasView()) {
        mainWindow->showViewError();
        return false;
    }
    auto* service = new ApplicationService;
    QObject::connect(service, &ApplicationService::activateRequested, mainWindow,
                     &MainWindow::bringToFront);
    service->start();
    integration.start(*mainWindow);
    qDebug() << "Run Vireon";
    SdkHelper::instance(nullptr)->startVireon();
    // The box waits for the user, and everything else must not.
    QMetaObject::invokeMethod(mainWindow, &MainWindow::checkDataDirectory, Qt::QueuedConnection);
    return true;
}

/// Ends the process without the static destructors, which must not run under living threads.
[[noreturn]] void leave(int status)
{
    std::fflush(nullptr);
    _exit(status);
}

/// Gives back all that the process holds, and leaves. See above for what may still run.
[[noreturn]] void end(std::unique_ptr<QApplication> application, std::unique_ptr<RunGuard> guard,
                      std::unique_ptr<QTranslator> translator, int status)
{
    WorkerThread::stopAll();
    const bool alone = WorkerThread::waitForAll(quitBudgetMs);
    // The application object takes the window along, and with it all that is in it.
    mainWindow->setParent(nullptr);
    if (!alone) {
        static_cast<void>(translator.release());
        static_cast<void>(application.release());
    }
    translator.reset();
    guard.reset();
    application.reset();
    std::fflush(nullptr);
    GracePeriod::begin();
    _exit(status);
}

int run(int& argc, char** argv, const CommandLine& commandLine)
{
    // Read and hidden before Qt looks: it takes both out of the environment.
    const QByteArray startupId = qgetenv("DESKTOP_STARTUP_ID");
    GtkThemeBlocker themeBlocker;
    auto application = std::make_unique<QApplication>(argc, argv, applicationFlags);
    themeBlocker.restore();
    prepareApplication();

    auto guard = std::make_unique<RunGuard>(GS::instance()->appName);
    if (!guard->tryToRun()) {
        giveWay(startupId);
        return 0;
    }
    // Lives as long as the process, too.
    auto* integration = new Integration(commandLine);
    auto translator = std::make_unique<QTranslator>();
    const int status = start(*translator, *integration) ? QApplication::exec() : EXIT_FAILURE;
    end(std::move(application), std::move(guard), std::move(translator), status);
}

} // namespace

int main(int argc, char* argv[])
{
    // File names are UTF-8 whatever the locale: under "C" Qt would lose all but ASCII.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    CommandLine commandLine(argc, argv);
    if (const std::optional<int> status = commandLine.answer())
        leave(*status);
    initResources();
    leave(run(argc, argv, commandLine));
}
