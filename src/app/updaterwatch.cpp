#include "app/updaterwatch.h"

#include "settings/globalsettings.h"
#include "ui/mainwindow.h"

#include <QTimer>

namespace {

constexpr int readingTimeMs = 2000; // for the message, which goes with the program

} // namespace

UpdaterWatch::UpdaterWatch(MainWindow& itsWindow, QObject* parent)
    : QObject(parent)
    , window(itsWindow)
    , updater(GS::instance()->updaterName)
{
    connect(&updater, &UpdaterStateListener::updateInProcess, this, &UpdaterWatch::quitOnce);
}

void UpdaterWatch::quitOnce()
{
    if (quitting)
        return;
    quitting = true;
    window.showMessage(tr("Vireon is being updated and quits now."));
    QTimer::singleShot(readingTimeMs, &window, &MainWindow::exitApp);
}
