#include "app/applicationservice.h"
#include "app/commandline.h"
#include "app/fonts.h"
#include "app/integration.h"
#include "app/quitrequests.h"
#include "app/quitsequence.h"
#include "app/resources.h"
#include "app/version.h"
#include "base/desktop.h"
#include "engine/sdkhelper.h"
#include "ipc/runguard.h"
#include "settings/filehelper.h"
#include "settings/globalsettings.h"
#include "ui/datadirectorycheck.h"
#include "ui/errorbox.h"
#include "ui/looks.h"
#include "ui/mainwindow.h"
#include "ui/programicon.h"

#include <QApplication>
#include <QDebug>
#include <QLocale>
#include <QQuickWindow>
#include <QTextCodec>
#include <QTranslator>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <utility>

namespace {

constexpr int applicationFlags = 330762; // version 5.12.10, as Qt numbers it

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

void showDataDirectoryProblem()
{
    const QString problem = DataDirectoryCheck::problem();
    if (!problem.isEmpty())
        showErrorBox(mainWindow.load()->appName(), problem);
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
    auto* window = new MainWindow(openText, exitText, QLatin1String(applicationVersion));
    mainWindow = window;
    QApplication::setWindowIcon(programIcon());
    // These two live as long as the process, as the window does.
    auto* quitRequests = new QuitRequests;
    QObject::connect(quitRequests, &QuitRequests::quitRequested, window, &MainWindow::exitApp);
    if (!window->hasView()) {
        window->showViewError();
        return false;
    }
    auto* service = new ApplicationService;
    QObject::connect(service, &ApplicationService::activateRequested, window,
                     &MainWindow::bringToFront);
    service->start();
    integration.start(*window);
    qDebug() << "Run Vireon";
    SdkHelper::instance(nullptr)->startVireon();
    // The box waits for the user, and everything else must not.
    QMetaObject::invokeMethod(window, &showDataDirectoryProblem, Qt::QueuedConnection);
    return true;
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
    QuitSequence::end(std::move(application), std::move(guard), std::move(translator), status);
}

} // namespace

int main(int argc, char* argv[])
{
    // File names are UTF-8 whatever the locale: under "C" Qt would lose all but ASCII.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    CommandLine commandLine(argc, argv);
    if (const std::optional<int> status = commandLine.answer())
        QuitSequence::leave(*status);
    initResources();
    QuitSequence::leave(run(argc, argv, commandLine));
}
