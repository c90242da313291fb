#include "support/windowfixture.h"

/// The order in which the window is made, by what the program says and calls on the way.
class TestMainWindowSteps : public WindowFixture
{
    Q_OBJECT

private slots:
    void firstStepsComeInTheirOrder();
    void stepsComeInTheirOrder();
};

void TestMainWindowSteps::firstStepsComeInTheirOrder()
{
    build();
    const QStringList wanted {
        "splash image for brand:  \"qor\"",
        "showing splash ",
        "Splash.singleShot(10000)",
        "QQmlContext.sdk",
        "QQmlContext.mainwindow",
        "QQmlContext.operatingSystem",
        "qml loaded",
        "QSystemTrayIcon.setVisible(true)",
        "QSystemTrayIcon.connect(activated)",
        "QSystemTrayIcon.connect(messageClicked)",
        "load main.qml",
        "MainWindow.setSource(qrc:/qml/main.qml)",
        "Autostart is enabled!",
        "auto Start clicked",
        " single pointer mode ",
    };
    QCOMPARE(told(wanted), wanted);
    QCOMPARE(log->count("closing splash "), 0); // it stays beside the window
    QVERIFY(topLevel()->isVisible());
    QCOMPARE(root("status").toInt(), int(StatusStarted));
}

void TestMainWindowSteps::stepsComeInTheirOrder()
{
    calls->refreshRate = 30;
    build();
    const QSize size = topLevel()->size();
    const QPoint place = topLevel()->pos();
    const QStringList wanted {
        "MainWindow.setSource(qrc:/qml/main.qml)",
        "Autostart is enabled!",
        "auto Start clicked",
        "set isAutoStart = true",
        "set isGreaterEqualsWin8 = false",
        "set isTouch = false",
        "set versionText = 1.4.121",
        "set isAutoStart = true",
        "MainWindow.createWindowContainer()",
        QString("QWindowContainer.setMinimumSize(%1, %2)").arg(view->width()).arg(view->height()),
        "MyWidget.setWindowTitle(Vireon)",
        "MyWidget.adjustSize()",
        QString("MyWidget.move(%1, %2)").arg(place.x()).arg(place.y()),
        "MyWidget.setVisible(false)",
        "QAction.Update Firmware.setEnabled(false)",
        "QAction.&Single Input.setChecked(false)", // no mode is known yet
        "QAction.&Multi Input.setChecked(false)",
        "QMenuBar.addMenu(File)",
        "QMenuBar.addMenu(Calibration)",
        "QMenuBar.addMenu(Help)",
        "QBoxLayout.setMenuBar()",
        QString("MyWidget.setFixedSize(%1, %2)").arg(size.width()).arg(size.height()),
        "MyWidget.connect(closeWindow)",
        " single pointer mode ",
        "QAction.&Single Input.setChecked(true)",
        "QAction.&Multi Input.setChecked(false)",
        "ResolutionChangeNotifier.connect(resolutionChanged)",
        "StatusListener.connect(statusChanged)",
        "SdkHelper.connect(statusChanged)",
        "set isGreaterEqualsWin8 = false",
        "set status = 1",
        "set finishedLoading = true",
        "MyWidget.setVisible(true)",
        "show freq error",
    };
    QCOMPARE(told(wanted), wanted);
}

int main(int argc, char* argv[])
{
    runWindowTest<TestMainWindowSteps>(argc, argv);
}

#include "tst_mainwindowsteps.moc"
