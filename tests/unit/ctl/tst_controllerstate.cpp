#include "ctl/controllerstate.h"
#include "settings/globalsettings.h"

#include <QJSEngine>
#include <QtTest>

namespace {

/// qml/status.js, which the main view uses.
class StatusScript
{
public:
    StatusScript()
    {
        QFile file(VIREON_SOURCE_DIR "/qml/status.js");
        if (!file.open(QIODevice::ReadOnly))
            qFatal("no script");
        const QString text = QString::fromUtf8(file.readAll()).remove(".pragma library");
        engine.evaluate("function QT_TR_NOOP(text) { return text; }");
        const QJSValue result = engine.evaluate(text);
        if (result.isError())
            qFatal("%s", qPrintable(result.toString()));
    }

    QJSValue report(int code, const QString& brand)
    {
        return engine.globalObject().property("report").call({code, brand});
    }

private:
    QJSEngine engine;
};

} // namespace

class TestControllerState : public QObject
{
    Q_OBJECT

private slots:
    void textsAreThoseOfTheView_data();
    void textsAreThoseOfTheView();
    void jsonTellsTheStateOfARunningOneAlone();
};

void TestControllerState::textsAreThoseOfTheView_data()
{
    QTest::addColumn<int>("brand");
    QTest::addColumn<QString>("code");
    QTest::newRow("plain") << 0 << "qor";
    QTest::newRow("remote pen") << 1 << "tal";
}

void TestControllerState::textsAreThoseOfTheView()
{
    QFETCH(int, brand);
    QFETCH(QString, code);
    GS::instance()->brand = brand;
    StatusScript script;
    for (int status = -120; status <= 40; ++status) {
        const ControllerState state {true, status, {}};
        const QJSValue report = script.report(status, code);
        const QString text = status == 2 ? "Loading..." : report.property("text").toString();
        QString plain = text;
        plain.replace("%1", "Vireon").replace("<br>", " ");
        QVERIFY2(state.text() == plain.simplified(), qPrintable(QString::number(status)));
        QVERIFY2(state.isReady() == report.property("ready").toBool(),
                 qPrintable(QString::number(status)));
    }
}

void TestControllerState::jsonTellsTheStateOfARunningOneAlone()
{
    const ControllerState gone;
    QCOMPARE(gone.toJson(), QByteArray("{\"running\":false,\"text\":\"Vireon is not running.\"}"));
    const ControllerState ready {true, 1, 2};
    QCOMPARE(ready.toJson(),
             QByteArray("{\"calibrated\":true,\"firmware\":2,\"ready\":true,\"running\":true,"
                        "\"status\":1,\"text\":\"Started and ready\"}"));
}

QTEST_GUILESS_MAIN(TestControllerState)
#include "tst_controllerstate.moc"
