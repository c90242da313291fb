#include "resolutionchangenotifier.h"

#include "engine/workerthread.h"

#include <QApplication>
#include <QDebug>
#include <QDesktopWidget>
#include <QScreen>
#include <QSemaphore>

#include <algorithm>
#include <cstdio>
#include <memory>

namespace {

constexpr unsigned long pollIntervalMs = 1000;
constexpr int answerLimitMs = 200;
constexpr int answerSliceMs = 20; // how soon a waiting worker sees that the program ends
constexpr int optimumFrequencyHz = 50; // rates above this one are good enough

/// The GUI thread's answer; shared, since it may come after the worker has given up waiting.
struct SizeAnswer
{
    QSize size;
    QSemaphore ready;
};

} // namespace

ResolutionChangeNotifier* ResolutionChangeNotifier::_instance = nullptr;

ResolutionChangeNotifier* ResolutionChangeNotifier::instance(QObject* parent)
{
    if (!_instance)
        _instance = new ResolutionChangeNotifier(parent);
    return _instance;
}

ResolutionChangeNotifier::ResolutionChangeNotifier(QObject* parent)
    : QObject(parent)
{
    if (const QScreen* primary = QGuiApplication::primaryScreen()) {
        width = primary->availableSize().width();
        height = primary->availableSize().height();
    }
    logScreens();
    WorkerThread::doWork(this, SLOT(listenToResolution()), -1);
}

ResolutionChangeNotifier::~ResolutionChangeNotifier()
{
    std::puts("resolution changed notifier was deleted");
    *keepListening = false;
}

void ResolutionChangeNotifier::logScreens() const
{
    qDebug() << "used width: " << width.load() << " height: " << height.load();
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
    const auto listening = keepListening;
    while (*listening && !WorkerThread::isStopping()) {
        WorkerThread::msleep(pollIntervalMs);
        if (!*listening)
            return;
        const QSize size = askForScreenSize();
        if (!*listening || size.isEmpty() || size == QSize(width, height))
            continue;
        qDebug() << "Resolution changed, notify. Old vs new:" << width.load() << "/"
                 << height.load() << " and " << size.width() << "/" << size.height();
        width = size.width();
        height = size.height();
        emit resolutionChanged(size.width(), size.height());
    }
}

QSize ResolutionChangeNotifier::askForScreenSize()
{
    const auto answer = std::make_shared<SizeAnswer>();
    QMetaObject::invokeMethod(
        this,
        [answer] {
            if (const QScreen* primary = QGuiApplication::primaryScreen())
                answer->size = primary->size();
            answer->ready.release();
        },
        Qt::QueuedConnection);
    for (int waited = 0; waited < answerLimitMs && !WorkerThread::isStopping();
         waited += answerSliceMs) {
        if (answer->ready.tryAcquire(1, answerSliceMs))
            return answer->size;
    }
    return {};
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
