#include "engine/statuslistener.h"
#include "support/windowfixture.h"
#include "ui/supportaddresses.h"

#include <QAction>
#include <QDesktopServices>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QTimer>
#include <QUrl>

/// The menu bar: what is in it, and what its entries do.
class TestMainWindowMenus : public WindowFixture
{
    Q_OBJECT

private slots:
    void init();

    void menuBarHasThreeMenus();
    void menusAreNobodysChildren();
    void helpEntriesOpenTheirPages_data();
    void helpEntriesOpenTheirPages();
    void actionsRunTheirSlots_data();
    void actionsRunTheirSlots();
    void hideHidesWithAHint();
    void exitQuits();
    void firmwareEntryShowsTheBox();
    void keyInTheViewOpensTheFirstMenu();
};

namespace {

/// The user's browser.
class Browser : public QObject
{
    Q_OBJECT

public:
    QList<QUrl> opened;

    Browser() { QDesktopServices::setUrlHandler("https", this, "open"); }
    ~Browser() override { QDesktopServices::unsetUrlHandler("https"); }

public slots:
    void open(const QUrl& address) { opened.append(address); }
};

} // namespace

void TestMainWindowMenus::init()
{
    WindowFixture::init();
    build();
    log->clear();
}

void TestMainWindowMenus::menuBarHasThreeMenus()
{
    QStringList titles;
    QList<QStringList> entries;
    for (const QAction* title : topLevel()->findChild<QMenuBar*>()->actions()) {
        titles.append(title->text());
        QStringList texts;
        for (const QAction* entry : title->menu()->actions())
            texts.append(entry->text());
        entries.append(texts);
    }
    QCOMPARE(titles, QStringList({"File", "Calibration", "Help"}));
    QCOMPARE(entries.at(0), QStringList({"&Hide", "Update Firmware", "&Exit"}));
    QCOMPARE(entries.at(1), QStringList({"&Reset"}));
    QCOMPARE(entries.at(2), QStringList({"Troubleshoot", "Video Tutorial", "Get Help"}));
    QVERIFY(action("&Reload Ccf"));
}

void TestMainWindowMenus::menusAreNobodysChildren()
{
    for (const QAction* title : topLevel()->findChild<QMenuBar*>()->actions())
        QVERIFY(!title->menu()->parent());
    // The one that is attached nowhere.
    const QAction* single = action("&Single Input");
    QCOMPARE(single->associatedWidgets().size(), 1);
    const auto* input = qobject_cast<QMenu*>(single->associatedWidgets().first());
    QVERIFY(input && !input->parent());
    QCOMPARE(input->title(), QString("Input"));
    QCOMPARE(input->actions(), QList<QAction*>({action("&Single Input"), action("&Multi Input")}));
    QVERIFY(action("&Reload Ccf")->associatedWidgets().isEmpty());
}

void TestMainWindowMenus::helpEntriesOpenTheirPages_data()
{
    QTest::addColumn<QString>("address");
    QTest::newRow("Troubleshoot") << knowledgeBaseAddress;
    QTest::newRow("Video Tutorial") << videoTutorialAddress;
    QTest::newRow("Get Help") << newTicketAddress;
}

void TestMainWindowMenus::helpEntriesOpenTheirPages()
{
    QFETCH(QString, address);
    const Browser browser;
    action(QTest::currentDataTag())->trigger();
    QCOMPARE(browser.opened, QList<QUrl> {QUrl(address)});
}

void TestMainWindowMenus::actionsRunTheirSlots_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<bool>("single");
    QTest::newRow("&Reload Ccf") << int(SdkHelper::LoadCcf) << true;
    QTest::newRow("&Reset") << int(SdkHelper::ResetCalibration) << true;
    QTest::newRow("&Single Input") << int(SdkHelper::SinglePointer) << true;
    QTest::newRow("&Multi Input") << int(SdkHelper::MultiPointer) << false;
}

void TestMainWindowMenus::actionsRunTheirSlots()
{
    QFETCH(int, code);
    QFETCH(bool, single);
    QVERIFY(makeReady());
    action(QTest::currentDataTag())->trigger();
    QCOMPARE(commands(), QVector<int> {code});
    QVERIFY(topLevel()->isVisible());
    QCOMPARE(log->count("Quit Vireon clicked"), 0);
    QCOMPARE(action("&Single Input")->isChecked(), single);
    QCOMPARE(action("&Multi Input")->isChecked(), !single);
}

void TestMainWindowMenus::hideHidesWithAHint()
{
    action("&Hide")->trigger();
    QVERIFY(!topLevel()->isVisible());
    QCOMPARE(toldOf("showMessage").size(), 1);
    QCOMPARE(commands(), QVector<int> {});
    QCOMPARE(log->count("Quit Vireon clicked"), 0);
    QVERIFY(action("&Single Input")->isChecked());
    QVERIFY(!action("&Multi Input")->isChecked());
}

void TestMainWindowMenus::exitQuits()
{
    QVERIFY(makeReady());
    action("&Exit")->trigger();
    QCOMPARE(log->count("Quit Vireon clicked"), 1);
    QCOMPARE(commands(), QVector<int> {SdkHelper::QuitEngine});
}

void TestMainWindowMenus::firmwareEntryShowsTheBox()
{
    StatusListener::instance()->firmware = 1;
    GS::instance()->brand = 1;
    view->onStatusChanged(StatusReady);
    QString text;
    QTimer::singleShot(0, view, [&] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            text = box->text();
            box->close();
        }
    });
    action("Update Firmware")->trigger();
    // The firmware's number, the product's text, the program's name.
    QVERIFY2(text.contains("you have Ver. 1.1"), qPrintable(text));
    QVERIFY2(text.contains("prepare the Windows computer"), qPrintable(text));
    QVERIFY2(text.contains("onto Vireon."), qPrintable(text));
    QCOMPARE(commands(), QVector<int> {});
}

void TestMainWindowMenus::keyInTheViewOpensTheFirstMenu()
{
    auto* bar = topLevel()->findChild<QMenuBar*>();
    QTest::keyClick(view, Qt::Key_F10, Qt::ShiftModifier);
    QVERIFY(!bar->activeAction());
    QTest::keyClick(view, Qt::Key_F10);
    QVERIFY(bar->activeAction());
    QCOMPARE(bar->activeAction()->text(), QString("File"));
}

int main(int argc, char* argv[])
{
    runWindowTest<TestMainWindowMenus>(argc, argv);
}

#include "tst_mainwindowmenus.moc"
