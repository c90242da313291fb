#pragma once

#include "app/resources.h"
#include "engine/enginestatus.h"
#include "engine/sdkhelper.h"
#include "settings/globalsettings.h"
#include "support/logrecorder.h"
#include "support/patience.h"
#include "support/qtcalls.h"
#include "ui/looks.h"
#include "ui/mainwindow.h"

#include <QApplication>
#include <QTest>
#include <QVariant>

#include <cstdio>
#include <memory>
#include <unistd.h>

class QAction;

/**
 * A test of the main window, offscreen and without an engine. Each function has a window, a log
 * and settings of its own, and leaves nothing behind: it is the base class of such a test, which
 * is run with runWindowTest().
 *
 * The files that the program writes are in a directory that is emptied for each function.
 */
class WindowFixture : public QObject
{
    Q_OBJECT

protected slots:
    void initTestCase();
    void init(); ///< makes no window: build() does
    void cleanup();
    void cleanupTestCase();

protected:
    /// Makes the window under the settings as they are.
    void build();

    QWidget* topLevel() const;
    QAction* action(const QString& text) const;
    QVariant root(const char* property) const;
    QSystemTrayIcon* trayIcon() const;

    /// The directory of the program's files, and where it has the file @p name.
    static QString directory();
    static QString file(const QString& name);

    /// One line of the user settings file, counted from 0; empty while there is none.
    static QByteArray savedSetting(int line);

    /// Has the engine's readiness reported, so that commands do not wait. Whether it was.
    bool makeReady();

    /// The codes of the commands since the log was last cleared, from low to high, as soon as each
    /// has begun; just -1 when one does not.
    QVector<int> commands() const;

    /// The log's lines that are in @p wanted.
    QStringList told(const QStringList& wanted) const;

    /// The log's lines that contain @p part.
    QStringList toldOf(const QString& part) const;

    std::unique_ptr<LogRecorder> log;
    std::unique_ptr<QtCalls> calls;
    MainWindow* view = nullptr;

private:
    bool readersHaveBegun() const;
    int commandsGiven() const;
};

/// Runs a test of the window's as the whole program, and ends as the controller does: without
/// static destructors.
template <typename Test> [[noreturn]] void runWindowTest(int argc, char** argv)
{
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    int failures = 0;
    {
        Test test;
        failures = QTest::qExec(&test, argc, argv);
    }
    std::fflush(nullptr);
    _exit(failures);
}
