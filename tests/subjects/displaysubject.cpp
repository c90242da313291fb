// displaysubject: watches the screens. Prints "ready", then "changed WIDTH HEIGHT MS" for each
// signal, MS being the time since the start of the watcher. Lines on standard input: "rates" is
// answered with "rates MINIMUM OPTIMUM", "block MS" with "blocked" after the GUI thread has done
// nothing for so long, "delete" with whether instance() is the same before and after. The end of
// the input ends it.

#include "base/workerthread.h"
#include "display/resolutionchangenotifier.h"
#include "support/patience.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QSocketNotifier>
#include <QThread>

#include <cstdio>
#include <iostream>
#include <string>
#include <unistd.h>

static void obey(const QByteArray& line)
{
    if (line == "rates") {
        const int minimum = ResolutionChangeNotifier::getMinDispFrequency();
        std::printf("rates %d %d\n", minimum, ResolutionChangeNotifier::isOptimumFreq());
    } else if (line.startsWith("block ")) {
        QThread::msleep(line.mid(6).toULong());
        std::puts("blocked");
    } else if (line == "delete") {
        const auto* before = ResolutionChangeNotifier::instance();
        delete ResolutionChangeNotifier::instance();
        std::printf("same %d\n", ResolutionChangeNotifier::instance() == before);
    }
    std::fflush(stdout);
}

int main(int argc, char* argv[])
{
    const QApplication app(argc, argv);
    QElapsedTimer timer;
    timer.start();
    QObject::connect(ResolutionChangeNotifier::instance(),
                     &ResolutionChangeNotifier::resolutionChanged, &app,
                     [&timer](int width, int height) {
                         std::printf("changed %d %d %lld\n", width, height,
                                     static_cast<long long>(timer.elapsed()));
                         std::fflush(stdout);
                     });
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &app, [] {
        std::string line;
        if (std::getline(std::cin, line)) {
            obey(QByteArray::fromStdString(line));
        } else {
            QCoreApplication::quit();
        }
    });
    std::puts("ready");
    std::fflush(stdout);
    QCoreApplication::exec();
    WorkerThread::stopAll();
    return WorkerThread::waitForAll(patienceMs) ? 0 : 1;
}
