#include "app/quitsequence.h"

#include "base/workerthread.h"
#include "engine/graceperiod.h"
#include "ipc/runguard.h"
#include "ui/mainwindow.h"

#include <QApplication>
#include <QTranslator>

#include <cstdio>
#include <unistd.h>

namespace {

constexpr int budgetMs = 500; // for all workers together

} // namespace

void QuitSequence::end(std::unique_ptr<QApplication> application, std::unique_ptr<RunGuard> guard,
                       std::unique_ptr<QTranslator> translator, int status)
{
    WorkerThread::stopAll();
    const bool alone = WorkerThread::waitForAll(budgetMs);
    // The application object takes the window along, and with it all that is in it.
    mainWindow.load()->setParent(nullptr);
    if (!alone) {
        static_cast<void>(translator.release());
        static_cast<void>(application.release());
    }
    translator.reset();
    guard.reset();
    application.reset();
    // Of the threads that are left nothing can be had once they are ended.
    std::fflush(nullptr);
    GracePeriod::begin();
    _exit(status);
}

void QuitSequence::leave(int status)
{
    std::fflush(nullptr);
    _exit(status);
}
