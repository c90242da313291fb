#include "ui/keyboardrouter.h"

#include "ui/windowsystem.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QWindow>

KeyboardRouter::KeyboardRouter(QWindow* innerView, QWidget* itsContainer, QMenuBar* bar,
                               QObject* parent)
    : QObject(parent)
    , view(innerView)
    , container(itsContainer)
    , window(itsContainer->window())
    , menuBar(bar)
{
    // Queued: Qt emits these while the change is still under way.
    const auto leadOn = &KeyboardRouter::leadToView;
    connect(qApp, &QGuiApplication::focusWindowChanged, this, leadOn, Qt::QueuedConnection);
    connect(qApp, &QApplication::focusChanged, this, leadOn, Qt::QueuedConnection);
    for (const QAction* action : menuBar->actions()) {
        if (action->menu())
            connect(action->menu(), &QMenu::aboutToHide, this, leadOn, Qt::QueuedConnection);
    }
    view->installEventFilter(this);
    container->installEventFilter(this);
    menuBar->installEventFilter(this);
}

bool KeyboardRouter::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == view && event->type() == QEvent::KeyPress) {
        const auto* press = static_cast<QKeyEvent*>(event);
        if (press->key() == Qt::Key_F10 && press->modifiers() == Qt::NoModifier) {
            openFirstMenu();
            return true;
        }
    }
    // The container would hand the keyboard on at once, to a view that may not be there yet.
    const bool given = watched == container && event->type() == QEvent::FocusIn;
    const bool arrived = watched == view && event->type() == QEvent::Expose;
    if (given || arrived)
        QMetaObject::invokeMethod(this, &KeyboardRouter::leadToView, Qt::QueuedConnection);
    if (given)
        return true;
    // No signal tells that an Escape has left the menu bar.
    if (watched == menuBar && event->type() == QEvent::KeyRelease)
        leadToView();
    return QObject::eventFilter(watched, event);
}

void KeyboardRouter::leadToView()
{
    const bool inMenus =
        QApplication::activePopupWidget() || (menuBar->hasFocus() && menuBar->activeAction());
    if (!inMenus && view->handle() && window->windowHandle())
        handKeyboardOn(*window->windowHandle(), *view);
}

// The keyboard goes to the window first: after an Escape the menu bar itself needs it.
void KeyboardRouter::openFirstMenu()
{
    window->windowHandle()->requestActivate();
    menuBar->setActiveAction(menuBar->actions().constFirst());
}
