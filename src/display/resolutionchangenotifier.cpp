#include "display/resolutionchangenotifier.h"

#include "base/lifeline.h"
#include "base/workerthread.h"

#include <QApplication>
#include <QDebug>
#include <QDesktopWidget>
#include <QScreen>
#include <QSemaphore>

#include <algorithm>
#include <cstdio>

namespace {

constexpr unsigned long pollIntervalMs = 1000;
constexpr int answerLimitMs = 200;
constexpr int answerSliceMs = 20; // how soon a waiting worker sees that the program ends
constexpr int optimumFrequencyHz = 50; // rates above this one are good enough

} // namespace

/// What the poll asks the GUI thread each round. One object for all rounds, connected before the
/// thread starts; an answer that comes too late is dropped by the next round.
class ResolutionChangeNotifier::SizeQuestion : public QObject
{
    Q_OBJECT

public:
    SizeQuestion()
    {
        connect(this, &SizeQuestion::asked, this, &SizeQuestion::answer, Qt::QueuedConnection);
    }

    /// The primary screen's full size; empty without an answer in time.
    QSize ask()
    {
        ready.acquire(ready.available());
        emit asked();
        for (int waited = 0; waited < answerLimitMs && !WorkerThread::isStopping();
             waited += answerSliceMs) {
            if (ready.tryAcquire(1, answerSliceMs))
                return answered;
        }
        return {};
    }

signals:
    void asked();

private:
    void answer()
    {
        const QScreen* primary = QGuiApplication::primaryScreen();
        answered = primary ? primary->size() : QSize();
        ready.release();
    }

    QSemaphore ready;
    std::atomic<QSize> answered {QSize()};
};

ResolutionChangeNotifier* ResolutionChangeNotifier::_instance = nullptr;

ResolutionChangeNotifier* ResolutionChangeNotifier::instance(QObject* parent)
{
    if (!_instance)
        _instance = new ResolutionChangeNotifier(parent);
    return _instance;
}

ResolutionChangeNotifier::ResolutionChangeNotifier(QObject* parent)
    : QObject(parent)
    , sizeQuestion(new SizeQuestion, [](SizeQuestion* question) { question->deleteLater(); })
    , lifeline(std::make_shared<Lifeline>())
{
    if (const QScreen* primary = QGuiApplication::primaryScreen())
        lastSize = primary->availableSize();
    logScreens();
    if (!WorkerThread::doWork(this, SLOT(listenToResolution()), -1))
        lifeline->begin();
}

ResolutionChangeNotifier::~ResolutionChangeNotifier()
{
    lifeline->cut();
    std::puts("resolution changed notifier was deleted");
    keepListening = false;
}

void ResolutionChangeNotifier::logScreens() const
{
    const QSize used = lastSize;
    qDebug() << "used width: " << used.width() << " height: " << used.height();
    if (const QScreen* primary = QGuiApplication::primaryScreen()) {
        qDebug() << " primary screen freq: " << primary->refreshRate()
                 << " width: " << primary->geometry().width()
                 << " height: " << primary->geometry().height();
    }
    const QList<QScreen*> screens = QGuiApplication::screens();
    qDebug() << "screen info numScreen: " << screens.size();
    for (const QScreen* screen : screens) {
        qDebug() << "freq: " << screen->refreshRate() << " width: " << screen->geometry().width()
                 << " height: " << screen->geometry().height();
    }
    qDebug() << "QApplication::desktop()->width(): " << QApplication::desktop()->width();
    qDebug() << "QApplication::desktop()->height(): " << QApplication::desktop()->height();
}

void ResolutionChangeNotifier::listenToResolution()
{
    const std::shared_ptr<SizeQuestion> question = sizeQuestion;
    const std::shared_ptr<Lifeline> line = lifeline;
    line->begin();
    const auto isWanted = [this, &line] {
        const Lifeline::Hold here(*line);
        return here && keepListening && !WorkerThread::isStopping();
    };
    while (isWanted()) {
        WorkerThread::msleep(pollIntervalMs);
        if (!isWanted())
            return;
        // Not under a hold: the GUI thread, which is to answer, may be deleting this.
        const QSize size = question->ask();
        if (const Lifeline::Hold here(*line); here && keepListening)
            compareWith(size);
    }
}

void ResolutionChangeNotifier::compareWith(const QSize& size)
{
    const QSize old = lastSize;
    if (size.isEmpty() || size == old)
        return;
    qDebug() << "Resolution changed, notify. Old vs new:" << old.width() << "/" << old.height()
             << " and " << size.width() << "/" << size.height();
    lastSize = size;
    emit resolutionChanged(size.width(), size.height());
}

int ResolutionChangeNotifier::getMinDispFrequency()
{
    const QScreen* primary = QGuiApplication::primaryScreen();
    if (!primary)
        return 0;
    const QList<QScreen*> screens = QGuiApplication::screens();
    int minimum = static_cast<int>(primary->refreshRate());
    for (const QScreen* screen : screens)
        minimum = std::min(minimum, static_cast<int>(screen->refreshRate()));
    qDebug() << "primaryDispFrequency refreshRate: " << primary->refreshRate()
             << " numScreens: " << screens.size();
    qDebug() << "minScreenFreq refreshRate: " << minimum;
    return minimum;
}

bool ResolutionChangeNotifier::isOptimumFreq()
{
    const bool optimum = getMinDispFrequency() > optimumFrequencyHz;
    qDebug() << " optimumDispFrequency: " << (optimum ? "true" : "false");
    return optimum;
}

#include "resolutionchangenotifier.moc"
