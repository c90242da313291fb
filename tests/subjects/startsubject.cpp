// The program itself, src/main.cpp, up to its event loop: startsubject. In place of that it says
// what the start has made, one "name: value" a line, and returns 3.
#include "ui/mainwindow.h"

#include <QAction>
#include <QApplication>
#include <QIcon>
#include <QMenu>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTextCodec>
#include <QWidget>

#include <iostream>

int vireonMain(int argc, char* argv[]);

namespace {

void say(const char* name, const QString& value)
{
    std::cout << name << ": " << value.toStdString() << std::endl;
}

void say(const char* name, bool value)
{
    say(name, QLatin1String(value ? "yes" : "no"));
}

bool isWindowShown()
{
    for (const QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && widget->windowTitle() == mainWindow->appName())
            return true;
    }
    return false;
}

bool hasProgramsIcon()
{
    const QSize size(32, 32);
    const QImage wanted = QIcon(":/qml/Vireon.icns").pixmap(size).toImage();
    return !wanted.isNull() && QApplication::windowIcon().pixmap(size).toImage() == wanted;
}

} // namespace

/// Stands in front of Qt's.
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
    say("version in the view", mainWindow->rootObject()->property("versionText").toString());
    say("tray item",
        mainWindow->findChild<QSystemTrayIcon*>()->contextMenu()->actions().first()->text());
    return 3;
}

int main(int argc, char* argv[])
{
    return vireonMain(argc, argv);
}
