#pragma once

#include <QWidget>

class QCloseEvent;

/**
 * The native top-level window that holds the main view and the menu bar.
 *
 * It has no maximise button, and it never closes by itself: it announces the user's attempt and
 * leaves it to the receiver what happens.
 */
class MyWidget : public QWidget
{
    Q_OBJECT

public:
    MyWidget();

signals:
    /// The user asked to close the window. The event is ignored afterwards, whatever the
    /// receiver does with it.
    void closeWindow(QCloseEvent* ev);

protected:
    void closeEvent(QCloseEvent* ev) override;
};
