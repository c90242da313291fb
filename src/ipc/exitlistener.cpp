#include "ipc/exitlistener.h"

#include "base/lifeline.h"
#include "base/workerthread.h"
#include "ipc/runguard.h"
#include "settings/globalsettings.h"

#include <QDebug>

namespace {

constexpr unsigned long pollIntervalMs = 1000;

/// One for all listeners of the process; it is never deleted: a listener's last look may last
/// longer than the listener.
RunGuard* guardOfTheApplication()
{
    static auto* const guard = new RunGuard(GS::instance()->appName);
    return guard;
}

} // namespace

ExitListener* ExitListener::_instance = nullptr;

ExitListener* ExitListener::instance(QObject* parent)
{
    if (!_instance)
        _instance = new ExitListener(parent);
    return _instance;
}

ExitListener::ExitListener(QObject* parent)
    : QObject(parent)
    , runGuard(guardOfTheApplication())
    , lifeline(std::make_shared<Lifeline>())
{
    if (!WorkerThread::doWork(this, SLOT(listenToExit()), -1))
        lifeline->begin();
}

ExitListener::~ExitListener()
{
    lifeline->cut();
    keepListening = false;
    _instance = nullptr;
}

bool ExitListener::isAnotherRunning()
{
    return runGuard->isAnotherRunning();
}

void ExitListener::listenToExit()
{
    RunGuard* const guard = runGuard;
    const std::shared_ptr<Lifeline> line = lifeline;
    line->begin();
    do {
        if (const Lifeline::Hold here(*line); !here || !keepListening)
            return;
        WorkerThread::msleep(pollIntervalMs);
        if (WorkerThread::isStopping())
            return;
    } while (guard->isAnotherRunning());
    if (const Lifeline::Hold here(*line); here) {
        qDebug() << "Detected app is not running anymore";
        emit hasExited();
    }
}
