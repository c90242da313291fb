#include "support/windowfixture.h"
#include "ui/viewroot.h"

#include <QQuickItem>
#include <QSignalSpy>

#include <functional>

/// The typed root against the view that ships: what is written is declared there, what is called
/// exists.
class TestViewRoot : public WindowFixture
{
    Q_OBJECT

private slots:
    void init();

    void everyWriteReachesADeclaredProperty_data();
    void everyWriteReachesADeclaredProperty();
    void everyStatusIsNotified_data();
    void everyStatusIsNotified();
    void everyCallReachesItsFunction();
    void withoutARootNothingHappens();
    void rootIsLookedForEachTime();
};

using Write = std::function<void(ViewRoot&)>;
Q_DECLARE_METATYPE(Write)

void TestViewRoot::init()
{
    WindowFixture::init();
    build();
    log->clear();
}

void TestViewRoot::everyWriteReachesADeclaredProperty_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<Write>("write");
    const auto add = [](const char* property, const QVariant& value, const Write& write) {
        QTest::addRow("%s, %s", property, qPrintable(value.toString())) << value << write;
    };
    for (const bool yes : {true, false}) {
        add("isGreaterEqualsWin8", yes, [=](ViewRoot& root) { root.setGreaterEqualsWin8(yes); });
        add("isTouch", yes, [=](ViewRoot& root) { root.setTouch(yes); });
        add("isAutoStart", yes, [=](ViewRoot& root) { root.setAutoStart(yes); });
        add("finishedLoading", yes, [=](ViewRoot& root) { root.setFinishedLoading(yes); });
        add("pauseCalib", yes, [=](ViewRoot& root) { root.setCalibrationPaused(yes); });
        add("isKeepACpuRunning", yes, [=](ViewRoot& root) { root.setKeepingACpuRunning(yes); });
        add("isLoading", yes, [=](ViewRoot& root) { root.setLoading(yes); });
        add("aspectRatioWarningShown", yes,
            [=](ViewRoot& root) { root.setAspectRatioWarningShown(yes); });
    }
    add("versionText", "9.8", [](ViewRoot& root) { root.setVersionText("9.8"); });
    add("status", int(StatusCalibrationFailed),
        [](ViewRoot& root) { root.setStatus(StatusCalibrationFailed); });
}

void TestViewRoot::everyWriteReachesADeclaredProperty()
{
    QFETCH(QVariant, value);
    QFETCH(Write, write);
    const QByteArray property = QByteArray(QTest::currentDataTag()).split(',').first();
    QQuickItem* item = view->rootObject();
    QVERIFY(item->metaObject()->indexOfProperty(property) >= 0);
    if (value.type() == QVariant::Bool)
        item->setProperty(property, !value.toBool()); // or it could have had the value before
    ViewRoot root(*view);
    write(root);
    QCOMPARE(item->property(property), value);
    QCOMPARE(item->dynamicPropertyNames(), QList<QByteArray>());
}

void TestViewRoot::everyStatusIsNotified_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("status");
    QTest::newRow("new") << int(StatusReady) << int(StatusNotReady);
    QTest::newRow("equal") << int(StatusReady) << int(StatusReady);
}

void TestViewRoot::everyStatusIsNotified()
{
    QFETCH(int, before);
    QFETCH(int, status);
    ViewRoot root(*view);
    root.setStatus(before);
    const QSignalSpy reports(view->rootObject(), SIGNAL(statusChanged()));
    root.setStatus(status);
    QCOMPARE(reports.size(), 1);
    QCOMPARE(root.status(), status);
}

void TestViewRoot::everyCallReachesItsFunction()
{
    ViewRoot root(*view);
    root.checkAspectRatio();
    QCOMPARE(log->count("aspect ratio changed to: "), 1);
    QCOMPARE(log->count("show freq warning popup"), 0);
    root.showFreqPopup();
    QCOMPARE(log->count("show freq warning popup"), 1);
    root.disableAcPopUp();
    int disabled = 0;
    for (const QQuickItem* item : view->rootObject()->findChildren<QQuickItem*>())
        disabled += item->property("isDisabled").toBool() ? 1 : 0;
    QCOMPARE(disabled, 1);
    QCOMPARE(toldOf("QMetaObject::invokeMethod"), QStringList()); // Qt knows no such method
}

void TestViewRoot::withoutARootNothingHappens()
{
    const QQuickView empty;
    ViewRoot root(empty);
    log->clear();
    QVERIFY(!root.exists());
    root.setGreaterEqualsWin8(true);
    root.setTouch(true);
    root.setVersionText("9.8");
    root.setAutoStart(true);
    root.setFinishedLoading(true);
    root.setCalibrationPaused(true);
    root.setKeepingACpuRunning(true);
    root.setLoading(true);
    root.setAspectRatioWarningShown(true);
    root.setStatus(StatusReady);
    root.setStatus(StatusUnknown); // equal to what it tells
    root.checkAspectRatio();
    root.showFreqPopup();
    root.disableAcPopUp();
    QCOMPARE(root.status(), int(StatusUnknown));
    for (const LogRecorder::Line& line : log->lines())
        QVERIFY2(line.type == QtDebugMsg, qPrintable(line.text));
}

void TestViewRoot::rootIsLookedForEachTime()
{
    QQuickView other;
    const ViewRoot root(other);
    QVERIFY(!root.exists());
    other.setSource(QUrl("qrc:/qml/Checkbox.qml"));
    QVERIFY(other.rootObject());
    QVERIFY(root.exists());
    other.setSource(QUrl());
    QVERIFY(!root.exists());
}

int main(int argc, char* argv[])
{
    runWindowTest<TestViewRoot>(argc, argv);
}

#include "tst_viewroot.moc"
