#include "support/files.h"
#include "support/windowfixture.h"

#include <QMenu>

#include <csignal>

/// The end: what happens in which order, and what does not happen any more. Nothing here takes
/// the 800 ms of a quit, which are only told.
class TestMainWindowQuit : public WindowFixture
{
    Q_OBJECT

private slots:
    void init();

    void stepsOfAQuitComeInTheirOrder();
    void quitLeavesNothingOnTheScreen();
    void quitEndsTheHelper();
    void quittingShowsNoHint();
    void quitWithoutTrayIcon();
    void trayItemQuits();
    void appQuittingHides();

private:
    qint64 helperPid() const { return contentOf(file("helper.pid"), {}).trimmed().toLongLong(); }
};

void TestMainWindowQuit::init()
{
    WindowFixture::init();
    build();
    log->clear();
}

void TestMainWindowQuit::stepsOfAQuitComeInTheirOrder()
{
    QVERIFY(makeReady());
    view->exitApp();
    const QStringList wanted {
        "Do work", // the command, on a thread of its own
        "QSystemTrayIcon.setVisible(false)",
        "set isKeepACpuRunning = false",
        "Quit Vireon clicked",
        "MyWidget.setVisible(false)",
        "QThread.msleep(800)", // the engine's time to act on it
        "MainWindow.close()",
        "QCoreApplication.quit()",
    };
    QCOMPARE(told(wanted), wanted);
    QCOMPARE(toldOf("msleep").size(), 1);
    QCOMPARE(commands(), QVector<int> {SdkHelper::QuitEngine});
}

void TestMainWindowQuit::quitLeavesNothingOnTheScreen()
{
    QVERIFY(makeReady());
    view->exitApp();
    QVERIFY(!topLevel()->isVisible());
    QVERIFY(!trayIcon()->isVisible());
    QCOMPARE(toldOf("showMessage"), QStringList());
}

void TestMainWindowQuit::quitEndsTheHelper()
{
    const QByteArray usualPath = qgetenv("PATH");
    QVERIFY(writeScript(file("VireonIdle.exe"),
                        "#!/bin/sh\necho $$ > \"" + QFile::encodeName(file("helper.pid"))
                            + "\"\nexec sleep 600\n"));
    qputenv("PATH", QFile::encodeName(directory()) + ':' + usualPath);
    QVERIFY(makeReady());
    view->keepACpuRunning();
    qputenv("PATH", usualPath);
    QTRY_VERIFY_WITH_TIMEOUT(helperPid() > 0, patienceMs);
    QCOMPARE(kill(static_cast<pid_t>(helperPid()), 0), 0);
    view->exitApp();
    QCOMPARE(root("isKeepACpuRunning").toBool(), false);
    QVERIFY(kill(static_cast<pid_t>(helperPid()), 0) != 0);
}

void TestMainWindowQuit::quittingShowsNoHint()
{
    QVERIFY(makeReady());
    view->exitApp();
    log->clear();
    topLevel()->show();
    view->onClosing();
    QVERIFY(topLevel()->isVisible()); // left alone: the program ends
    topLevel()->close();
    QVERIFY(topLevel()->isVisible());
    QCOMPARE(toldOf("showMessage"), QStringList());
    QCOMPARE(toldOf("Notify"), QStringList());
}

void TestMainWindowQuit::quitWithoutTrayIcon()
{
    delete topLevel();
    qputenv("XDG_CURRENT_DESKTOP", "Unity");
    build();
    QVERIFY(makeReady());
    QVERIFY(!trayIcon());
    view->exitApp();
    QVERIFY(!topLevel()->isVisible());
    QCOMPARE(toldOf("quit()"), QStringList {"QCoreApplication.quit()"});
}

void TestMainWindowQuit::trayItemQuits()
{
    QVERIFY(makeReady());
    trayIcon()->contextMenu()->actions().first()->trigger();
    QCOMPARE(log->count("Quit Vireon clicked"), 1);
    QCOMPARE(commands(), QVector<int> {SdkHelper::QuitEngine});
}

void TestMainWindowQuit::appQuittingHides()
{
    view->slotAppQuitting();
    QVERIFY(!topLevel()->isVisible());
    QCOMPARE(commands(), QVector<int> {});
}

int main(int argc, char* argv[])
{
    runWindowTest<TestMainWindowQuit>(argc, argv);
}

#include "tst_mainwindowquit.moc"
