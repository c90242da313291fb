#pragma once

#include "engine/annotorasdkhelper.h"

#include <QObject>

class MainWindow;

/**
 * Hides the annotation application's toolbar while a calibration runs: from the moment at which
 * the view begins to load until the report that ends that, be it of success or of failure, or
 * until the program quits.
 */
class ToolbarControl : public QObject
{
    Q_OBJECT

public:
    /// Follows the view of @p window, which has one.
    ToolbarControl(MainWindow& window, QObject* parent);

private slots:
    void onLoadingChanged();
    void onQuit();

private:
    MainWindow& window;
    // One each: with a tool still running, a helper starts no other.
    AnnotoraSDKHelper hiding;
    AnnotoraSDKHelper showing;
    bool hidden = false;
};
