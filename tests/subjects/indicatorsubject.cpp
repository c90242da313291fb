// The indicator and its notifications: indicatorsubject [gtk3] [xerror]. It chooses Qt's theme as
// the program does, and obeys lines on standard input, whose words are separated by tabs:
//   indicate SHOW QUIT       makes the indicator
//   notify SUMMARY BODY...   shows one notification for each two words
//   xerror                   provokes an X error
//   dispatcher               answers the class of Qt's event dispatcher
// Each but the last is answered "done". It says "show" and "quit" when a menu entry was chosen.
// With the argument gtk3 it has GTK 3 loaded before the first line.
#include "base/desktop.h"
#include "support/words.h"
#include "ui/linuxtrayiconmanager.h"

#include <QAbstractEventDispatcher>
#include <QApplication>

#include <dlfcn.h>

namespace {

/// Asks the server to draw a window that does not exist.
void provokeXError()
{
    void* x11 = dlopen("libX11.so.6", RTLD_NOW);
    const auto openDisplay = reinterpret_cast<void* (*)(const char*)>(dlsym(x11, "XOpenDisplay"));
    const auto mapWindow =
        reinterpret_cast<int (*)(void*, unsigned long)>(dlsym(x11, "XMapWindow"));
    const auto sync = reinterpret_cast<int (*)(void*, int)>(dlsym(x11, "XSync"));
    void* display = openDisplay(nullptr);
    mapWindow(display, 1);
    sync(display, 0);
}

void notifyAll(LinuxTrayIconManager& manager, const QStringList& line)
{
    for (int i = 1; i + 1 < line.size(); i += 2) {
        QByteArray summary = line[i].toUtf8();
        QByteArray body = line[i + 1].toUtf8();
        manager.createNotification(summary.data(), body.data());
    }
}

} // namespace

int main(int argc, char** argv)
{
    GtkThemeBlocker blocker;
    QApplication application(argc, argv);
    blocker.restore();
    if (QApplication::arguments().contains("gtk3"))
        dlopen("libgtk-3.so.0", RTLD_NOW);

    LinuxTrayIconManager manager;
    QObject::connect(&manager, &LinuxTrayIconManager::trayIconClicked, [] { Words::say("show"); });
    QObject::connect(&manager, &LinuxTrayIconManager::trayIconQuit, [] { Words::say("quit"); });
    const Words words([&](const QStringList& line) {
        const QString& word = line.first();
        if (word == "indicate")
            manager.createIndicator(line.value(1), line.value(2));
        else if (word == "notify")
            notifyAll(manager, line);
        else if (word == "xerror")
            provokeXError();
        if (word == "dispatcher")
            Words::say(QAbstractEventDispatcher::instance()->metaObject()->className());
        else
            Words::say("done");
    });
    Words::say("ready");
    return QApplication::exec();
}
