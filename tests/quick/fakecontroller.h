#pragma once

#include <QObject>
#include <QStringList>

/**
 * Stands in for the controller: remembers each call of the view, in order, and answers what the
 * test has set.
 */
class FakeController : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QStringList calls MEMBER calls NOTIFY changed)
    Q_PROPERTY(QString brandCode MEMBER brandCode NOTIFY changed)
    Q_PROPERTY(bool isStylusOnly MEMBER isStylusOnly NOTIFY changed)
    Q_PROPERTY(bool hasWarned MEMBER hasWarned NOTIFY changed)

public:
    QStringList calls;
    QString brandCode = QStringLiteral("qor");
    bool isStylusOnly = false;
    bool hasWarned = false; ///< of the aspect ratio, in this run or an earlier one

    Q_INVOKABLE QString appName() const { return QStringLiteral("Vireon"); }
    Q_INVOKABLE QString brand() const { return brandCode; }
    Q_INVOKABLE bool stylusOnly() const { return isStylusOnly; }
    Q_INVOKABLE bool aspectRatioWarningShown() const { return hasWarned; }
    Q_INVOKABLE bool setAspectRatioWarningShown(bool value)
    {
        hasWarned = value;
        note(value ? QStringLiteral("warned") : QStringLiteral("not warned"));
        return true;
    }
    Q_INVOKABLE bool setAcPopUpDisabled()
    {
        note(QStringLiteral("no advice"));
        return true;
    }
    Q_INVOKABLE void startManualCalibration() { note(QStringLiteral("manual")); }
    Q_INVOKABLE void startTouchCalibration() { note(QStringLiteral("touch")); }
    Q_INVOKABLE void startAutoCalibration() { note(QStringLiteral("auto")); }
    Q_INVOKABLE void toggleAutoStart() { note(QStringLiteral("autostart")); }
    Q_INVOKABLE void toggleKeepACpuAwake() { note(QStringLiteral("keep awake")); }
    Q_INVOKABLE void openSensorViewer() { note(QStringLiteral("sensor viewer")); }
    Q_INVOKABLE void offsetCorrection() { note(QStringLiteral("offset")); }
    Q_INVOKABLE void openLogWindow() { note(QStringLiteral("log window")); }
    Q_INVOKABLE void adaptWindowSize(int width, int height, double factor)
    {
        note(QStringLiteral("size %1x%2 %3").arg(width).arg(height).arg(factor));
    }

signals:
    void changed();

private:
    void note(const QString& call)
    {
        calls.append(call);
        emit changed();
    }
};

/// Stands in for the engine's supervisor: remembers the codes of the actions.
class FakeSdk : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QList<int> actions MEMBER actions NOTIFY changed)

public:
    QList<int> actions;

    Q_INVOKABLE void trigger(int action)
    {
        actions.append(action);
        emit changed();
    }

signals:
    void changed();
};
