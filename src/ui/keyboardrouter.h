#pragma once

#include <QObject>

class QMenuBar;
class QWidget;
class QWindow;

/**
 * Leads the keyboard to where the user looks, in a window that holds a menu bar of widgets and a
 * view that is a window of its own.
 *
 * What is typed goes to the view as soon as the window has the keyboard, except while the menu bar
 * or one of its menus is in use. F10 in the view opens the first menu; arrows, Enter and Escape do
 * the rest, and the view gets the keyboard back.
 */
class KeyboardRouter : public QObject
{
    Q_OBJECT

public:
    /// @p container holds the view in the window. The menus of @p bar, which lies in that window,
    /// must be complete. All three outlive this.
    KeyboardRouter(QWindow* innerView, QWidget* container, QMenuBar* bar, QObject* parent);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void leadToView();
    void openFirstMenu();

    QWindow* const view;
    QWidget* const container;
    QWidget* const window;
    QMenuBar* const menuBar;
};
