// The program itself, src/main.cpp, without its event loop: startsubject. In place of that it says
// what the start has made, one "name: value" a line, and ends with 3; at the very end it says on
// standard error whether the worker threads were told to stop.
#include "base/workerthread.h"
#include "ui/mainwindow.h"

#include <QAction>
#include <QApplication>
#include <QIcon>
#include <QMenu>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTextCodec>
#include <QWidget>

#include <cstdio>
#include <sys/syscall.h>
#include <unistd.h>

int vireonMain(int argc, char* argv[]);

namespace {

void say(const char* name, const QString& value)
{
    std::printf("%s: %s\n", name, value.toUtf8().constData());
}

void say(const char* name, bool value)
{
    say(name, QLatin1String(value ? "yes" : "no"));
}

bool isWindowShown()
{
    for (const QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && widget->windowTitle() == mainWindow.load()->appName())
            return true;
    }
    return false;
}

bool hasLooksOfTheView()
{
    return QApplication::palette().color(QPalette::Window) == mainWindow.load()->color();
}

bool hasProgramsIcon()
{
    const QSize size(32, 32);
    const QImage wanted = QIcon(":/qml/Vireon.icns").pixmap(size).toImage();
    return !wanted.isNull() && QApplication::windowIcon().pixmap(size).toImage() == wanted;
}

} // namespace

// These two stand in front of the real ones. Nothing is flushed here: the program does that.

int QApplication::exec()
{
    say("domain", organizationDomain());
    say("organisation", organizationName());
    say("version", applicationVersion());
    say("quits with its last window", quitOnLastWindowClosed());
    say("keeps the session's end up", isFallbackSessionManagementEnabled());
    say("file names", QString(QTextCodec::codecForLocale()->name()));
    say("widgets without GL", testAttribute(Qt::AA_ForceRasterWidgets));
    say("renderer", QQuickWindow::sceneGraphBackend());
    say("icon", hasProgramsIcon());
    say("shown", isWindowShown());
    say("looks of the view", hasLooksOfTheView());
    say("fonts unified", !QFont::substitutes("Tahoma").isEmpty());
    say("version in the view", mainWindow.load()->rootObject()->property("versionText").toString());
    const auto* icon = mainWindow.load()->findChild<QSystemTrayIcon*>();
    say("tray item", icon ? icon->contextMenu()->actions().first()->text() : "none");
    return 3;
}

void _exit(int status)
{
    std::fprintf(stderr, "workers stopped: %s\n", WorkerThread::isStopping() ? "yes" : "no");
    for (;;)
        syscall(SYS_exit_group, status);
}

int main(int argc, char* argv[])
{
    return vireonMain(argc, argv);
}
