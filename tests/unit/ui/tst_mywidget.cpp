#include "ui/mywidget.h"

#include <QCloseEvent>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>

class TestMyWidget : public QObject
{
    Q_OBJECT

private slots:
    void metaObjectIsOneSignal();
    void isATopLevelWindow();
    void hasNoMaximiseButton();
    void closingIsAnnouncedAndRefused();
    void receiverDecidesWhatHappens();
    void receiverCannotAcceptTheClose();
};

void TestMyWidget::metaObjectIsOneSignal()
{
    const QMetaObject& meta = MyWidget::staticMetaObject;
    QCOMPARE(meta.className(), "MyWidget");
    QCOMPARE(meta.superClass(), &QWidget::staticMetaObject);
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
    QCOMPARE(meta.method(meta.methodOffset()).methodSignature(),
             QByteArray("closeWindow(QCloseEvent*)"));
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
}

void TestMyWidget::isATopLevelWindow()
{
    const MyWidget widget;
    QVERIFY(!widget.parent());
    QVERIFY(widget.isWindow());
    QVERIFY(widget.isHidden());
}

void TestMyWidget::hasNoMaximiseButton()
{
    const MyWidget widget;
    QVERIFY(!(widget.windowFlags() & Qt::WindowMaximizeButtonHint));
    QWidget plain;
    plain.setWindowFlags(plain.windowFlags());
    // Nothing but that button differs from any other window.
    QCOMPARE(widget.windowFlags() | Qt::WindowMaximizeButtonHint,
             plain.windowFlags() | Qt::WindowMaximizeButtonHint);
}

void TestMyWidget::closingIsAnnouncedAndRefused()
{
    MyWidget widget;
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    QSignalSpy closings(&widget, &MyWidget::closeWindow);
    QVERIFY(!widget.close());
    QCOMPARE(closings.size(), 1);
    QVERIFY(widget.isVisible());
    QVERIFY(!widget.windowHandle()->close());
    QCOMPARE(closings.size(), 2);
    QVERIFY(widget.isVisible());
}

void TestMyWidget::receiverDecidesWhatHappens()
{
    MyWidget widget;
    widget.show();
    connect(&widget, &MyWidget::closeWindow, &widget, &QWidget::hide);
    QVERIFY(!widget.close());
    QVERIFY(widget.isHidden());
    widget.show();
    QVERIFY(widget.isVisible());
}

void TestMyWidget::receiverCannotAcceptTheClose()
{
    MyWidget widget;
    widget.show();
    QCloseEvent* seen = nullptr;
    connect(&widget, &MyWidget::closeWindow, [&seen](QCloseEvent* ev) {
        seen = ev;
        ev->accept();
    });
    QCloseEvent event;
    QCoreApplication::sendEvent(&widget, &event);
    QCOMPARE(seen, &event);
    QVERIFY(!event.isAccepted());
    QVERIFY(widget.isVisible());
}

QTEST_MAIN(TestMyWidget)
#include "tst_mywidget.moc"
