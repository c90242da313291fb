#include "ui/mapwatch.h"

#include "base/logcategories.h"
#include "ui/windowsystem.h"

#include <QCoreApplication>
#include <QWidget>
#include <QWindow>

namespace {

constexpr int delayMs = 500;

} // namespace

MapWatch::MapWatch(QWidget& itsWindow, QObject* parent)
    : QObject(parent)
    , window(itsWindow)
{
    delay.setSingleShot(true);
    delay.setInterval(delayMs);
    connect(&delay, &QTimer::timeout, this, &MapWatch::look);
    QCoreApplication::instance()->installNativeEventFilter(this);
}

bool MapWatch::nativeEventFilter(const QByteArray& type, void* message, long* /*result*/)
{
    if (type != "xcb_generic_event_t")
        return false;
    if (tellsOfManager(message, *window.windowHandle()))
        delay.start();
    return tellsOfPastShowing(message, *window.windowHandle());
}

void MapWatch::look()
{
    if (!window.isVisible() || !isWithdrawn(*window.windowHandle()))
        return;
    qCDebug(desktopLog) << "the window manager has lost the window, showing it anew";
    window.hide();
    window.show();
}
