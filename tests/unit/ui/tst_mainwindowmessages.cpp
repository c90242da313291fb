#include "engine/statuslistener.h"
#include "support/windowfixture.h"

/// The messages that the user sees, one at a time, and what makes them. The time between two is
/// run out by hand.
class TestMainWindowMessages : public WindowFixture
{
    Q_OBJECT

private slots:
    void init();

    void oneIsShownTheOthersWait();
    void eachIsShownForFiveSeconds();
    void emptyTextShowsTheNext();
    void hiddenMessageLeavesTheQueue();
    void commandsSayWhatTheyDid_data();
    void commandsSayWhatTheyDid();
    void notCalibratedIsSaidEachTime_data();
    void notCalibratedIsSaidEachTime();
    void otherStatusesSayNothing_data();
    void otherStatusesSayNothing();
    void oldFirmwareIsSaidOnce();
    void oldFirmwareIsSaidBeforeNotCalibrated();
    void newFirmwareIsNotSaid();
    void firstCloseTellsWhereTheProgramIs_data();
    void firstCloseTellsWhereTheProgramIs();

private:
    /// The texts that the tray icon has shown so far.
    QStringList shown() const;
};

constexpr char oldFirmware[] = "Camera unit firmware is old version. Please click 'File' in the "
                               "task bar to update it.";
constexpr char notCalibrated[] = "Vireon not calibrated. Please Calibrate!";

void TestMainWindowMessages::init()
{
    WindowFixture::init();
    build();
    log->clear();
}

QStringList TestMainWindowMessages::shown() const
{
    const QString start = "QSystemTrayIcon.showMessage(Vireon, ";
    const QString end = ", 1, 5000)"; // with the icon of an information, for 5 s
    QStringList texts;
    for (const QString& line : toldOf("showMessage"))
        texts.append(line.startsWith(start) && line.endsWith(end)
                         ? line.mid(start.size()).chopped(end.size())
                         : line);
    return texts;
}

// --- Queue ------------------------------------------------------------------------------------

void TestMainWindowMessages::oneIsShownTheOthersWait()
{
    for (const char* text : {"A", "B", "C"})
        view->showMessage(text);
    QCOMPARE(shown(), QStringList({"A"}));
    calls->runTimers();
    QCOMPARE(shown(), QStringList({"A", "B"}));
    calls->runTimers();
    QCOMPARE(shown(), QStringList({"A", "B", "C"}));
    calls->runTimers();
    // The last one is over, too.
    view->showMessage("D");
    QCOMPARE(shown(), QStringList({"A", "B", "C", "D"}));
}

void TestMainWindowMessages::eachIsShownForFiveSeconds()
{
    view->showMessage("A");
    view->showMessage("B");
    QCOMPARE(toldOf("singleShot"), QStringList({"MainWindow.singleShot(5000)"}));
    calls->runTimers();
    QCOMPARE(log->count("MainWindow.singleShot(5000)"), 2);
}

void TestMainWindowMessages::emptyTextShowsTheNext()
{
    for (const char* text : {"A", "B", "C"})
        view->showMessage(text);
    view->showMessage("");
    view->showMessage();
    QCOMPARE(shown(), QStringList({"A", "B", "C"}));
    // One more than there are leaves nothing behind.
    view->showMessage("");
    view->showMessage("D");
    QCOMPARE(shown(), QStringList({"A", "B", "C", "D"}));
}

void TestMainWindowMessages::hiddenMessageLeavesTheQueue()
{
    view->showMessage("A");
    view->showMessage("B");
    log->clear();
    view->hideMessage();
    const QStringList again {"QSystemTrayIcon.setVisible(false)",
                             "QSystemTrayIcon.setVisible(true)"};
    QCOMPARE(told(again), again);
    view->showMessage("C"); // A's time is not over
    QCOMPARE(shown(), QStringList());
    calls->runTimers();
    calls->runTimers();
    QCOMPARE(shown(), QStringList({"B", "C"}));
}

// --- Commands ---------------------------------------------------------------------------------

void TestMainWindowMessages::commandsSayWhatTheyDid_data()
{
    QTest::addColumn<QStringList>("texts"); // of one call after the other
    QTest::newRow("singlePointerMode") << QStringList {"Single Input(Mouse) mode is active"};
    QTest::newRow("multiPointerMode") << QStringList {"Multi Input (Touch) mode is active"};
    QTest::newRow("pauseResumeCalibration")
        << QStringList {"Calibration is paused! Mouse/Touch will not work", "Calibration resumed"};
    QTest::newRow("resetCalibration") << QStringList {notCalibrated, notCalibrated};
    for (const char* slot : {"startAutoCalibration", "startManualCalibration",
                             "startTouchCalibration", "startParallaxCorrection", "calibrateRayline",
                             "openSensorViewer", "offsetCorrection", "onLoadCcf"})
        QTest::newRow(slot) << QStringList {};
}

void TestMainWindowMessages::commandsSayWhatTheyDid()
{
    QFETCH(QStringList, texts);
    QVERIFY(makeReady());
    for (int call = 0; call < qMax(1, texts.size()); ++call) {
        QVERIFY(QMetaObject::invokeMethod(view, QTest::currentDataTag()));
        calls->runTimers();
    }
    QCOMPARE(shown(), texts);
}

// --- Status -----------------------------------------------------------------------------------

void TestMainWindowMessages::notCalibratedIsSaidEachTime_data()
{
    QTest::addColumn<int>("status");
    QTest::newRow("-6") << int(StatusNotCalibrated);
    QTest::newRow("-14") << int(StatusNotCalibrated2);
}

void TestMainWindowMessages::notCalibratedIsSaidEachTime()
{
    QFETCH(int, status);
    view->onStatusChanged(status);
    view->onStatusChanged(status);
    QCOMPARE(shown(), QStringList({notCalibrated}));
    calls->runTimers();
    QCOMPARE(shown(), QStringList({notCalibrated, notCalibrated}));
}

void TestMainWindowMessages::otherStatusesSayNothing_data()
{
    QTest::addColumn<int>("status");
    for (const int status :
         {int(StatusUnknown), int(StatusEngineGaveUp), int(StatusEngineRestarting),
          int(StatusLastActionFailed), int(StatusCalibrationFailed), int(StatusCalibrationAborted),
          int(StatusLightDisturbance), int(StatusNotReady), int(StatusReady), int(StatusStarted),
          int(StatusCalibrating)})
        QTest::addRow("%d", status) << status;
}

void TestMainWindowMessages::otherStatusesSayNothing()
{
    QFETCH(int, status);
    view->onStatusChanged(status);
    QCOMPARE(shown(), QStringList());
}

void TestMainWindowMessages::oldFirmwareIsSaidOnce()
{
    StatusListener::instance()->firmware = 1;
    for (const int status : {StatusNotReady, StatusReady, StatusReady, StatusCalibrating}) {
        view->onStatusChanged(status);
        calls->runTimers();
        QCOMPARE(shown(), status == StatusNotReady ? QStringList() : QStringList {oldFirmware});
    }
}

void TestMainWindowMessages::oldFirmwareIsSaidBeforeNotCalibrated()
{
    StatusListener::instance()->firmware = 1;
    view->onStatusChanged(StatusNotCalibrated);
    calls->runTimers();
    QCOMPARE(shown(), QStringList({oldFirmware, notCalibrated}));
}

void TestMainWindowMessages::newFirmwareIsNotSaid()
{
    for (const int firmware : {999, 2}) {
        StatusListener::instance()->firmware = firmware;
        view->onStatusChanged(StatusReady);
    }
    QCOMPARE(shown(), QStringList());
    // It is not what was said that counts, but that it was.
    StatusListener::instance()->firmware = 1;
    view->onStatusChanged(StatusReady);
    QCOMPARE(shown(), QStringList {oldFirmware});
}

// --- Hint -------------------------------------------------------------------------------------

void TestMainWindowMessages::firstCloseTellsWhereTheProgramIs_data()
{
    QTest::addColumn<bool>("hasTray");
    QTest::addColumn<QString>("line");
    QTest::newRow("tray") << true
                          << "QSystemTrayIcon.showMessage(Vireon, Running in background, you can "
                             "open and quit the window from the icon-tray., 1, 5000)";
    QTest::newRow("no tray") << false
                             << "QDBusConnection.Notify(Vireon, Running in background. Start "
                                "Vireon again to open the window.)";
}

void TestMainWindowMessages::firstCloseTellsWhereTheProgramIs()
{
    QFETCH(bool, hasTray);
    QFETCH(QString, line);
    calls->hasTray = hasTray;
    topLevel()->close();
    QVERIFY(!topLevel()->isVisible());
    QCOMPARE(toldOf("Running in background"), QStringList {line});
    calls->runTimers();
    view->showWindow();
    topLevel()->close();
    QVERIFY(!topLevel()->isVisible());
    QCOMPARE(toldOf("Running in background"), QStringList {line});
}

int main(int argc, char* argv[])
{
    runWindowTest<TestMainWindowMessages>(argc, argv);
}

#include "tst_mainwindowmessages.moc"
