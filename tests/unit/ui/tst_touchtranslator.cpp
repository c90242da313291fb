#include "support/scenerecorder.h"
#include "ui/touchtranslator.h"

#include <QTest>
#include <QTouchEvent>
#include <QWindow>

/// Touch points on a view that does not lie at the origin.
class TestTouchTranslator : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void touchPointsBecomeSceneEvents_data();
    void touchPointsBecomeSceneEvents();
    void everyPointIsTranslatedInItsOrder();
    void otherEventTypesPress_data();
    void otherEventTypesPress();
    void eventsAreDeliveredAtOnce();
    void viewsPlaceIsLookedAtEachTime();

private:
    QWindow view;
    TouchTranslator translator {view};
};

const auto moved = QEvent::GraphicsSceneMouseMove;
const auto pressed = QEvent::GraphicsSceneMousePress;
const auto released = QEvent::GraphicsSceneMouseRelease;
const QPointF origin(30, 17);

void TestTouchTranslator::init()
{
    view.setGeometry(QRect(origin.toPoint(), QSize(400, 300)));
}

void TestTouchTranslator::touchPointsBecomeSceneEvents_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<SceneRecorder::Types>("events");
    QTest::newRow("pressed") << int(Qt::TouchPointPressed) << SceneRecorder::Types {moved, pressed};
    QTest::newRow("moved") << int(Qt::TouchPointMoved) << SceneRecorder::Types {moved};
    QTest::newRow("stationary") << int(Qt::TouchPointStationary) << SceneRecorder::Types {};
    QTest::newRow("released") << int(Qt::TouchPointReleased)
                              << SceneRecorder::Types {moved, released};
}

void TestTouchTranslator::touchPointsBecomeSceneEvents()
{
    QFETCH(int, state);
    QFETCH(SceneRecorder::Types, events);
    const auto pointState = Qt::TouchPointState(state);
    QTouchEvent::TouchPoint first(0);
    first.setState(pointState);
    first.setPos(QPointF(120, 45));
    QTouchEvent::TouchPoint second(1);
    second.setState(Qt::TouchPointStationary);
    const QTouchEvent event(QEvent::TouchUpdate, nullptr, Qt::NoModifier,
                            pointState | Qt::TouchPointStationary, {first, second});
    const SceneRecorder recorder(&view);
    translator.translate(event);
    QCOMPARE(recorder.types, events);
    QVERIFY(recorder.leftOnly);
    for (const QPointF& position : recorder.positions)
        QCOMPARE(position, QPointF(120, 45) - origin);
}

void TestTouchTranslator::everyPointIsTranslatedInItsOrder()
{
    QList<QTouchEvent::TouchPoint> points;
    for (const auto state :
         {Qt::TouchPointReleased, Qt::TouchPointStationary, Qt::TouchPointMoved}) {
        QTouchEvent::TouchPoint point(points.size());
        point.setState(state);
        point.setPos(QPointF(100 * points.size(), 7));
        points.append(point);
    }
    const QTouchEvent event(QEvent::TouchUpdate, nullptr, Qt::NoModifier, Qt::TouchPointMoved,
                            points);
    const SceneRecorder recorder(&view);
    translator.translate(event);
    QCOMPARE(recorder.types, SceneRecorder::Types({moved, released, moved}));
    QCOMPARE(recorder.positions,
             QVector<QPointF>(
                 {QPointF(0, 7) - origin, QPointF(0, 7) - origin, QPointF(200, 7) - origin}));
}

void TestTouchTranslator::otherEventTypesPress_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("event");
    QTest::newRow("press") << int(TouchTranslator::Press) << int(pressed);
    QTest::newRow("move") << int(TouchTranslator::Move) << int(moved);
    QTest::newRow("release") << int(TouchTranslator::Release) << int(released);
    QTest::newRow("3") << 3 << int(pressed);
    QTest::newRow("-1") << -1 << int(pressed);
}

void TestTouchTranslator::otherEventTypesPress()
{
    QFETCH(int, type);
    QFETCH(int, event);
    const SceneRecorder recorder(&view);
    translator.send(12.5, 7.25, type);
    QCOMPARE(recorder.types, SceneRecorder::Types {QEvent::Type(event)});
    QCOMPARE(recorder.positions, QVector<QPointF> {QPointF(12.5, 7.25) - origin});
    QVERIFY(recorder.leftOnly);
}

void TestTouchTranslator::eventsAreDeliveredAtOnce()
{
    const SceneRecorder recorder(&view);
    translator.send(0, 0, TouchTranslator::Press);
    QCOMPARE(recorder.types.size(), 1);
    QCoreApplication::processEvents();
    QCOMPARE(recorder.types.size(), 1);
}

void TestTouchTranslator::viewsPlaceIsLookedAtEachTime()
{
    const SceneRecorder recorder(&view);
    view.setPosition(3, 1);
    translator.send(10, 10, TouchTranslator::Press);
    QCOMPARE(recorder.positions, QVector<QPointF> {QPointF(7, 9)});
}

QTEST_MAIN(TestTouchTranslator)

#include "tst_touchtranslator.moc"
