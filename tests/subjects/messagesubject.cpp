// messagesubject levels|early|threads|fatal: logs through the handler, then prints what the window
// shows, each line after "window: ". The main window is a plain text box here: this program brings
// the two symbols of its own that the handler uses.

#include "app/messageoutput.h"
#include "ui/mainwindow.h"

#include <QApplication>
#include <QDebug>
#include <QPlainTextEdit>

#include <cstdio>
#include <sys/resource.h>
#include <thread>
#include <vector>

namespace {

QPlainTextEdit* box = nullptr;
alignas(MainWindow) unsigned char windowPlace[sizeof(MainWindow)];

} // namespace

std::atomic<MainWindow*> mainWindow {nullptr};

void MainWindow::appendText(QString text)
{
    QMetaObject::invokeMethod(
        box, [text] { box->appendPlainText(text); }, Qt::QueuedConnection);
}

// Each text holds the line that the context must name.
static void logEveryLevel()
{
    qDebug("debug at %d", __LINE__);
    qInfo("info at %d", __LINE__);
    qWarning("warning at %d", __LINE__);
    qCritical("critical at %d", __LINE__);
    qWarning("%s", "50%2 of %1, %3 %4 %10 \u00e4\u65e5");
    QMessageLogger().debug("debug without");
    QMessageLogger().info("info without");
    QMessageLogger().warning("warning without");
    QMessageLogger().critical("critical without");
    myMessageOutput(QtFatalMsg, QMessageLogContext(), "fatal without");
}

static void logFromThreads()
{
    constexpr int threadCount = 8;
    std::vector<std::thread> threads;
    threads.reserve(threadCount);
    for (int number = 0; number < threadCount; ++number) {
        threads.emplace_back([number] {
            for (int i = 0; i < 200; ++i)
                qDebug("thread %d message %d", number, i);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

static void die()
{
    const rlimit none {0, 0};
    setrlimit(RLIMIT_CORE, &none);
    qFatal("fatal at %d", __LINE__);
}

int main(int argc, char* argv[])
{
    const QApplication app(argc, argv);
    const QByteArray mode = argc > 1 ? argv[1] : "";
    QPlainTextEdit shown;
    shown.show();
    box = &shown;
    qInstallMessageHandler(myMessageOutput);
    if (mode == "early")
        logEveryLevel();
    mainWindow = reinterpret_cast<MainWindow*>(windowPlace);
    if (mode == "levels")
        logEveryLevel();
    if (mode == "threads")
        logFromThreads();
    if (mode == "fatal")
        die();
    mainWindow = nullptr;
    qInstallMessageHandler(nullptr);
    QCoreApplication::processEvents();
    if (!shown.toPlainText().isEmpty()) {
        const QStringList lines = shown.toPlainText().split('\n');
        for (const QString& line : lines)
            std::printf("window: %s\n", line.toUtf8().constData());
    }
    box = nullptr;
    return 0;
}
