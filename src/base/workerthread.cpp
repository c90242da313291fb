#include "base/workerthread.h"

#include <QDeadlineTimer>
#include <QDebug>
#include <QThread>

#include <atomic>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace {

std::atomic<bool> stopping {false};
std::atomic<int> runningSlots {0};

/// Becomes readable for good when stopAll() is called, so that one poll() is both the sleep and
/// the wait for the end. It is made on first use and lives as long as the process.
int stopEvent()
{
    static const int descriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    return descriptor;
}

} // namespace

WorkerThread::WorkerThread(int workArg)
    : arg(workArg)
{
}

bool WorkerThread::doWork(QObject* receiver, const char* member, int arg)
{
    qDebug() << "Do work";
    auto* thread = new QThread;
    auto* worker = new WorkerThread(arg);
    worker->moveToThread(thread);
    const bool connected =
        connect(worker, SIGNAL(startingToWork(int)), receiver, member, Qt::DirectConnection);
    connect(thread, &QThread::started, worker, &WorkerThread::run);
    // By name: nothing of ours is then shared by the two threads beyond the worker's end.
    connect(worker, SIGNAL(finished()), thread, SLOT(quit()));
    connect(worker, &WorkerThread::finished, worker, &QObject::deleteLater);
    connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    // Counted here and not in run(): waitForAll() must not miss a thread that is about to start.
    ++runningSlots;
    thread->start(QThread::InheritPriority);
    if (thread->isRunning() || thread->isFinished())
        return connected;
    --runningSlots;
    delete worker;
    delete thread;
    return false;
}

void WorkerThread::run()
{
    qDebug() << "Thread run";
    // Pairs with the count in doWork(): all that its thread did before is seen here, also by tools
    // that cannot look into Qt's own hand-over.
    static_cast<void>(runningSlots.load());
    emit startingToWork(arg);
    emit finished();
    --runningSlots;
}

void WorkerThread::msleep(unsigned long ms)
{
    QDeadlineTimer deadline(static_cast<qint64>(ms), Qt::PreciseTimer);
    while (!isStopping() && !deadline.hasExpired()) {
        pollfd event {stopEvent(), POLLIN, 0};
        const auto left = static_cast<int>(qMin<qint64>(deadline.remainingTime(), 60000));
        poll(&event, 1, left);
    }
}

void WorkerThread::stopAll()
{
    stopping = true;
    const quint64 one = 1;
    [[maybe_unused]] const ssize_t written = write(stopEvent(), &one, sizeof one);
}

bool WorkerThread::isStopping()
{
    return stopping;
}

bool WorkerThread::waitForAll(int budgetMs)
{
    const QDeadlineTimer deadline(budgetMs);
    while (runningSlots > 0 && !deadline.hasExpired())
        QThread::msleep(1);
    return runningSlots == 0;
}
