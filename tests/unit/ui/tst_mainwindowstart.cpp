#include "support/windowfixture.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QMetaMethod>
#include <QQuickItem>
#include <QScreen>
#include <QSplashScreen>

Q_DECLARE_METATYPE(QMetaMethod)

/// The construction of the window, under settings that each function makes.
class TestMainWindowStart : public WindowFixture
{
    Q_OBJECT

private slots:
    void splashGoesAfterTenSeconds();
    void splashIsTheBrands_data();
    void splashIsTheBrands();
    void autoStartFalseIsShownButNotHeld();
    void autoStartTrueIsSavedAtOnce();
    void isTouchIsNegated_data();
    void isTouchIsNegated();
    void pointerModeComesFromTheSettings_data();
    void pointerModeComesFromTheSettings();
    void adviceIsDisabledAsRemembered_data();
    void adviceIsDisabledAsRemembered();
    void slowScreenIsToldOf_data();
    void slowScreenIsToldOf();
    void everyBrandEndsUpShown_data();
    void everyBrandEndsUpShown();
    void windowIsCentredAndFixed();
    void viewTakesTheKeyboard();
    void firmwareCannotBeUpdatedYet();
    void nothingIsSaidOrCommanded();
    void bareViewHasItsInitialValues();
    void noSlotNeedsWhatIsNotThere_data();
    void noSlotNeedsWhatIsNotThere();
};

// --- Splash -----------------------------------------------------------------------------------

void TestMainWindowStart::splashGoesAfterTenSeconds()
{
    build();
    QWidget* splash = nullptr;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && qobject_cast<QSplashScreen*>(widget))
            splash = widget;
    }
    QVERIFY(splash);
    QCOMPARE(toldOf("singleShot"), QStringList {"Splash.singleShot(10000)"});
    calls->runTimers();
    QVERIFY(!splash->isVisible());
}

void TestMainWindowStart::splashIsTheBrands_data()
{
    QTest::addColumn<int>("brand");
    QTest::newRow("qor") << 0;
    QTest::newRow("tal") << 1;
    QTest::newRow("wendle") << 2;
    QTest::newRow("nobrand") << 3;
    QTest::newRow("marrowby") << 4;
}

void TestMainWindowStart::splashIsTheBrands()
{
    QFETCH(int, brand);
    GS::instance()->brand = brand;
    build();
    QCOMPARE(log->count(QString("splash image for brand:  \"%1\"").arg(QTest::currentDataTag())),
             1);
}

// --- Settings ---------------------------------------------------------------------------------

void TestMainWindowStart::autoStartFalseIsShownButNotHeld()
{
    GS::instance()->autostart = false;
    build();
    QCOMPARE(root("isAutoStart").toBool(), false);
    QVERIFY(!QFile::exists(file("user.ini")));
    QCOMPARE(log->count("Autostart is enabled!"), 0);
    // The controller's own flag is true, so that the first click writes false again.
    view->toggleAutoStart();
    QCOMPARE(root("isAutoStart").toBool(), false);
    QCOMPARE(GS::instance()->autostart, false);
    QVERIFY(QFile::exists(file("user.ini")));
    view->toggleAutoStart();
    QCOMPARE(root("isAutoStart").toBool(), true);
    QCOMPARE(GS::instance()->autostart, true);
}

void TestMainWindowStart::autoStartTrueIsSavedAtOnce()
{
    build();
    QCOMPARE(root("isAutoStart").toBool(), true);
    QVERIFY(QFile::exists(file("user.ini")));
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
    // Nothing is sent, said or saved.
    QCOMPARE(log->count("Action:"), 0);
    QCOMPARE(toldOf("showMessage"), QStringList());
}

// --- Warnings ---------------------------------------------------------------------------------

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

void TestMainWindowStart::slowScreenIsToldOf_data()
{
    QTest::addColumn<double>("rate");
    QTest::addColumn<bool>("told");
    QTest::newRow("fast") << 60.0 << false;
    QTest::newRow("slow") << 30.0 << true;
}

void TestMainWindowStart::slowScreenIsToldOf()
{
    QFETCH(double, rate);
    QFETCH(bool, told);
    calls->refreshRate = rate;
    build();
    QCOMPARE(log->count("show freq error"), told ? 1 : 0);
    QCOMPARE(log->count("show freq warning popup"), told ? 1 : 0);
}

// --- Window -----------------------------------------------------------------------------------

void TestMainWindowStart::everyBrandEndsUpShown_data()
{
    splashIsTheBrands_data();
}

void TestMainWindowStart::everyBrandEndsUpShown()
{
    QFETCH(int, brand);
    const bool remotePen = brand == 1;
    GS::instance()->brand = brand;
    build();
    QVERIFY(topLevel());
    QVERIFY(topLevel()->isVisible());
    QCOMPARE(topLevel()->windowTitle(), QString("Vireon"));
    // One brand's is visible while its menus are built.
    const QStringList lines =
        told({"MyWidget.setVisible(true)", "MyWidget.setVisible(false)", "QMenuBar.addMenu(File)"});
    QCOMPARE(lines.first(), QString("MyWidget.setVisible(%1)").arg(remotePen ? "true" : "false"));
    QCOMPARE(lines.mid(1), QStringList({"QMenuBar.addMenu(File)", "MyWidget.setVisible(true)"}));
    // The hook of the file menu is there for that brand only, and does nothing.
    QMenu* fileMenu = topLevel()->findChild<QMenuBar*>()->actions().first()->menu();
    QCOMPARE(QObject::disconnect(fileMenu, &QMenu::aboutToShow, view, &MainWindow::onFileMenuShow),
             remotePen);
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

void TestMainWindowStart::viewTakesTheKeyboard()
{
    build();
    const QWidget* container = nullptr;
    for (const QWidget* widget : topLevel()->findChildren<QWidget*>()) {
        if (widget->inherits("QWindowContainer"))
            container = widget;
    }
    QVERIFY(container);
    QCOMPARE(container->focusPolicy(), Qt::StrongFocus);
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

void TestMainWindowStart::nothingIsSaidOrCommanded()
{
    build();
    QCOMPARE(log->count("Action:"), 0);
    QCOMPARE(toldOf("showMessage"), QStringList());
    QCOMPARE(log->count("starting "), 0);
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

void TestMainWindowStart::noSlotNeedsWhatIsNotThere_data()
{
    qRegisterMetaType<QSystemTrayIcon::ActivationReason>("QSystemTrayIcon::ActivationReason");
    QTest::addColumn<QMetaMethod>("slot");
    const QMetaObject& type = MainWindow::staticMetaObject;
    for (int index = type.methodOffset(); index < type.methodCount(); ++index) {
        const QMetaMethod method = type.method(index);
        // The box waits for the user.
        if (method.access() == QMetaMethod::Public && method.name() != "onUpdateFirmwareTriggered")
            QTest::newRow(method.methodSignature().constData()) << method;
    }
}

void TestMainWindowStart::noSlotNeedsWhatIsNotThere()
{
    QFETCH(QMetaMethod, slot);
    MainWindow bare(nullptr);
    QVariantList values;
    for (int index = 0; index < slot.parameterCount(); ++index)
        values.append(QVariant(slot.parameterType(index), nullptr));
    QGenericArgument arguments[3];
    for (int index = 0; index < values.size(); ++index)
        arguments[index] =
            QGenericArgument(QMetaType::typeName(slot.parameterType(index)), values[index].data());
    QVERIFY(slot.invoke(&bare, Qt::DirectConnection, arguments[0], arguments[1], arguments[2]));
}

int main(int argc, char* argv[])
{
    runWindowTest<TestMainWindowStart>(argc, argv);
}

#include "tst_mainwindowstart.moc"
