#pragma once

#include <QString>

class QQuickItem;
class QQuickView;
class QVariant;

/**
 * The root object of the main view, with its properties and functions by their types.
 *
 * What the controller shows goes through here; the view declares the same names in qml/main.qml,
 * and only this class's source file holds them as texts. While the view has no root, because it
 * was not loaded or cannot be, everything here does nothing. GUI thread only.
 */
class ViewRoot
{
public:
    /// The root of @p view, whenever that has one. The view outlives this.
    explicit ViewRoot(const QQuickView& view);

    bool exists() const;

    void setGreaterEqualsWin8(bool yes);
    void setTouch(bool yes); ///< the negation of GS::isTouch; the view is built against that
    void setVersionText(const QString& text);
    void setAutoStart(bool on);
    void setFinishedLoading(bool yes);
    void setCalibrationPaused(bool yes);
    void setKeepingACpuRunning(bool on);
    void setLoading(bool yes);
    bool isLoading() const;

    /// For this run only; what persists is GS::aspectRatioWarningShown.
    void setAspectRatioWarningShown(bool yes);

    /// Presents a status code. The view reacts to each call, also to one with the same code. Screen
    /// readers are told of a new text.
    void setStatus(int code);

    /// The code that was presented last; StatusUnknown without a root.
    int status() const;

    // What the view does by itself when it is told to.
    void checkAspectRatio();
    void showFreqPopup();
    void disableAcPopUp();

private:
    void announceStatus();
    QString shownStatus() const; ///< empty while the view shows something else
    QQuickItem* statusItem() const;
    void write(const char* property, const QVariant& value);
    void call(const char* function);

    const QQuickView& view;
};
