#include "app/integration.h"

#include "app/autostartcontrol.h"
#include "app/commandline.h"
#include "app/logfile.h"
#include "app/mailboxcommands.h"
#include "app/messageoutput.h"
#include "app/sleepwatch.h"
#include "app/toolbarcontrol.h"
#include "app/updaterwatch.h"
#include "engine/sdkhelper.h"
#include "settings/globalsettings.h"
#include "ui/logview.h"
#include "ui/mainwindow.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <cstdio>

namespace {

/// Past the log, which an administrator may have switched off.
void tell(const QString& fault)
{
    std::fprintf(stderr, "config/integration.conf: %s\n", fault.toUtf8().constData());
}

void makeLogView(MainWindow& window, QObject* parent)
{
    window.setLogView(new LogView(GS::instance()->dataDir, parent));
}

void watchSleep(MainWindow& window, QObject* parent)
{
    auto* watch = new SleepWatch(parent);
    QObject::connect(watch, &SleepWatch::goingToSleep, &window, &MainWindow::onGoingToSleep);
    QObject::connect(SdkHelper::instance(), &SdkHelper::engineStopped, watch,
                     &SleepWatch::allowSleep);
    QObject::connect(watch, &SleepWatch::wokenUp, &window, &MainWindow::onWakingUp);
}

template <class Part> void make(MainWindow& window, QObject* parent)
{
    new Part(window, parent);
}

/// What needs the main window, by its switch.
struct PartRow
{
    bool Switches::*on;
    void (*make)(MainWindow& window, QObject* parent);
};

const PartRow parts[] = {
    {&Switches::mailbox, make<MailboxCommands>},
    {&Switches::logWindow, makeLogView},
    {&Switches::sleep, watchSleep},
    {&Switches::updater, make<UpdaterWatch>},
    {&Switches::autostartEntry, make<AutostartControl>},
    {&Switches::annotationToolbar, make<ToolbarControl>},
};

} // namespace

Integration::Integration(const CommandLine& commandLine)
{
    const QString path =
        QCoreApplication::applicationDirPath() + QLatin1String("/config/integration.conf");
    for (const QString& fault : switches.read(path))
        tell(fault);
    commandLine.applyTo(switches);
    if (!switches.logFile.isEmpty())
        startLogFile();
    if (switches.logWindow || !switches.logFile.isEmpty())
        qInstallMessageHandler(myMessageOutput);
}

void Integration::startLogFile()
{
    const QString path = QDir(GS::instance()->dataDir).filePath(switches.logFile);
    QDir().mkpath(QFileInfo(path).path());
    setLogFile(new LogFile(path, switches.logFileSize, switches.logFileKept));
}

void Integration::start(MainWindow& window)
{
    for (const PartRow& part : parts) {
        if (switches.*part.on)
            part.make(window, this);
    }
}
