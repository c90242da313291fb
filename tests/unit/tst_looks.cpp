#include "ui/looks.h"

#include "support/contrast.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QtTest>

#include <memory>

namespace {

constexpr int fingerHeight = 35; // px at 96 dpi

/// A text of these covers its pixels wholly, so that its colour can be read off a picture.
const QString blocks = QStringLiteral("\u2588\u2588\u2588\u2588");

} // namespace

/// Widgets as they are painted: texts stand out from what is below them, and no two states look
/// alike.
class TestLooks : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void windowHasTheColourOfTheViews();
    void menuBarStatesDiffer();
    void menuBarLeavesNoRoomBelowItsEntries();
    void menuStatesDiffer();
    void separatorIsVisible();
    void entriesAreHighEnoughForAFinger();
    void buttonStatesDiffer();
    void textAndLinkOfABoxCanBeRead();
};

void TestLooks::initTestCase()
{
    applyLooks();
}

void TestLooks::windowHasTheColourOfTheViews()
{
    QWidget window;
    window.resize(50, 50);
    QCOMPARE(window.grab().toImage().pixelColor(25, 25), QColor("#1d2733"));
}

void TestLooks::menuBarStatesDiffer()
{
    QMenuBar bar;
    bar.setNativeMenuBar(false);
    QMenu menu(blocks);
    menu.addAction(blocks);
    QAction* entry = bar.addMenu(&menu);
    bar.resize(300, bar.sizeHint().height());
    bar.show();
    const auto picture = [&] { return bar.grab(bar.actionGeometry(entry)).toImage(); };

    const QImage rest = picture();
    QVERIFY(contrastIn(rest) >= readableContrast);
    bar.setActiveAction(entry);
    const QImage open = picture();
    QVERIFY(contrastIn(open) >= readableContrast);
    menu.hide();
    const QImage hovered = picture();
    QVERIFY(contrastIn(hovered) >= readableContrast);
    entry->setEnabled(false);
    const QImage disabled = picture();
    QVERIFY(allDiffer({rest, open, hovered, disabled}));
}

void TestLooks::menuBarLeavesNoRoomBelowItsEntries()
{
    QMenuBar bar;
    QAction* entry = bar.addAction(blocks);
    bar.resize(300, bar.sizeHint().height());
    bar.show();
    QCOMPARE(bar.height(), menuBarHeight());
    QCOMPARE(bar.actionGeometry(entry).height(), bar.height());
}

void TestLooks::menuStatesDiffer()
{
    QMenu menu;
    QAction* entry = menu.addAction(blocks);
    QAction* other = menu.addAction(QString());
    menu.show();
    const auto picture = [&](QAction* active) {
        menu.setActiveAction(active);
        return menu.grab(menu.actionGeometry(entry)).toImage();
    };

    const QImage rest = picture(other);
    QVERIFY(contrastIn(rest) >= readableContrast);
    const QImage selected = picture(entry);
    QVERIFY(contrastIn(selected) >= readableContrast);
    entry->setEnabled(false);
    const QImage disabled = picture(other);
    QVERIFY(contrastIn(disabled) >= readableContrast);
    const QImage disabledSelected = picture(entry);
    QVERIFY(allDiffer({rest, selected, disabled, disabledSelected}));
}

void TestLooks::separatorIsVisible()
{
    QMenu menu;
    menu.addAction(QStringLiteral("above"));
    QAction* separator = menu.addSeparator();
    menu.addAction(QStringLiteral("below"));
    menu.show();
    const QImage picture = menu.grab(menu.actionGeometry(separator)).toImage();
    QVERIFY(contrastIn(picture) > 1.5);
}

void TestLooks::entriesAreHighEnoughForAFinger()
{
    QMenuBar bar;
    QAction* inBar = bar.addAction(QStringLiteral("File"));
    bar.resize(300, bar.sizeHint().height());
    QMenu menu;
    QAction* inMenu = menu.addAction(QStringLiteral("Hide"));
    menu.show();
    QPushButton button(QStringLiteral("OK"));
    QVERIFY(bar.actionGeometry(inBar).height() >= fingerHeight);
    QVERIFY(menu.actionGeometry(inMenu).height() >= fingerHeight);
    QVERIFY(button.sizeHint().height() >= fingerHeight);
}

void TestLooks::buttonStatesDiffer()
{
    QWidget window;
    QPushButton button(blocks, &window);
    button.adjustSize();
    window.show();
    QApplication::setActiveWindow(&window);
    const auto picture = [&] { return button.grab().toImage(); };

    button.clearFocus();
    const QImage rest = picture();
    QVERIFY(contrastIn(rest) >= readableContrast);
    button.setFocus();
    const QImage focused = picture();
    button.clearFocus();
    button.setAttribute(Qt::WA_UnderMouse);
    const QImage hovered = picture();
    QVERIFY(contrastIn(hovered) >= readableContrast);
    button.setDown(true);
    const QImage pressed = picture();
    QVERIFY(contrastIn(pressed) >= readableContrast);
    button.setDown(false);
    button.setAttribute(Qt::WA_UnderMouse, false);
    button.setEnabled(false);
    QVERIFY(allDiffer({rest, focused, hovered, pressed, picture()}));
}

void TestLooks::textAndLinkOfABoxCanBeRead()
{
    for (const QString& text :
         {blocks, QStringLiteral("<a href='x'>") + blocks + QStringLiteral("</a>")}) {
        QMessageBox box;
        box.setTextFormat(Qt::RichText);
        box.setText(text);
        box.show();
        auto* label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
        QVERIFY(label);
        QVERIFY(contrastIn(box.grab(label->geometry()).toImage()) >= readableContrast);
    }
}

QTEST_MAIN(TestLooks)
#include "tst_looks.moc"
