#pragma once

class QTouchEvent;
class QWindow;

/**
 * Turns touch points into the mouse events of a graphics scene, for a view that is a window.
 *
 * A press is delivered as a move and a press, a lift as a move and a release; a point that rests
 * is passed over. All of them carry the left button.
 */
class TouchTranslator
{
public:
    /// Types of send(); any other number presses, too.
    enum Type : int { Press = 0, Move = 1, Release = 2 };

    /// Delivers to @p view, which outlives this.
    explicit TouchTranslator(QWindow& view);

    /// Translates the points of @p ev in their order.
    void translate(const QTouchEvent& ev);

    /// Delivers one event at (@p x, @p y) px less the view's position, and returns when it was
    /// handled.
    void send(double x, double y, int type);

private:
    QWindow& view;
};
