#include "ui/windowframe.h"

#include "ui/looks.h"

#include <QBoxLayout>
#include <QGuiApplication>
#include <QMenuBar>
#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace {

QVector<QRect> screenGeometries()
{
    QVector<QRect> geometries;
    for (const QScreen* screen : QGuiApplication::screens())
        geometries.append(screen->geometry());
    return geometries;
}

/// @p place, moved into @p area as far as needed: its upper left corner is in there in any case.
QRect moved(QRect place, const QRect& area)
{
    place.moveRight(std::min(place.right(), area.right()));
    place.moveBottom(std::min(place.bottom(), area.bottom()));
    place.moveLeft(std::max(place.left(), area.left()));
    place.moveTop(std::max(place.top(), area.top()));
    return place;
}

} // namespace

WindowFrame::WindowFrame(QWidget& itsWindow)
    : window(itsWindow)
{
}

void WindowFrame::fill(QWidget& content)
{
    auto* layout = new QBoxLayout(QBoxLayout::LeftToRight, &window);
    layout->setContentsMargins(0, 0, 0, menuBarHeight());
    layout->addWidget(&content);
    window.adjustSize();
}

void WindowFrame::installMenuBar(QMenuBar& bar, const QSize& size)
{
    QLayout* layout = window.layout();
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setMenuBar(&bar);
    // Without this the menu bar's height would raise the minimum above the fixed size.
    layout->setSizeConstraint(QLayout::SetNoConstraint);
    window.setFixedSize(size);
}

QSize WindowFrame::refit(QWidget& content, const QSize& size)
{
    const QSize before = window.size();
    content.setMinimumSize(size);
    window.setFixedSize(size.width(), size.height() + menuBarHeight());
    // Each size is halved by itself: however often it changes, the rounding does not add up.
    window.move(window.pos()
                + QPoint(before.width() / 2 - window.width() / 2,
                         before.height() / 2 - window.height() / 2));
    if (const QScreen* screen = window.screen())
        window.move(moved(window.frameGeometry(), screen->availableGeometry()).topLeft());
    return window.size();
}

void WindowFrame::centre()
{
    const QScreen* primary = QGuiApplication::primaryScreen();
    if (!primary)
        return;
    const QRect frame = window.geometry();
    window.move(primary->geometry().center()
                - QPoint((frame.right() - frame.left()) / 2, (frame.bottom() - frame.top()) / 2));
}

void WindowFrame::keepOnScreen()
{
    const QVector<QRect> screens = screenGeometries();
    const bool isUsersPlace = window.isVisible() && screens == knownScreens;
    knownScreens = screens;
    const QRect place = window.frameGeometry();
    const bool isWhole = std::any_of(screens.begin(), screens.end(), [&place](const QRect& screen) {
        return screen.contains(place);
    });
    if (!isUsersPlace && !isWhole)
        centre();
}
