#include "support/files.h"
#include "support/windowfixture.h"

#include <csignal>
#include <thread>

/// What the window does on the host: the settings that are saved, the processor that is kept
/// awake.
class TestMainWindowHost : public WindowFixture
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void autoStartIsSavedWithEveryToggle();
    void missingHelperLeavesTheSwitchOn();
    void keepAwakeHelperRunsWhileSwitchedOn();
    void wastingEndsWithTheSetting();
    void otherCpuStateIsKept();
    void aspectRatioWarningIsRemembered();
    void adviceIsDisabledForGood();

private:
    qint64 helperPid() const { return contentOf(file("helper.pid"), {}).trimmed().toLongLong(); }

    QByteArray usualPath;
};

// Lines of the user settings file.
constexpr int autoStartLine = 2;
constexpr int cpuStateLine = 4;
constexpr int aspectRatioLine = 13;
constexpr int adviceLine = 14;

void TestMainWindowHost::init()
{
    WindowFixture::init();
    usualPath = qgetenv("PATH");
    build();
    log->clear();
}

void TestMainWindowHost::cleanup()
{
    view->enableProcessorIdleMode();
    qputenv("PATH", usualPath);
    WindowFixture::cleanup();
}

// --- Autostart --------------------------------------------------------------------------------

void TestMainWindowHost::autoStartIsSavedWithEveryToggle()
{
    QCOMPARE(root("isAutoStart").toBool(), true);
    view->toggleAutoStart();
    QCOMPARE(root("isAutoStart").toBool(), false);
    QCOMPARE(GS::instance()->autostart, false);
    QCOMPARE(savedSetting(autoStartLine), QByteArray("0"));
    view->toggleAutoStart();
    QCOMPARE(root("isAutoStart").toBool(), true);
    QCOMPARE(GS::instance()->autostart, true);
    QCOMPARE(savedSetting(autoStartLine), QByteArray("1"));
    QCOMPARE(log->count("auto Start clicked"), 2);
}

// --- Processor --------------------------------------------------------------------------------

void TestMainWindowHost::missingHelperLeavesTheSwitchOn()
{
    QCOMPARE(root("isKeepACpuRunning").toBool(), false);
    view->keepACpuRunning();
    QCOMPARE(root("isKeepACpuRunning").toBool(), true);
    QStringList said;
    for (const LogRecorder::Line& line : log->linesWith("keepACpuRunning"))
        said.append(line.text);
    QCOMPARE(said,
             QStringList({"keepACpuRunning", "keepACpuRunning", "keepACpuRunning create ",
                          "keepACpuRunning", "keepACpuRunning done"}));
    log->clear();
    view->keepACpuRunning();
    QCOMPARE(log->count("keepACpuRunning create "), 0); // the object is used again
    view->enableProcessorIdleMode();
    QCOMPARE(root("isKeepACpuRunning").toBool(), false);
}

void TestMainWindowHost::keepAwakeHelperRunsWhileSwitchedOn()
{
    // Found through PATH, as a name without a directory is.
    QVERIFY(writeScript(file("VireonIdle.exe"),
                        "#!/bin/sh\necho $$ > \"" + QFile::encodeName(file("helper.pid"))
                            + "\"\nexec sleep 600\n"));
    qputenv("PATH", QFile::encodeName(directory()) + ':' + usualPath);

    GS::instance()->cpuState = 0;
    view->toggleKeepACpuAwake();
    QCOMPARE(GS::instance()->cpuState.load(), 2);
    QCOMPARE(root("isKeepACpuRunning").toBool(), true);
    QCOMPARE(savedSetting(cpuStateLine), QByteArray("2"));
    QTRY_VERIFY_WITH_TIMEOUT(helperPid() > 0, patienceMs);
    const auto pid = static_cast<pid_t>(helperPid());
    QCOMPARE(kill(pid, 0), 0);
    QCOMPARE(log->count(" Keep a CPU running"), 1);

    view->toggleKeepACpuAwake();
    QCOMPARE(GS::instance()->cpuState.load(), 0);
    QCOMPARE(root("isKeepACpuRunning").toBool(), false);
    QCOMPARE(savedSetting(cpuStateLine), QByteArray("0"));
    QCOMPARE(log->count(" Disabled Processor idle state"), 1);
    QTRY_VERIFY_WITH_TIMEOUT(kill(pid, 0) != 0, patienceMs);
}

void TestMainWindowHost::wastingEndsWithTheSetting()
{
    GS::instance()->cpuState = 2;
    std::thread worker([&] { QMetaObject::invokeMethod(view, "wasteCpu", Qt::DirectConnection); });
    const bool started =
        QTest::qWaitFor([&] { return log->count("start wasting cpu now") == 1; }, patienceMs);
    const int early = log->count("not wasting cpu now");
    GS::instance()->cpuState = 0;
    worker.join();
    QVERIFY(started);
    QCOMPARE(early, 0);
    QCOMPARE(log->count("not wasting cpu now"), 1);
}

void TestMainWindowHost::otherCpuStateIsKept()
{
    view->keepACpuRunning();
    GS::instance()->cpuState = 1;
    view->toggleKeepACpuAwake();
    QCOMPARE(GS::instance()->cpuState.load(), 1);
    QCOMPARE(root("isKeepACpuRunning").toBool(), false); // by the helper's end
    QCOMPARE(log->count(" Disabled Processor idle state"), 1);
    QCOMPARE(savedSetting(cpuStateLine), QByteArray("1"));
}

// --- Warnings ---------------------------------------------------------------------------------

void TestMainWindowHost::aspectRatioWarningIsRemembered()
{
    QVERIFY(!view->aspectRatioWarningShown());
    QVERIFY(view->setAspectRatioWarningShown(true));
    QVERIFY(view->aspectRatioWarningShown());
    QCOMPARE(savedSetting(aspectRatioLine), QByteArray("1"));
    QVERIFY(view->setAspectRatioWarningShown(false));
    QVERIFY(!view->aspectRatioWarningShown());
    QCOMPARE(savedSetting(aspectRatioLine), QByteArray("0"));
}

void TestMainWindowHost::adviceIsDisabledForGood()
{
    QVERIFY(GS::instance()->acPopUpEnabled);
    QVERIFY(view->setAcPopUpDisabled());
    QCOMPARE(savedSetting(adviceLine), QByteArray("0"));
    QVERIFY(!GS::instance()->acPopUpEnabled);
    QCOMPARE(log->count("setAcPopUpDisabled "), 1);
}

int main(int argc, char* argv[])
{
    runWindowTest<TestMainWindowHost>(argc, argv);
}

#include "tst_mainwindowhost.moc"
