#include "support/files.h"
#include "support/windowfixture.h"

#include <QAction>

/// The slots that send a command to the engine.
class TestMainWindowCommands : public WindowFixture
{
    Q_OBJECT

private slots:
    void init();

    void commandSlotsSendTheirAction_data();
    void commandSlotsSendTheirAction();
    void calibrationsDeleteTheCacheAndMarkTheView_data();
    void calibrationsDeleteTheCacheAndMarkTheView();
    void otherCommandsLeaveCacheAndViewAlone_data();
    void otherCommandsLeaveCacheAndViewAlone();
    void resetIsRefusedWithoutAnEngine_data();
    void resetIsRefusedWithoutAnEngine();
    void resetShowsNotCalibratedAtOnce();
    void pauseAndResumeTakeTurns();
    void pointerModeSetsTheCheckMarks();
    void pointerModeSlotsSetTheCheckMarks();
};

void TestMainWindowCommands::init()
{
    WindowFixture::init();
    build();
    log->clear();
}

void TestMainWindowCommands::commandSlotsSendTheirAction_data()
{
    QTest::addColumn<int>("code");
    QTest::newRow("singlePointerMode") << int(SdkHelper::SinglePointer);
    QTest::newRow("multiPointerMode") << int(SdkHelper::MultiPointer);
    QTest::newRow("startAutoCalibration") << int(SdkHelper::AutoCalibration);
    QTest::newRow("startManualCalibration") << int(SdkHelper::ManualCalibration);
    QTest::newRow("startTouchCalibration") << int(SdkHelper::TouchCalibration);
    QTest::newRow("startParallaxCorrection") << int(SdkHelper::TouchCalibration);
    QTest::newRow("calibrateRayline") << int(SdkHelper::CalibrateRayline);
    QTest::newRow("openSensorViewer") << int(SdkHelper::SensorViewer);
    QTest::newRow("offsetCorrection") << int(SdkHelper::OffsetCorrection);
    QTest::newRow("pauseResumeCalibration") << int(SdkHelper::PauseResumeCalibration);
    QTest::newRow("resetCalibration") << int(SdkHelper::ResetCalibration);
    QTest::newRow("onLoadCcf") << int(SdkHelper::LoadCcf);
}

void TestMainWindowCommands::commandSlotsSendTheirAction()
{
    QFETCH(int, code);
    QVERIFY(makeReady());
    QVERIFY(QMetaObject::invokeMethod(view, QTest::currentDataTag()));
    QCOMPARE(commands(), QVector<int> {code});
}

// --- Calibration ------------------------------------------------------------------------------

void TestMainWindowCommands::calibrationsDeleteTheCacheAndMarkTheView_data()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::addColumn<int>("code");
    QTest::addColumn<bool>("deletes");
    QTest::addColumn<bool>("present");
    for (const bool present : {true, false}) {
        const char* const with = present ? "" : ", no cache";
        QTest::addRow("manual%s", with) << QByteArray("startManualCalibration")
                                        << int(SdkHelper::ManualCalibration) << true << present;
        QTest::addRow("touch%s", with) << QByteArray("startTouchCalibration")
                                       << int(SdkHelper::TouchCalibration) << true << present;
        QTest::addRow("auto%s", with) << QByteArray("startAutoCalibration")
                                      << int(SdkHelper::AutoCalibration) << false << present;
    }
}

void TestMainWindowCommands::calibrationsDeleteTheCacheAndMarkTheView()
{
    QFETCH(QByteArray, slot);
    QFETCH(int, code);
    QFETCH(bool, deletes);
    QFETCH(bool, present);
    QVERIFY(makeReady());
    QVERIFY(!present || writeFile(file("mcCache"), "points"));
    QCOMPARE(root("isLoading").toBool(), false);
    QCOMPARE(root("aspectRatioWarningShown").toBool(), false);
    QVERIFY(QMetaObject::invokeMethod(view, slot.constData()));
    QCOMPARE(QFile::exists(file("mcCache")), present && !deletes);
    QCOMPARE(root("isLoading").toBool(), true);
    QCOMPARE(root("aspectRatioWarningShown").toBool(), true);
    QCOMPARE(commands(), QVector<int> {code});
    QTRY_COMPARE_WITH_TIMEOUT(log->count("returned from"), 1, patienceMs);
}

void TestMainWindowCommands::otherCommandsLeaveCacheAndViewAlone_data()
{
    QTest::addColumn<int>("unused"); // there are no rows without a column
    for (const char* slot : {"startParallaxCorrection", "calibrateRayline", "openSensorViewer",
                             "offsetCorrection", "pauseResumeCalibration", "resetCalibration"})
        QTest::newRow(slot) << 0;
}

void TestMainWindowCommands::otherCommandsLeaveCacheAndViewAlone()
{
    QVERIFY(makeReady());
    QVERIFY(writeFile(file("mcCache"), "points"));
    QVERIFY(QMetaObject::invokeMethod(view, QTest::currentDataTag()));
    QVERIFY(QFile::exists(file("mcCache")));
    QCOMPARE(root("isLoading").toBool(), false);
    QCOMPARE(root("aspectRatioWarningShown").toBool(), false);
}

void TestMainWindowCommands::resetIsRefusedWithoutAnEngine_data()
{
    QTest::addColumn<int>("status");
    QTest::newRow("not ready") << int(StatusNotReady);
    QTest::newRow("given up") << int(StatusEngineGaveUp);
}

void TestMainWindowCommands::resetIsRefusedWithoutAnEngine()
{
    QFETCH(int, status);
    QVERIFY(makeReady());
    view->onStatusChanged(status);
    log->clear();
    view->resetCalibration();
    QCOMPARE(root("status").toInt(), status);
    QCOMPARE(commands(), QVector<int> {});
    QCOMPARE(toldOf("showMessage"), QStringList());
    QCOMPARE(log->count("status "), 0);
}

void TestMainWindowCommands::resetShowsNotCalibratedAtOnce()
{
    QVERIFY(makeReady());
    view->resetCalibration();
    QCOMPARE(root("status").toInt(), int(StatusNotCalibrated));
    QCOMPARE(root("statusText").toString(), QString("Started, Vireon not calibrated."));
    QCOMPARE(commands(), QVector<int> {SdkHelper::ResetCalibration});
}

void TestMainWindowCommands::pauseAndResumeTakeTurns()
{
    QVERIFY(makeReady());
    QCOMPARE(root("pauseCalib").toBool(), false);
    view->pauseResumeCalibration();
    QCOMPARE(root("pauseCalib").toBool(), true);
    view->pauseResumeCalibration();
    QCOMPARE(root("pauseCalib").toBool(), false);
    QCOMPARE(log->count("pause resume"), 2);
    QCOMPARE(commands(),
             QVector<int>({SdkHelper::PauseResumeCalibration, SdkHelper::PauseResumeCalibration}));
}

// --- Pointer mode -----------------------------------------------------------------------------

void TestMainWindowCommands::pointerModeSetsTheCheckMarks()
{
    const QAction* single = action("&Single Input");
    const QAction* multi = action("&Multi Input");
    QVERIFY(single && single->isCheckable() && single->isChecked());
    QVERIFY(multi && multi->isCheckable() && !multi->isChecked());
    view->setPointerMode(false);
    QVERIFY(!single->isChecked());
    QVERIFY(multi->isChecked());
    view->setPointerMode(true);
    QVERIFY(single->isChecked());
    QVERIFY(!multi->isChecked());
    QCOMPARE(commands(), QVector<int> {});
    QCOMPARE(toldOf("showMessage"), QStringList());
}

void TestMainWindowCommands::pointerModeSlotsSetTheCheckMarks()
{
    QVERIFY(makeReady());
    const QAction* single = action("&Single Input");
    const QAction* multi = action("&Multi Input");
    view->multiPointerMode();
    QVERIFY(!single->isChecked());
    QVERIFY(multi->isChecked());
    view->singlePointerMode();
    QVERIFY(single->isChecked());
    QVERIFY(!multi->isChecked());
}

int main(int argc, char* argv[])
{
    runWindowTest<TestMainWindowCommands>(argc, argv);
}

#include "tst_mainwindowcommands.moc"
