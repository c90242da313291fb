// bench-mailbox [COUNT]: a sender process puts COUNT commands (10000 if not given) into the
// mailbox of this process, each as soon as the last one's file has disappeared. Says how many
// arrived and how long they took; exits 0 when all came, once each and in order.

#include "base/workerthread.h"
#include "ipc/ipclistener.h"
#include "settings/globalsettings.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <ctime>
#include <vector>

namespace {

// The commands "0" to "9" in turn, so that one lost or doubled breaks the sequence.
const std::vector<int> digitCodes {16, 110, 111, 112, 21, 22, 23, 24, 17, 113};

char digitOf(int number)
{
    return static_cast<char>('0' + number % 10);
}

qint64 clockNs()
{
    timespec now {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return qint64 {now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

/// The sender process. It prints when it had written each.
int sendCommands(const QString& path, int count)
{
    for (int i = 0; i < count; ++i) {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || !file.putChar(digitOf(i)))
            return 1;
        file.close();
        std::printf("%lld\n", clockNs());
        while (QFile::exists(path))
            QThread::usleep(200);
    }
    return 0;
}

std::atomic<bool> loopHasRead {false};

/// Instead of the log: an empty command file that was read tells that the loop is past its start,
/// where a command would count as a left-over.
void watchLog(QtMsgType, const QMessageLogContext&, const QString& text)
{
    if (text.startsWith("ipc read:"))
        loopHasRead = true;
}

/// Of the commands that came in order.
void tellTimes(QProcess& sender, const std::vector<qint64>& arrivals)
{
    std::vector<double> times;
    for (const qint64 arrival : arrivals) {
        const QByteArray written = sender.readLine();
        if (!written.isEmpty())
            times.push_back(static_cast<double>(arrival - written.trimmed().toLongLong()) / 1e6);
    }
    if (times.empty())
        return;
    std::sort(times.begin(), times.end());
    std::printf("from the writing to the signal: median %.1f ms, 99th percentile %.1f ms, "
                "longest %.1f ms\n",
                times[times.size() / 2], times[times.size() * 99 / 100], times.back());
}

int judge(const std::vector<int>& codes, int count, qint64 elapsedMs)
{
    int inOrder = 0;
    while (inOrder < std::min(count, static_cast<int>(codes.size()))
           && codes[static_cast<std::size_t>(inOrder)]
               == digitCodes[static_cast<std::size_t>(inOrder % 10)])
        ++inOrder;
    std::printf("sent %d, received %zu, the first %d in order; %.1f s, %.1f ms each\n", count,
                codes.size(), inOrder, static_cast<double>(elapsedMs) / 1000.0,
                static_cast<double>(elapsedMs) / count);
    return inOrder == count && codes.size() == static_cast<std::size_t>(count) ? 0 : 1;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    if (arguments.size() == 4 && arguments[1] == "--send")
        return sendCommands(arguments[2], arguments[3].toInt());

    const int count = arguments.size() > 1 ? arguments[1].toInt() : 10000;
    qInstallMessageHandler(watchLog);
    const QTemporaryDir dir;
    GS::instance()->fifo1Path = dir.filePath("fifo1");
    GS::instance()->refifoPath = dir.filePath("refifo");
    std::vector<int> codes;
    std::vector<qint64> arrivals;
    QObject::connect(IpcListener::instance(), &IpcListener::received, &app,
                     [&codes, &arrivals](int id) {
                         codes.push_back(id);
                         arrivals.push_back(clockNs());
                     });

    QElapsedTimer timer;
    QProcess sender;
    QObject::connect(&sender, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), &app,
                     &QCoreApplication::exit);
    if (!QFile(GS::instance()->fifo1Path).open(QIODevice::WriteOnly))
        return 1;
    while (!loopHasRead)
        QThread::msleep(1);
    timer.start();
    sender.start(app.applicationFilePath(),
                 {"--send", dir.filePath("fifo1"), QString::number(count)});
    const int senderResult = QCoreApplication::exec();
    const qint64 elapsedMs = timer.elapsed();
    WorkerThread::stopAll();
    WorkerThread::waitForAll(10000);
    QCoreApplication::processEvents();
    delete IpcListener::instance();
    tellTimes(sender, arrivals);
    const int verdict = judge(codes, count, elapsedMs);
    return senderResult == 0 ? verdict : senderResult;
}
