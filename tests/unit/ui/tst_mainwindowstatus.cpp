#include "engine/statuslistener.h"
#include "support/files.h"
#include "support/windowfixture.h"

#include <QAction>

#include <csignal>

/// What a status code does, and where it comes from.
class TestMainWindowStatus : public WindowFixture
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void everyStatusIsWrittenAndShowsTheWindow_data();
    void everyStatusIsWrittenAndShowsTheWindow();
    void stepsOfAStatusComeInTheirOrder();
    void equalStatusReachesTheViewToo();
    void bothSourcesArePresented();
    void statusEndsThePendingCommand();
    void firmwareActionFollowsStatusAndVersion_data();
    void firmwareActionFollowsStatusAndVersion();
    void firmwareActionIsDisabledAgain_data();
    void firmwareActionIsDisabledAgain();
    void wakingUpPresentsStarted();
    void sleepEndsTheEngineAndWakingUpStartsIt();

private:
    qint64 enginePid() const { return contentOf(file("engine.pid"), {}).trimmed().toLongLong(); }
    static QString engine() { return QCoreApplication::applicationDirPath() + "/vireon-main"; }
};

void TestMainWindowStatus::init()
{
    WindowFixture::init();
    build();
    log->clear();
}

void TestMainWindowStatus::cleanup()
{
    WindowFixture::cleanup();
    QFile::remove(engine());
}

// --- Status codes -----------------------------------------------------------------------------

void TestMainWindowStatus::everyStatusIsWrittenAndShowsTheWindow_data()
{
    QTest::addColumn<int>("status");
    for (const int status :
         {int(StatusUnknown), int(StatusNotCalibrated2), int(StatusEngineGaveUp),
          int(StatusEngineRestarting), int(StatusNotCalibrated), int(StatusLastActionFailed),
          int(StatusCalibrationFailed), int(StatusCalibrationAborted), int(StatusLightDisturbance),
          int(StatusNotReady), int(StatusReady), int(StatusStarted), int(StatusCalibrating), 77})
        QTest::addRow("%d", status) << status;
}

void TestMainWindowStatus::everyStatusIsWrittenAndShowsTheWindow()
{
    QFETCH(int, status);
    view->hideWindow();
    QVERIFY(!topLevel()->isVisible());
    view->onStatusChanged(status);
    QCOMPARE(root("status").toInt(), status);
    QVERIFY(topLevel()->isVisible());
    QCOMPARE(log->count("firmware version: 999"), 1);
    QCOMPARE(log->count(QString("status %1").arg(status)), 1);
}

void TestMainWindowStatus::stepsOfAStatusComeInTheirOrder()
{
    StatusListener::instance()->firmware = 1;
    view->onStatusChanged(StatusNotCalibrated);
    const QStringList wanted {
        "firmware version: 1",
        "QAction.Update Firmware.setEnabled(true)",
        "status -6",
        "set status = -6",
        "MyWidget.setVisible(true)",
        "MyWidget.raise()",
    };
    QCOMPARE(told(wanted), wanted);
}

void TestMainWindowStatus::equalStatusReachesTheViewToo()
{
    QVERIFY(makeReady());
    view->startAutoCalibration();
    QCOMPARE(root("isLoading").toBool(), true);
    view->onStatusChanged(StatusReady);
    QCOMPARE(root("isLoading").toBool(), false);
    QCOMPARE(root("statusText").toString(), QString("Started and ready"));
}

void TestMainWindowStatus::bothSourcesArePresented()
{
    emit StatusListener::instance()->statusChanged(StatusCalibrationFailed);
    QCOMPARE(root("status").toInt(), int(StatusCalibrationFailed));
    emit SdkHelper::instance()->statusChanged(StatusEngineGaveUp);
    QCOMPARE(root("status").toInt(), int(StatusEngineGaveUp));
    QCOMPARE(log->count("status "), 2); // each once
}

void TestMainWindowStatus::statusEndsThePendingCommand()
{
    // There is no tool here: the command stays pending until the next report. LoadCcf marks
    // nothing in the view.
    QVERIFY(makeReady());
    view->onLoadCcf();
    QTRY_COMPARE_WITH_TIMEOUT(log->count("returned from"), 1, patienceMs);
    view->onLoadCcf();
    QTRY_COMPARE_WITH_TIMEOUT(log->count("Action:  19  last:  19 "), 1, patienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(log->count("returned from"), 2, patienceMs);
    view->onStatusChanged(StatusReady);
    view->onLoadCcf();
    QTRY_COMPARE_WITH_TIMEOUT(log->count("Action:  19  last:  -1 "), 2, patienceMs);
}

// --- Firmware ---------------------------------------------------------------------------------

void TestMainWindowStatus::firmwareActionFollowsStatusAndVersion_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<int>("firmware");
    QTest::addColumn<bool>("enabled");
    QTest::newRow("nothing read yet") << int(StatusReady) << 999 << false;
    QTest::newRow("new") << int(StatusReady) << 2 << false;
    QTest::newRow("old") << int(StatusReady) << 1 << true;
    QTest::newRow("very old") << int(StatusNotCalibrated) << 0 << true;
    QTest::newRow("old, not ready") << int(StatusNotReady) << 1 << false;
    QTest::newRow("old, restarting") << int(StatusEngineRestarting) << 1 << false;
    QTest::newRow("old, given up") << int(StatusEngineGaveUp) << 1 << false;
}

void TestMainWindowStatus::firmwareActionFollowsStatusAndVersion()
{
    QFETCH(int, status);
    QFETCH(int, firmware);
    QFETCH(bool, enabled);
    StatusListener::instance()->firmware = firmware;
    view->onStatusChanged(status);
    QCOMPARE(action("Update Firmware")->isEnabled(), enabled);
}

void TestMainWindowStatus::firmwareActionIsDisabledAgain_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<int>("firmware");
    QTest::newRow("updated") << int(StatusReady) << 2;
    QTest::newRow("not ready") << int(StatusNotReady) << 1;
    QTest::newRow("restarting") << int(StatusEngineRestarting) << 1;
    QTest::newRow("given up") << int(StatusEngineGaveUp) << 1;
}

void TestMainWindowStatus::firmwareActionIsDisabledAgain()
{
    QFETCH(int, status);
    QFETCH(int, firmware);
    StatusListener* listener = StatusListener::instance();
    for (int turn = 0; turn < 2; ++turn) {
        listener->firmware = 1;
        view->onStatusChanged(StatusReady);
        QVERIFY(action("Update Firmware")->isEnabled());
        listener->firmware = firmware;
        view->onStatusChanged(status);
        QVERIFY(!action("Update Firmware")->isEnabled());
    }
}

// --- Sleep ------------------------------------------------------------------------------------

void TestMainWindowStatus::wakingUpPresentsStarted()
{
    view->onStatusChanged(StatusNotCalibrated);
    view->onGoingToSleep();
    view->onWakingUp();
    QCOMPARE(root("status").toInt(), int(StatusStarted));
    QCOMPARE(root("statusText").toString(), QString("Started and ready"));
    // The status first: what the engine reports by then is new.
    const QStringList wanted {"status 1", "starting ./vireon-main"};
    QCOMPARE(told(wanted), wanted);
}

void TestMainWindowStatus::sleepEndsTheEngineAndWakingUpStartsIt()
{
    QVERIFY(writeScript(engine(),
                        "#!/bin/sh\necho $$ > '" + QFile::encodeName(file("engine.pid"))
                            + "'\nexec sleep 600\n"));
    view->onWakingUp();
    QTRY_VERIFY_WITH_TIMEOUT(enginePid() > 0, patienceMs);
    const auto first = static_cast<pid_t>(enginePid());
    QCOMPARE(kill(first, 0), 0);
    view->onGoingToSleep();
    QTRY_VERIFY_WITH_TIMEOUT(kill(first, 0) != 0, patienceMs);
    QCOMPARE(log->count("starting ./vireon-main"), 1);
    QCOMPARE(log->count("Vireon exited"), 0); // no restart
    view->onWakingUp();
    QTRY_VERIFY_WITH_TIMEOUT(enginePid() != first, patienceMs);
}

int main(int argc, char* argv[])
{
    runWindowTest<TestMainWindowStatus>(argc, argv);
}

#include "tst_mainwindowstatus.moc"
