#include "app/resources.h"
#include "base/workerthread.h"
#include "settings/globalsettings.h"
#include "support/logrecorder.h"
#include "ui/mainwindow.h"
#include "ui/mywidget.h"

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QQuickItem>
#include <QScreen>
#include <QSplashScreen>
#include <QTest>

#include <cstdio>
#include <memory>
#include <unistd.h>

/// Builds one window after the other, each under settings of its own. Windows are left behind as
/// the program leaves its one.
class TestMainWindowStart : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void stepsComeInTheirOrder();
    void splashGoesAfterTenSeconds();
    void autoStartFalseIsShownButNotHeld();
    void autoStartTrueIsSavedAtOnce();
    void isTouchIsNegated_data();
    void isTouchIsNegated();
    void pointerModeComesFromTheSettings_data();
    void pointerModeComesFromTheSettings();
    void trayFollowsTheDesktop_data();
    void trayFollowsTheDesktop();
    void adviceIsDisabledAsRemembered_data();
    void adviceIsDisabledAsRemembered();
    void everyBrandEndsUpShown_data();
    void everyBrandEndsUpShown();
    void windowIsCentredAndFixed();
    void firmwareCannotBeUpdatedYet();
    void stylusOnlyIsTheSetting();
    void bareViewHasItsInitialValues();
    void cleanupTestCase();

private:
    void build();
    QAction* action(const QString& text) const;
    QString userIni() const { return folder.filePath("user.ini"); }
    QVariant root(const char* name) const { return view->rootObject()->property(name); }
    QWidget* topLevel() const;

    QTemporaryDir folder;
    std::unique_ptr<LogRecorder> log;
    MainWindow* view = nullptr;
};

void TestMainWindowStart::initTestCase()
{
    initResources();
    qunsetenv("DISPLAY"); // no GTK here: the indicator's own tests have it
    GS* settings = GS::instance();
    settings->penSettingsPath = folder.filePath("pensettings.ini").toStdString();
    settings->userIniPath = userIni().toStdString();
    log = std::make_unique<LogRecorder>();
}

void TestMainWindowStart::init()
{
    log->clear();
    QFile::remove(userIni());
}

void TestMainWindowStart::cleanup()
{
    GS* settings = GS::instance();
    settings->autostart = true;
    settings->isTouch = 1;
    settings->singlePointerMode = 0;
    settings->acPopUpEnabled = true;
    settings->brand = 0;
    settings->stylusOnly = false;
    qunsetenv("XDG_CURRENT_DESKTOP");
    if (view)
        view->hide();
}

void TestMainWindowStart::cleanupTestCase()
{
    WorkerThread::stopAll();
    QVERIFY(WorkerThread::waitForAll(20000));
    log.reset();
}

void TestMainWindowStart::build()
{
    view = new MainWindow("Open", "Exit", "1.4.121");
}

QWidget* TestMainWindowStart::topLevel() const
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (qobject_cast<MyWidget*>(widget) && widget->isVisible())
            return widget;
    }
    return nullptr;
}

QAction* TestMainWindowStart::action(const QString& text) const
{
    for (QAction* candidate : topLevel()->findChildren<QAction*>()) {
        if (candidate->text() == text)
            return candidate;
    }
    return nullptr;
}

void TestMainWindowStart::stepsComeInTheirOrder()
{
    build();
    QStringList told;
    const QStringList wanted {"splash image for brand:  \"qor\"",
                              "showing splash ",
                              "qml loaded",
                              "load main.qml",
                              "Autostart is enabled!",
                              "auto Start clicked",
                              " single pointer mode "};
    for (const LogRecorder::Line& line : log->lines()) {
        if (wanted.contains(line.text))
            told.append(line.text);
    }
    QCOMPARE(told, wanted);
    QCOMPARE(log->count("closing splash "), 0); // it stays beside the window
    QVERIFY(topLevel());
    QCOMPARE(root("status").toInt(), 1);
}

void TestMainWindowStart::splashGoesAfterTenSeconds()
{
    QElapsedTimer clock;
    clock.start();
    build();
    QPointer<QSplashScreen> splash;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && qobject_cast<QSplashScreen*>(widget))
            splash = qobject_cast<QSplashScreen*>(widget);
    }
    QVERIFY(splash);
    QTRY_VERIFY_WITH_TIMEOUT(!splash->isVisible(), 60000);
    // Qt may end a wait of this length up to a twentieth early.
    QVERIFY2(clock.elapsed() >= 9400, qPrintable(QString::number(clock.elapsed())));
}

void TestMainWindowStart::autoStartFalseIsShownButNotHeld()
{
    GS::instance()->autostart = false;
    build();
    QCOMPARE(root("isAutoStart").toBool(), false);
    QVERIFY(!QFile::exists(userIni()));
    QCOMPARE(log->count("Autostart is enabled!"), 0);
    // The controller's own flag is true, so that the first click writes false again.
    view->toggleAutoStart();
    QCOMPARE(root("isAutoStart").toBool(), false);
    QCOMPARE(GS::instance()->autostart, false);
    QVERIFY(QFile::exists(userIni()));
    view->toggleAutoStart();
    QCOMPARE(root("isAutoStart").toBool(), true);
    QCOMPARE(GS::instance()->autostart, true);
}

void TestMainWindowStart::autoStartTrueIsSavedAtOnce()
{
    build();
    QCOMPARE(root("isAutoStart").toBool(), true);
    QVERIFY(QFile::exists(userIni()));
    view->toggleAutoStart();
    QCOMPARE(root("isAutoStart").toBool(), false);
}

void TestMainWindowStart::isTouchIsNegated_data()
{
    QTest::addColumn<int>("setting");
    QTest::addColumn<bool>("shown");
    QTest::newRow("0") << 0 << true;
    QTest::newRow("1") << 1 << false;
    QTest::newRow("2") << 2 << false;
}

void TestMainWindowStart::isTouchIsNegated()
{
    QFETCH(int, setting);
    QFETCH(bool, shown);
    GS::instance()->isTouch = setting;
    build();
    QCOMPARE(root("isTouch").toBool(), shown);
}

void TestMainWindowStart::pointerModeComesFromTheSettings_data()
{
    QTest::addColumn<int>("setting");
    QTest::addColumn<bool>("single");
    QTest::addColumn<QString>("line");
    QTest::newRow("0") << 0 << true << " single pointer mode ";
    QTest::newRow("1") << 1 << false << "Multi pointer mode ";
    QTest::newRow("-1") << -1 << false << "Multi pointer mode ";
}

void TestMainWindowStart::pointerModeComesFromTheSettings()
{
    QFETCH(int, setting);
    QFETCH(bool, single);
    QFETCH(QString, line);
    GS::instance()->singlePointerMode = setting;
    build();
    QCOMPARE(action("&Single Input")->isChecked(), single);
    QCOMPARE(action("&Multi Input")->isChecked(), !single);
    QCOMPARE(log->count(line), 1);
    QCOMPARE(log->count("Action:"), 0);
}

void TestMainWindowStart::trayFollowsTheDesktop_data()
{
    QTest::addColumn<bool>("hasIcon");
    for (const char* name : {"unity", "Unity", "UNITY", "uNiTy"})
        QTest::newRow(name) << false;
    for (const char* name : {"ubuntu:GNOME", "Unity:Unity7:ubuntu", "GNOME", "MATE", ""})
        QTest::newRow(name) << true;
}

void TestMainWindowStart::trayFollowsTheDesktop()
{
    QFETCH(bool, hasIcon);
    qputenv("XDG_CURRENT_DESKTOP", QTest::currentDataTag());
    build();
    QCOMPARE(bool(view->findChild<QSystemTrayIcon*>()), hasIcon);
    // Without one, what would use it does nothing.
    view->hideMessage();
    view->showMessage("text");
}

void TestMainWindowStart::adviceIsDisabledAsRemembered_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::newRow("enabled") << true;
    QTest::newRow("disabled") << false;
}

void TestMainWindowStart::adviceIsDisabledAsRemembered()
{
    QFETCH(bool, enabled);
    GS::instance()->acPopUpEnabled = enabled;
    build();
    const QQuickItem* advice = nullptr;
    for (const QQuickItem* item : view->rootObject()->findChildren<QQuickItem*>()) {
        if (item->metaObject()->indexOfMethod("leave()") >= 0)
            advice = item;
    }
    QVERIFY(advice);
    QCOMPARE(advice->property("isDisabled").toBool(), !enabled);
}

void TestMainWindowStart::everyBrandEndsUpShown_data()
{
    QTest::addColumn<int>("brand");
    QTest::addColumn<QString>("code");
    QTest::newRow("qor") << 0 << "qor";
    QTest::newRow("tal") << 1 << "tal";
    QTest::newRow("wendle") << 2 << "wendle";
    QTest::newRow("marrowby") << 4 << "marrowby";
    QTest::newRow("nobrand") << 3 << "nobrand";
}

void TestMainWindowStart::everyBrandEndsUpShown()
{
    QFETCH(int, brand);
    QFETCH(QString, code);
    GS::instance()->brand = brand;
    build();
    QVERIFY(topLevel());
    QCOMPARE(topLevel()->windowTitle(), QString("Vireon"));
    QCOMPARE(log->count(QString("splash image for brand:  \"%1\"").arg(code)), 1);
    // The hook of the file menu is there for one brand, and does nothing.
    QMenu* fileMenu = topLevel()->findChild<QMenuBar*>()->actions().first()->menu();
    QCOMPARE(QObject::disconnect(fileMenu, &QMenu::aboutToShow, view, &MainWindow::onFileMenuShow),
             brand == 1);
}

void TestMainWindowStart::windowIsCentredAndFixed()
{
    build();
    const QRect frame = topLevel()->geometry();
    QCOMPARE(topLevel()->pos(),
             QGuiApplication::primaryScreen()->geometry().center()
                 - QPoint((frame.width() - 1) / 2, (frame.height() - 1) / 2));
    QCOMPARE(topLevel()->minimumSize(), frame.size());
    QCOMPARE(topLevel()->maximumSize(), frame.size());
}

void TestMainWindowStart::firmwareCannotBeUpdatedYet()
{
    build();
    QVERIFY(!action("Update Firmware")->isEnabled());
    for (const char* text : {"&Exit", "&Hide", "&Reload Ccf", "&Reset", "&Single Input",
                             "&Multi Input", "Troubleshoot", "Video Tutorial", "Get Help"}) {
        QVERIFY2(action(text), text);
        QVERIFY2(action(text)->isEnabled(), text);
        QCOMPARE(action(text)->parent(), topLevel());
        QCOMPARE(action(text)->isCheckable(), QByteArray(text).endsWith("Input"));
    }
}

void TestMainWindowStart::stylusOnlyIsTheSetting()
{
    build();
    for (const bool value : {true, false}) {
        GS::instance()->stylusOnly = value;
        QCOMPARE(view->stylusOnly(), value);
    }
}

void TestMainWindowStart::bareViewHasItsInitialValues()
{
    {
        MainWindow bare(nullptr);
        QCOMPARE(bare.appName(), QString("Vireon"));
        QVERIFY(!bare.rootObject());
        // There is no view to tell anything.
        bare.onResolutionChanged();
        bare.toggleAutoStart();
        QCOMPARE(GS::instance()->autostart, false);
        bare.openLogWindow();
        bare.adaptWindowSize(1, 2, 3.0);
        bare.onFileMenuShow();
        bare.appendText("a line");
        QCOMPARE(log->count("quiting mainwindow"), 0);
    }
    QCOMPARE(log->count("quiting mainwindow"), 1);
}

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    TestMainWindowStart test;
    const int failures = QTest::qExec(&test, argc, argv);
    // As the program does: the windows and what they leave to the kernel are not deleted.
    std::fflush(nullptr);
    _exit(failures);
}

#include "tst_mainwindowstart.moc"
