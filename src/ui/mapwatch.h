#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QTimer>

class QWidget;

/**
 * Shows a window anew that a window manager has lost, and keeps what is told late of it from Qt.
 *
 * A window that is shown, hidden and shown again, while a busy window manager has not come to the
 * first showing yet, is on the screen already when it is shown again. The manager hears of the
 * hiding last, and lets it go. Half a second after it has let go of a window that is not hidden,
 * the window is hidden and shown.
 *
 * The server's word of the first showing may also come late, after the hiding. Qt would take it for
 * the second's and give the keyboard to a window that is not on the screen, an error.
 *
 * GUI thread only; without an X server it does nothing.
 */
class MapWatch : public QObject, private QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    /// @p itsWindow has been shown, or exists in the window system all the same; it outlives this.
    MapWatch(QWidget& itsWindow, QObject* parent);

private:
    bool nativeEventFilter(const QByteArray& type, void* message, long* result) override;
    void look();

    QWidget& window;
    QTimer delay; ///< lets the window manager come to an end
};
