// bench-logview [LINES [SECONDS]]: a thread adds LINES lines (100000) in SECONDS (10) to the log
// window, which is shown, and scrolled and searched meanwhile. Says for how long the GUI thread was
// held up at most, by the clock and, for a busy machine, by its own processor time. Needs a
// display, or QT_QPA_PLATFORM=offscreen.

#include "ui/logview.h"
#include "app/resources.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QQuickWindow>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <thread>

namespace {

void append(LogView& view, int lines, int seconds)
{
    const auto begin = std::chrono::steady_clock::now();
    const auto step = std::chrono::duration<double>(seconds) / lines;
    for (int i = 0; i < lines; ++i) {
        view.append(
            QString("21.11.2026 07:50:00: Debug: line %1 of many (file.cpp:12, f())").arg(i));
        std::this_thread::sleep_until(begin + step * (i + 1));
    }
}

/// The processor time of this thread.
qint64 ownCpuNs()
{
    timespec time {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<qint64>(time.tv_sec) * 1000000000 + time.tv_nsec;
}

/// What a user does now and then.
void useIt(LogView& view, int turn)
{
    if (turn % 3 == 0)
        QMetaObject::invokeMethod(&view, "scroll", Q_ARG(int, -500));
    else if (turn % 3 == 1)
        QMetaObject::invokeMethod(&view, "search", Q_ARG(QString, "not there"));
    else
        QMetaObject::invokeMethod(&view, "jump", Q_ARG(bool, true));
}

} // namespace

int main(int argc, char* argv[])
{
    QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software);
    const QApplication app(argc, argv);
    initResources();
    const QStringList arguments = QApplication::arguments();
    const int lines = arguments.size() > 1 ? arguments[1].toInt() : 100000;
    const int seconds = arguments.size() > 2 ? arguments[2].toInt() : 10;
    LogView view({}, nullptr);
    view.open();

    QElapsedTimer sinceLast;
    qint64 lastCpuNs = 0;
    qint64 longestNs = 0;
    qint64 longestCpuNs = 0;
    QTimer pulse;
    QObject::connect(&pulse, &QTimer::timeout, [&] {
        const qint64 cpuNs = ownCpuNs();
        if (sinceLast.isValid()) {
            longestNs = std::max(longestNs, sinceLast.nsecsElapsed());
            longestCpuNs = std::max(longestCpuNs, cpuNs - lastCpuNs);
        }
        lastCpuNs = cpuNs;
        sinceLast.start();
    });
    int turn = 0;
    QTimer user;
    QObject::connect(&user, &QTimer::timeout, [&] { useIt(view, turn++); });
    // What the window's first picture costs is no part of it.
    QTimer::singleShot(500, [&] { pulse.start(0); });
    user.start(300);
    std::thread writer(append, std::ref(view), lines, seconds);
    QTimer::singleShot(1000 * seconds + 500, &QCoreApplication::quit);
    QApplication::exec();
    writer.join();
    std::printf("%d lines in %d s: the GUI thread was held up for %.1f ms at most, for %.1f ms by "
                "its own time\n",
                lines, seconds, static_cast<double>(longestNs) / 1e6,
                static_cast<double>(longestCpuNs) / 1e6);
    return 0;
}
