#pragma once

#include <QGraphicsSceneMouseEvent>
#include <QObject>
#include <QPointF>
#include <QVector>

/// Takes the scene mouse events that an object gets, while it lives.
class SceneRecorder : public QObject
{
public:
    using Types = QVector<QEvent::Type>;

    explicit SceneRecorder(QObject* receiver) { receiver->installEventFilter(this); }

    Types types;
    QVector<QPointF> positions;
    bool leftOnly = true; ///< each has the left button, and no other

    bool eventFilter(QObject*, QEvent* event) override
    {
        const auto* scene = dynamic_cast<QGraphicsSceneMouseEvent*>(event);
        if (!scene)
            return false;
        types.append(event->type());
        positions.append(scene->scenePos());
        leftOnly =
            leftOnly && scene->button() == Qt::LeftButton && scene->buttons() == Qt::LeftButton;
        return true;
    }
};
