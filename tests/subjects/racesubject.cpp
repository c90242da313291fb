// racesubject thread|worker|queued|deleted|none: two threads touch one field one after the other,
// and nothing but the last way orders them. It shows that the thread sanitizer, with the
// suppressions of this project, still reports each of the others.

#include "base/workerthread.h"
#include "support/patience.h"

#include <QCoreApplication>

#include <atomic>
#include <memory>
#include <thread>

class Planted : public QObject
{
    Q_OBJECT

public:
    Planted() { connect(this, &Planted::asked, this, &Planted::touch, Qt::QueuedConnection); }

    bool isTouched() const { return touched.load(std::memory_order_relaxed); }
    bool isDone() const { return done.load(std::memory_order_relaxed); }

public slots:
    void touch()
    {
        value = 1;
        touched.store(true, std::memory_order_relaxed);
    }

    void touchAgain()
    {
        while (!isTouched()) { }
        value = 2;
        done.store(true, std::memory_order_relaxed);
    }

    /// The event loop's thread is the first one here.
    void askAndTouchAgain()
    {
        emit asked();
        touchAgain();
    }

    void touchInOrder()
    {
        value = 1;
        touched.store(true, std::memory_order_release);
    }

    void touchAgainInOrder()
    {
        while (!touched.load(std::memory_order_acquire)) { }
        value = 2;
    }

signals:
    void asked();

private:
    int value = 0;
    // Apart from the field: the sanitizer remembers a few accesses only of each eight bytes.
    alignas(8) std::atomic<bool> touched {false};
    std::atomic<bool> done {false};
};

int main(int argc, char* argv[])
{
    const QCoreApplication app(argc, argv);
    auto planted = std::make_unique<Planted>();
    const QByteArray way = argc > 1 ? argv[1] : "";
    if (way == "thread") {
        std::thread other([&] { planted->touch(); });
        planted->touchAgain();
        other.join();
    } else if (way == "worker") {
        WorkerThread::doWork(planted.get(), SLOT(touch()), -1);
        planted->touchAgain();
    } else if (way == "queued") {
        WorkerThread::doWork(planted.get(), SLOT(askAndTouchAgain()), -1);
        while (!planted->isDone())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
    } else if (way == "deleted") {
        WorkerThread::doWork(planted.get(), SLOT(touch()), -1);
        while (!planted->isTouched()) { }
        planted.reset();
    } else {
        WorkerThread::doWork(planted.get(), SLOT(touchInOrder()), -1);
        planted->touchAgainInOrder();
    }
    return WorkerThread::waitForAll(patienceMs) ? 0 : 1;
}

#include "racesubject.moc"
