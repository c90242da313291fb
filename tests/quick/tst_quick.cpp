#include "app/resources.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QtQuickTest>

/**
 * Stands in for the controller: remembers each call of the view, in order.
 */
class FakeController : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QStringList calls MEMBER calls NOTIFY callsChanged)
    Q_PROPERTY(QString brandCode MEMBER brandCode NOTIFY brandCodeChanged)

public:
    QStringList calls;
    QString brandCode = QStringLiteral("qor");

    Q_INVOKABLE QString appName() const { return QStringLiteral("Vireon"); }
    Q_INVOKABLE QString brand() const { return brandCode; }
    Q_INVOKABLE void startManualCalibration() { note(QStringLiteral("manual")); }
    Q_INVOKABLE void startTouchCalibration() { note(QStringLiteral("touch")); }
    Q_INVOKABLE void startAutoCalibration() { note(QStringLiteral("auto")); }

signals:
    void callsChanged();
    void brandCodeChanged();

private:
    void note(const QString& call)
    {
        calls.append(call);
        emit callsChanged();
    }
};

/// Registers the program's views and the stand-in before the tests are loaded.
class Setup : public QObject
{
    Q_OBJECT

public slots:
    void applicationAvailable() { initResources(); }

    void qmlEngineAvailable(QQmlEngine* engine)
    {
        engine->rootContext()->setContextProperty(QStringLiteral("mainwindow"), &controller);
        engine->rootContext()->setContextProperty(QStringLiteral("operatingSystem"),
                                                  QStringLiteral("linux"));
    }

private:
    FakeController controller;
};

QUICK_TEST_MAIN_WITH_SETUP(quick, Setup)
#include "tst_quick.moc"
