#include "ui/mapwatch.h"

#include "base/logcategories.h"
#include "ui/windowsystem.h"

#include <QEvent>
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
    window.windowHandle()->installEventFilter(this);
}

bool MapWatch::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Expose && !window.windowHandle()->isExposed())
        delay.start();
    return QObject::eventFilter(watched, event);
}

void MapWatch::look()
{
    if (!window.isVisible() || !isWithdrawn(*window.windowHandle()))
        return;
    qCDebug(desktopLog) << "the window manager has lost the window, showing it anew";
    window.hide();
    window.show();
}
