#include "app/autostartcontrol.h"

#include "settings/autostartentry.h"
#include "settings/globalsettings.h"
#include "ui/mainwindow.h"

#include <QQuickItem>

AutostartControl::AutostartControl(MainWindow& itsWindow, QObject* parent)
    : QObject(parent)
    , window(itsWindow)
{
    // The window takes the setting for true at its start. With the first toggle it agrees.
    if (!GS::instance()->autostart)
        window.toggleAutoStart();
    showWhatIsSo();
    connect(window.rootObject(), SIGNAL(isAutoStartChanged()), this, SLOT(onChanged()));
}

void AutostartControl::onChanged()
{
    // The view is told before the setting is changed.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (GS::instance()->autostart != AutostartEntry::isOn())
                AutostartEntry::write();
            showWhatIsSo();
        },
        Qt::QueuedConnection);
}

void AutostartControl::showWhatIsSo()
{
    if (GS::instance()->autostart != AutostartEntry::isOn())
        window.toggleAutoStart();
}
