#pragma once

#include <QObject>
#include <QTimer>

class QWidget;

/**
 * Shows a window anew that a window manager has lost.
 *
 * A window that is shown, hidden and shown again, while a busy window manager has not come to the
 * first showing yet, is on the screen when it is shown again, and goes with the hiding, of which
 * the manager hears last. Half a second after a window has gone from the screen that is neither
 * hidden nor minimised, it is hidden and shown. GUI thread only.
 */
class MapWatch : public QObject
{
    Q_OBJECT

public:
    /// @p itsWindow has been shown, or exists in the window system all the same; it outlives this.
    MapWatch(QWidget& itsWindow, QObject* parent);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void look();

    QWidget& window;
    QTimer delay; ///< lets the window manager come to an end
};
