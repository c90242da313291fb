#pragma once

#include "ui/loghistory.h"
#include "ui/logwindow.h"

#include <QObject>
#include <QString>
#include <QTimer>

/**
 * The log in a window: keeps the last lines, and shows those in the log window that fit into it.
 *
 * The window follows the log until it is scrolled, and again from its end on. New lines are shown
 * together, ten times a second at most and only while the window is: however many come, the GUI
 * thread is not held up. The keys are those of docs/integration.md.
 */
class LogView : public QObject
{
    Q_OBJECT

public:
    /// The window is hidden. Ctrl+S saves into a file of @p directory.
    LogView(const QString& directory, QObject* parent);

    /// Adds a line; any thread.
    void append(const QString& line) { history.append(line); }

    /// Shows the window, at the end of the log.
    void open();

private slots:
    void scroll(int count);
    void jump(bool toTheEnd);
    void search(const QString& text);
    void copyAll();
    void save();

private:
    int rows() const;
    void refresh();
    void showPage(qint64 first, const QString& marked = {});
    void tell(const QString& note);

    LogHistory history;
    LogWindow window {nullptr};
    QTimer timer;
    const QString directory;
    qint64 shownFirst = 0; ///< the number of the topmost line
    qint64 shownEnd = -1; ///< what the history's end was then
    qint64 found = -1; ///< the line that was found last
    bool following = true;
};
