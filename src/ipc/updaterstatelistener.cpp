#include "ipc/updaterstatelistener.h"

#include "base/lifeline.h"
#include "base/workerthread.h"

#include <QDebug>
#include <QFile>
#include <QSharedMemory>

#include <cstdint>
#include <cstring>

namespace {

constexpr unsigned long pollIntervalMs = 1000;

enum UpdaterState : std::int32_t { NotNeeded = -1, Unknown = 0, InProgress = 1, Busy = 2 };

/// Attaching without a key file fails, but makes and removes a lock meanwhile that an updater which
/// is just starting may be using.
bool attachIfPresent(QSharedMemory& memory)
{
    return memory.isAttached() || (QFile::exists(memory.nativeKey()) && memory.attach());
}

/// To be called under the segment's lock.
std::int32_t readState(const QSharedMemory& memory)
{
    std::int32_t state = Unknown;
    if (memory.size() >= static_cast<int>(sizeof state))
        std::memcpy(&state, memory.constData(), sizeof state);
    return state;
}

} // namespace

UpdaterStateListener::UpdaterStateListener(QString key)
    : sharedMemory(std::make_shared<QSharedMemory>())
    , lifeline(std::make_shared<Lifeline>())
{
    qDebug() << "update listener " << key;
    sharedMemory->setKey(key);
    keepListening = true;
    if (!WorkerThread::doWork(this, SLOT(listenToUpdateProcess()), -1))
        lifeline->begin();
}

UpdaterStateListener::~UpdaterStateListener()
{
    lifeline->cut();
}

void UpdaterStateListener::listenToUpdateProcess()
{
    const std::shared_ptr<QSharedMemory> memory = sharedMemory;
    const std::shared_ptr<Lifeline> line = lifeline;
    line->begin();
    const auto isWanted = [this, &line] {
        const Lifeline::Hold here(*line);
        return here && keepListening && !WorkerThread::isStopping();
    };
    bool seen = false;
    while (isWanted()) {
        WorkerThread::msleep(pollIntervalMs);
        if (WorkerThread::isStopping())
            return;
        if (attachIfPresent(*memory)) {
            qDebug() << "updater is running now";
            if (memory->lock()) {
                if (const Lifeline::Hold here(*line); here)
                    actOn(readState(*memory));
                memory->unlock();
            }
            memory->detach();
            seen = true;
        } else if (seen) {
            // The updater has gone.
            if (const Lifeline::Hold here(*line); here)
                keepListening = false;
            return;
        }
    }
}

void UpdaterStateListener::actOn(int updaterState)
{
    switch (updaterState) {
    case InProgress:
        qDebug() << "update is in progress";
        emit updateInProcess();
        break;
    case Busy:
        qDebug() << "wait updater is doing something";
        break;
    case NotNeeded:
        qDebug() << "updater has quit or will not need vireon to quit";
        keepListening = false;
        break;
    default:
        break;
    }
}
