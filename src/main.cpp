#include "app/applicationservice.h"
#include "app/fonts.h"
#include "app/quitrequests.h"
#include "app/resources.h"
#include "app/version.h"
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
#include <unistd.h>

namespace {

constexpr int applicationFlags = 330762; // version 5.12.10, as Qt numbers it
constexpr int quitBudgetMs = 500; // for all workers together

void installTranslation(QTranslator& translator)
{
    const QString language = QLocale::system().name().split(QLatin1Char('_')).first();
    const bool loaded = translator.load(QLatin1String("vireon-menu-desktop-") + language,
                                        QStringLiteral(":/translations"));
    qDebug() << language << " translation loading: " << (loaded ? "true" : "false");
    QCoreApplication::installTranslator(&translator);
}

/// The view is small and mostly still. Drawn without GL the program takes 66 MB instead of 120 to
/// 133, and 3 % of a processor instead of 17 to 54 while "Loading..." turns, at an even 62 pictures
/// per second; it starts sooner, and neither takes anything when idle (bench/renderers, no GPU).
void chooseRenderer()
{
    // Or Qt loads the GL driver for the windows around the view all the same.
    QCoreApplication::setAttribute(Qt::AA_ForceRasterWidgets);
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND"))
        QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software);
}

/// Ends the process without the static destructors, which must not run under living threads.
[[noreturn]] void leave(int status)
{
    std::fflush(nullptr);
    _exit(status);
}

int run(int& argc, char** argv)
{
    // Qt takes both out of the environment's hands: read and hidden before it looks.
    const QByteArray startupId = qgetenv("DESKTOP_STARTUP_ID");
    GtkThemeBlocker themeBlocker;
    QApplication application(argc, argv, applicationFlags);
    themeBlocker.restore();
    QCoreApplication::setOrganizationDomain(QStringLiteral("com.corvanthel.Vireon"));
    QCoreApplication::setOrganizationName(QStringLiteral("Vireon"));
    QCoreApplication::setApplicationVersion(QLatin1String(applicationVersion));
    // The window only hides when it is closed, and must never hold up the end of a session.
    QApplication::setQuitOnLastWindowClosed(false);
    QGuiApplication::setFallbackSessionManagementEnabled(false);
    applyLooks();
    chooseRenderer();

    RunGuard guard(GS::instance()->appName);
    if (!guard.tryToRun()) {
        QMessageBox::critical(nullptr, QStringLiteral("Error"),
                              QStringLiteral("Vireon application is already running."),
                              QMessageBox::Ok, QMessageBox::NoButton);
        ApplicationService::activateOther(startupId);
        return 0;
    }

    qDebug() << "Start vireon-main";
    QTranslator translator;
    installTranslation(translator);
    unifyFonts();
    qDebug() << "Create MainWindow";
    const QString openText = QObject::tr("Open");
    const QString exitText = QObject::tr("Exit");
    FileHelper::cleanWorkingDirectory();
    mainWindow = new MainWindow(openText, exitText, QLatin1String(applicationVersion));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/qml/Vireon.icns")));
    const QuitRequests quitRequests;
    QObject::connect(&quitRequests, &QuitRequests::quitRequested, mainWindow, &MainWindow::exitApp);
    ApplicationService service;
    QObject::connect(&service, &ApplicationService::activateRequested, mainWindow,
                     &MainWindow::bringToFront);
    service.start();
    qDebug() << "Run Vireon";
    SdkHelper::instance(nullptr)->startVireon();

    const int status = QApplication::exec();
    WorkerThread::stopAll();
    if (!WorkerThread::waitForAll(quitBudgetMs)) {
        // A thread that is still alive, in a tool that hangs, may use whatever is destroyed now.
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
