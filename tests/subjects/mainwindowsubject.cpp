// The main window on a desktop, without an engine: mainwindowsubject. It shows the window, says
// "ready" and obeys lines on standard input, whose words are separated by tabs; it answers each
// "done":
//   call SLOT          calls a slot without arguments
//   message TEXT       shows or queues a message
//   status CODE        reports a status
#include "app/resources.h"
#include "base/desktop.h"
#include "settings/globalsettings.h"
#include "support/words.h"
#include "ui/mainwindow.h"

#include <QApplication>
#include <QDir>

namespace {

/// All that the program writes goes into the current directory.
void moveFiles()
{
    GS* settings = GS::instance();
    const QDir place = QDir::current();
    settings->penSettingsPath = place.filePath("pensettings.ini").toStdString();
    settings->mcCachePath = place.filePath("mcCache").toStdString();
    settings->userIniPath = place.filePath("user.ini").toStdString();
}

} // namespace

int main(int argc, char** argv)
{
    initResources();
    GtkThemeBlocker themeBlocker;
    const QApplication application(argc, argv);
    themeBlocker.restore();
    QApplication::setQuitOnLastWindowClosed(false);
    moveFiles();
    mainWindow = new MainWindow("Open", "Exit", "1.4.121");

    const Words words([](const QStringList& line) {
        if (line.first() == "call")
            QMetaObject::invokeMethod(mainWindow.load(), line.value(1).toLatin1().constData());
        else if (line.first() == "message")
            mainWindow.load()->showMessage(line.value(1));
        else if (line.first() == "status")
            mainWindow.load()->onStatusChanged(line.value(1).toInt());
        Words::say("done");
    });
    Words::say("ready");
    return QApplication::exec();
}
