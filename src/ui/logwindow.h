#pragma once

#include <QQmlApplicationEngine>
#include <QString>

class QWidget;

/**
 * A window of its own, 800 x 400 px, that shows a growing log which can only be read.
 *
 * It is the engine of its view "qrc:/qml/LogWindow.qml" and calls the view's functions by name.
 * The window manager's close button hides it. The text is never cleared. Where the view cannot be
 * loaded, Qt says so on the log, and all members do nothing.
 */
class LogWindow : public QQmlApplicationEngine
{
    Q_OBJECT

public:
    /// Loads the view; the window is hidden. @p parent is not used: the engine has no parent.
    explicit LogWindow(QWidget* parent);

    // GUI thread only.
    bool isVisible();
    void hide();
    void show();

    /// Adds @p text and a line break. From any thread: the event loop of the window's thread
    /// shows it.
    void appendText(QString text);

private:
    QObject* view() const; ///< null when it could not be loaded
};
