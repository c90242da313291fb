#pragma once

#include <QRect>
#include <QVector>

class QMenuBar;
class QSize;
class QWidget;

/**
 * Size and place of the top-level window around the main view.
 *
 * The window has one fixed size, which the view fills but for the menu bar; it is another one as
 * soon as the desktop's text size is. It stands in the middle of the primary screen until the user
 * moves it. GUI thread only.
 */
class WindowFrame
{
public:
    /// @p window outlives this, and must have a layout before anything else is called.
    explicit WindowFrame(QWidget& window);

    /// Gives @p content all of the window, and leaves room for a menu bar.
    void fill(QWidget& content);

    /// Puts the menu bar into the room that was left for it, and fixes the window's @p size in px.
    void installMenuBar(QMenuBar& bar, const QSize& size);

    /// Fixes the size anew, around content that has become @p size px large. The window keeps its
    /// middle, or moves as far as it takes for all of it to be on its screen. Returns the new size.
    QSize refit(QWidget& content, const QSize& size);

    /// Moves the window into the middle of the primary screen; without a screen, does nothing.
    void centre();

    /// Before each show: centres a window that no screen shows as a whole, since a window manager
    /// would show it again where it was. One that is visible stays, while the screens are those of
    /// the last show: the user has moved it there.
    void keepOnScreen();

private:
    QWidget& window;
    QVector<QRect> knownScreens; ///< geometries, at the last show
};
