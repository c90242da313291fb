#include "support/windowfixture.h"

#include <QIcon>
#include <QMenu>

/// The icon in the tray: where there is one, what it shows and what a click does.
class TestMainWindowTray : public WindowFixture
{
    Q_OBJECT

private slots:
    void trayFollowsTheDesktop_data();
    void trayFollowsTheDesktop();
    void trayIconHasTheProgramsPicture();
    void onlyAPlainTrayClickOpensTheWindow();
    void trayIconIsConnected();
    void trayMenuHasOneItem();
};

void TestMainWindowTray::trayFollowsTheDesktop_data()
{
    QTest::addColumn<bool>("hasIcon");
    for (const char* name : {"unity", "Unity", "UNITY", "uNiTy"})
        QTest::newRow(name) << false;
    for (const char* name : {"ubuntu:GNOME", "Unity:Unity7:ubuntu", "GNOME", "MATE", ""})
        QTest::newRow(name) << true;
}

void TestMainWindowTray::trayFollowsTheDesktop()
{
    QFETCH(bool, hasIcon);
    qputenv("XDG_CURRENT_DESKTOP", QTest::currentDataTag());
    build();
    QCOMPARE(bool(trayIcon()), hasIcon);
    // Without one, what would use it does nothing.
    log->clear();
    view->hideMessage();
    view->showMessage("text");
    QCOMPARE(toldOf("QSystemTrayIcon.").isEmpty(), !hasIcon);
}

void TestMainWindowTray::trayIconHasTheProgramsPicture()
{
    build();
    const QSize size(32, 32);
    QCOMPARE(trayIcon()->icon().pixmap(size).toImage(),
             QIcon(":/qml/Vireon.icns").pixmap(size).toImage());
    QVERIFY(!trayIcon()->icon().isNull());
    QVERIFY(trayIcon()->isVisible());
    QCOMPARE(trayIcon()->parent(), view);
}

void TestMainWindowTray::onlyAPlainTrayClickOpensTheWindow()
{
    build();
    view->hideWindow();
    log->clear();
    for (const auto reason : {QSystemTrayIcon::Context, QSystemTrayIcon::DoubleClick,
                              QSystemTrayIcon::MiddleClick, QSystemTrayIcon::Unknown}) {
        view->onTrayIconClicked(reason);
        QVERIFY(!topLevel()->isVisible());
    }
    QCOMPARE(log->count("closing splash "), 0);
    view->onTrayIconClicked();
    QVERIFY(topLevel()->isVisible());
    QCOMPARE(log->count("closing splash "), 1);
}

void TestMainWindowTray::trayIconIsConnected()
{
    build();
    QSystemTrayIcon* icon = trayIcon();
    QVERIFY(icon && icon->isVisible() && !icon->icon().isNull());
    view->hideWindow();
    emit icon->activated(QSystemTrayIcon::DoubleClick);
    QVERIFY(!topLevel()->isVisible());
    emit icon->activated(QSystemTrayIcon::Trigger);
    QVERIFY(topLevel()->isVisible());
    view->hideWindow();
    emit icon->messageClicked();
    QVERIFY(topLevel()->isVisible());
}

void TestMainWindowTray::trayMenuHasOneItem()
{
    build();
    const QMenu* menu = trayIcon()->contextMenu();
    QVERIFY(menu && !menu->parent());
    QCOMPARE(menu->actions().size(), 1);
    QCOMPARE(menu->actions().first()->text(), QString("Exit"));
    QCOMPARE(menu->actions().first()->parent(), view);
}

int main(int argc, char* argv[])
{
    runWindowTest<TestMainWindowTray>(argc, argv);
}

#include "tst_mainwindowtray.moc"
