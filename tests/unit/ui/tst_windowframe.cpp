#include "ui/looks.h"
#include "ui/windowframe.h"

#include <QGuiApplication>
#include <QLayout>
#include <QMenuBar>
#include <QScreen>
#include <QTest>
#include <QWidget>

static bool hasScreen = true;

// These two stand in front of Qt's: there is a panel on the screen, and the screen can go.

QRect QScreen::availableGeometry() const
{
    return geometry().adjusted(0, 0, 0, -100);
}

QScreen* QGuiApplication::primaryScreen()
{
    return hasScreen ? screens().constFirst() : nullptr;
}

/// A window of its own for each function, with a content that asks for 300 x 200 px.
class TestWindowFrame : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void contentFillsTheWindowButForTheMenuBar();
    void menuBarTakesTheRoomThatWasLeft();
    void sizeIsFixed();
    void menuBarsHeightDoesNotRaiseTheSize();
    void sizeIsFixedAnewAroundTheMiddle();
    void oddGrowthIsTakenBackWhole();
    void grownWindowIsMovedOntoItsScreen_data();
    void grownWindowIsMovedOntoItsScreen();
    void windowIsCentred_data();
    void windowIsCentred();
    void withoutAScreenNothingMoves();
    void windowOnTheScreenStays_data();
    void windowOnTheScreenStays();
    void windowOffTheScreenIsCentred_data();
    void windowOffTheScreenIsCentred();

private:
    QRect screen() const { return QGuiApplication::primaryScreen()->geometry(); }
    QPoint centred() const;

    std::unique_ptr<QWidget> window;
    std::unique_ptr<WindowFrame> frame;
    QWidget* content = nullptr;
};

void TestWindowFrame::initTestCase()
{
    applyLooks();
    // Or what is off a screen could not be told from what is not.
    QCOMPARE(QGuiApplication::screens().size(), 1);
}

void TestWindowFrame::init()
{
    window = std::make_unique<QWidget>();
    frame = std::make_unique<WindowFrame>(*window);
    content = new QWidget;
    content->setMinimumSize(300, 200);
    frame->fill(*content);
}

void TestWindowFrame::cleanup()
{
    hasScreen = true;
    frame.reset();
    window.reset();
}

QPoint TestWindowFrame::centred() const
{
    return screen().center() - QPoint((window->width() - 1) / 2, (window->height() - 1) / 2);
}

// --- Size -------------------------------------------------------------------------------------

void TestWindowFrame::contentFillsTheWindowButForTheMenuBar()
{
    QVERIFY(menuBarHeight() > 0);
    QCOMPARE(window->size(), QSize(300, 200 + menuBarHeight()));
    window->show();
    QCOMPARE(content->geometry(), QRect(0, 0, 300, 200));
}

void TestWindowFrame::menuBarTakesTheRoomThatWasLeft()
{
    auto* bar = new QMenuBar;
    bar->addMenu("File");
    frame->installMenuBar(*bar, window->size());
    window->show();
    QCOMPARE(window->size(), QSize(300, 200 + menuBarHeight()));
    QCOMPARE(bar->geometry(), QRect(0, 0, 300, menuBarHeight()));
    QCOMPARE(content->geometry(), QRect(0, menuBarHeight(), 300, 200));
}

void TestWindowFrame::sizeIsFixed()
{
    const QSize size(340, 260);
    auto* bar = new QMenuBar;
    bar->addMenu("File");
    frame->installMenuBar(*bar, size);
    window->show();
    QCOMPARE(window->minimumSize(), size);
    QCOMPARE(window->maximumSize(), size);
    QCOMPARE(window->size(), size);
    QCOMPARE(content->geometry(), QRect(0, menuBarHeight(), 340, 260 - menuBarHeight()));
}

void TestWindowFrame::menuBarsHeightDoesNotRaiseTheSize()
{
    auto* bar = new QMenuBar;
    bar->setMinimumHeight(90);
    bar->addMenu("File");
    const QSize size = window->size();
    frame->installMenuBar(*bar, size);
    window->show();
    QCOMPARE(window->minimumSize(), size);
    QCOMPARE(window->size(), size);
}

void TestWindowFrame::sizeIsFixedAnewAroundTheMiddle()
{
    auto* bar = new QMenuBar;
    bar->addMenu("File");
    frame->installMenuBar(*bar, window->size());
    window->move(200, 150);
    window->show();
    const QSize grown(400, 300 + menuBarHeight());
    QCOMPARE(frame->refit(*content, QSize(400, 300)), grown);
    QCOMPARE(window->size(), grown);
    QCOMPARE(window->minimumSize(), grown);
    QCOMPARE(window->maximumSize(), grown);
    QCOMPARE(content->geometry(), QRect(0, menuBarHeight(), 400, 300));
    QCOMPARE(window->pos(), QPoint(150, 100));
    frame->refit(*content, QSize(300, 200));
    QCOMPARE(window->size(), QSize(300, 200 + menuBarHeight()));
    QCOMPARE(window->pos(), QPoint(200, 150));
}

void TestWindowFrame::oddGrowthIsTakenBackWhole()
{
    window->move(200, 150);
    const QSize size = frame->refit(*content, QSize(300, 200));
    const QPoint place = window->pos();
    frame->refit(*content, QSize(341, 271));
    frame->refit(*content, QSize(402, 322));
    frame->refit(*content, QSize(300, 200));
    QCOMPARE(window->size(), size);
    QCOMPARE(window->pos(), place);
}

void TestWindowFrame::grownWindowIsMovedOntoItsScreen_data()
{
    QTest::addColumn<QPoint>("before");
    QTest::addColumn<QPoint>("after");
    const QPoint last(screen().right() - 399, screen().bottom() - 100 - 299 - menuBarHeight());
    QTest::newRow("upper left") << QPoint(10, 20) << QPoint(0, 0);
    QTest::newRow("right") << QPoint(screen().right() - 310, 150) << QPoint(last.x(), 100);
    QTest::newRow("below, over a panel")
        << QPoint(200, screen().bottom() - 310) << QPoint(150, last.y());
}

void TestWindowFrame::grownWindowIsMovedOntoItsScreen()
{
    QFETCH(QPoint, before);
    QFETCH(QPoint, after);
    window->move(before);
    frame->refit(*content, QSize(400, 300));
    QCOMPARE(window->pos(), after);
}

// --- Place ------------------------------------------------------------------------------------

void TestWindowFrame::windowIsCentred_data()
{
    QTest::addColumn<QSize>("size");
    for (const QSize& size : {QSize(300, 200), QSize(301, 201), QSize(5000, 4000)})
        QTest::addRow("%d x %d", size.width(), size.height()) << size;
}

void TestWindowFrame::windowIsCentred()
{
    QFETCH(QSize, size);
    window->resize(size);
    window->move(3, 4);
    frame->centre();
    QCOMPARE(window->pos(), centred());
}

void TestWindowFrame::withoutAScreenNothingMoves()
{
    window->move(3, 4);
    hasScreen = false;
    frame->centre();
    hasScreen = true;
    QCOMPARE(window->pos(), QPoint(3, 4));
}

void TestWindowFrame::windowOnTheScreenStays_data()
{
    QTest::addColumn<QPoint>("place");
    const QPoint last = screen().bottomRight() - QPoint(299, 199 + menuBarHeight());
    QTest::newRow("top left") << screen().topLeft();
    QTest::newRow("inside") << QPoint(31, 17);
    QTest::newRow("bottom right") << last;
}

void TestWindowFrame::windowOnTheScreenStays()
{
    QFETCH(QPoint, place);
    window->move(place);
    frame->keepOnScreen();
    QCOMPARE(window->pos(), place);
}

void TestWindowFrame::windowOffTheScreenIsCentred_data()
{
    QTest::addColumn<QPoint>("place");
    const QPoint last = screen().bottomRight() - QPoint(299, 199 + menuBarHeight());
    QTest::newRow("to the left") << screen().topLeft() - QPoint(1, 0);
    QTest::newRow("above") << screen().topLeft() - QPoint(0, 1);
    QTest::newRow("to the right") << last + QPoint(1, 0);
    QTest::newRow("below") << last + QPoint(0, 1);
    QTest::newRow("far away") << QPoint(-9000, 9000);
}

void TestWindowFrame::windowOffTheScreenIsCentred()
{
    QFETCH(QPoint, place);
    window->move(place);
    frame->keepOnScreen();
    QCOMPARE(window->pos(), centred());
}

QTEST_MAIN(TestWindowFrame)

#include "tst_windowframe.moc"
