#include "ui/touchtranslator.h"

#include <QCoreApplication>
#include <QGraphicsSceneMouseEvent>
#include <QTouchEvent>
#include <QWindow>

namespace {

QEvent::Type eventType(int type)
{
    switch (type) {
    case TouchTranslator::Move:
        return QEvent::GraphicsSceneMouseMove;
    case TouchTranslator::Release:
        return QEvent::GraphicsSceneMouseRelease;
    default:
        return QEvent::GraphicsSceneMousePress;
    }
}

} // namespace

TouchTranslator::TouchTranslator(QWindow& itsView)
    : view(itsView)
{
}

void TouchTranslator::translate(const QTouchEvent& ev)
{
    for (const QTouchEvent::TouchPoint& point : ev.touchPoints()) {
        const QPointF position = point.pos();
        switch (point.state()) {
        case Qt::TouchPointMoved:
            send(position.x(), position.y(), Move);
            break;
        case Qt::TouchPointPressed:
            send(position.x(), position.y(), Move);
            send(position.x(), position.y(), Press);
            break;
        case Qt::TouchPointReleased:
            send(position.x(), position.y(), Move);
            send(position.x(), position.y(), Release);
            break;
        case Qt::TouchPointStationary:
            break;
        }
    }
}

void TouchTranslator::send(double x, double y, int type)
{
    QGraphicsSceneMouseEvent sceneEvent(eventType(type));
    sceneEvent.setScenePos(QPointF(x - view.geometry().x(), y - view.geometry().y()));
    sceneEvent.setButton(Qt::LeftButton);
    sceneEvent.setButtons(Qt::LeftButton);
    QCoreApplication::sendEvent(&view, &sceneEvent);
}
