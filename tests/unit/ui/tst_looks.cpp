#include "ui/looks.h"

#include "support/contrast.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QStyleOption>
#include <QtTest>

namespace {

constexpr int fingerHeight = 35; // px at 96 dpi

/// A text of these covers its pixels wholly, so that its colour can be read off a picture.
const QString blocks = QString(8, QChar(0x2588));

const QRect area(0, 0, 150, 40);

/// A part of a widget in the state that the option tells.
QImage painted(const QWidget& widget, QStyle::ControlElement element, const QStyleOption& option)
{
    QImage picture(area.size(), QImage::Format_RGB32);
    picture.fill(QApplication::palette().color(QPalette::Window));
    QPainter painter(&picture);
    widget.ensurePolished();
    widget.style()->drawControl(element, &option, &painter, &widget);
    return picture;
}

QStyleOptionMenuItem menuItem(QStyle::State state)
{
    QStyleOptionMenuItem option;
    option.rect = area;
    option.palette = QApplication::palette();
    option.text = blocks;
    option.state = state;
    return option;
}

} // namespace

/// Widgets as they are painted: texts stand out from what is below them, and no two states look
/// alike.
class TestLooks : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
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

void TestLooks::menuBarStatesDiffer()
{
    const QMenuBar bar;
    const auto picture = [&](QStyle::State state) {
        return painted(bar, QStyle::CE_MenuBarItem, menuItem(state));
    };
    const QImage rest = picture(QStyle::State_Enabled);
    const QImage hovered = picture(QStyle::State_Enabled | QStyle::State_Selected);
    const QImage open =
        picture(QStyle::State_Enabled | QStyle::State_Selected | QStyle::State_Sunken);
    for (const QImage& image : {rest, hovered, open})
        QVERIFY(contrastIn(image) >= readableContrast);
    QVERIFY(allDiffer({rest, hovered, open, picture(QStyle::State_None)}));
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
    const QMenu menu;
    const auto picture = [&](QStyle::State state) {
        return painted(menu, QStyle::CE_MenuItem, menuItem(state));
    };
    const QImage rest = picture(QStyle::State_Enabled);
    const QImage selected = picture(QStyle::State_Enabled | QStyle::State_Selected);
    const QImage disabled = picture(QStyle::State_None);
    for (const QImage& image : {rest, selected, disabled})
        QVERIFY(contrastIn(image) >= readableContrast);
    QVERIFY(allDiffer({rest, selected, disabled}));
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
    QMessageBox box(QMessageBox::Critical, QString(), QString(), QMessageBox::Ok);
    QVERIFY(bar.actionGeometry(inBar).height() >= fingerHeight);
    QVERIFY(menu.actionGeometry(inMenu).height() >= fingerHeight);
    QVERIFY(box.button(QMessageBox::Ok)->sizeHint().height() >= fingerHeight);
}

void TestLooks::buttonStatesDiffer()
{
    QDialog dialog;
    const QPushButton button(&dialog);
    const auto picture = [&](QStyle::State state) {
        QStyleOptionButton option;
        option.rect = area;
        option.palette = QApplication::palette();
        option.text = blocks;
        option.state = state;
        return painted(button, QStyle::CE_PushButton, option);
    };
    const QImage rest = picture(QStyle::State_Enabled | QStyle::State_Raised);
    const QImage hovered =
        picture(QStyle::State_Enabled | QStyle::State_Raised | QStyle::State_MouseOver);
    const QImage focused =
        picture(QStyle::State_Enabled | QStyle::State_Raised | QStyle::State_HasFocus);
    const QImage pressed =
        picture(QStyle::State_Enabled | QStyle::State_Sunken | QStyle::State_MouseOver);
    for (const QImage& image : {rest, hovered, focused, pressed})
        QVERIFY(contrastIn(image) >= readableContrast);
    QVERIFY(allDiffer({rest, hovered, focused, pressed, picture(QStyle::State_Raised)}));
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
