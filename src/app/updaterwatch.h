#pragma once

#include "ipc/updaterstatelistener.h"

#include <QObject>

class MainWindow;

/// Quits the program, once and with a message first, when the updater is at work.
class UpdaterWatch : public QObject
{
    Q_OBJECT

public:
    /// Starts to follow the updater (GS::updaterName). @p window must outlive it.
    UpdaterWatch(MainWindow& window, QObject* parent);

private:
    void quitOnce();

    MainWindow& window;
    UpdaterStateListener updater;
    bool quitting = false;
};
