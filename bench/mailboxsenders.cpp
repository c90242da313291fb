// bench-mailbox-senders [COUNT [SENDERS]]: several processes (4 if not given) put COUNT commands
// (10000) into the mailbox of this process, in the way of vireonctl. Says how many were lost and
// doubled, and how long one took from the sender's call, the wait for its turn included, until
// this process acted on it; exits 0 when each was acted on once.

#include "base/workerthread.h"
#include "ipc/ipclistener.h"
#include "ipc/mailboxsender.h"
#include "settings/globalsettings.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <memory>
#include <vector>

namespace {

constexpr int sendLimitMs = 60000;

// Each sender has commands of its own, in turn, so that one lost or doubled breaks its sequence.
constexpr int wordsPerSender = 4;
constexpr char words[][wordsPerSender + 1] = {"0123", "4567", "abcd", "efgh", "ijkl", "mnop"};
constexpr int codes[][wordsPerSender] = {{16, 110, 111, 112}, {21, 22, 23, 24},  {1, 108, 107, 104},
                                         {7, 4, 105, 8},      {9, 101, 14, 100}, {0, 109, 103, 6}};

/// Of a clock that all processes share.
qint64 nowUs()
{
    const auto time = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::microseconds>(time).count();
}

/// A sender's process: prints when each call began.
int sendCommands(const QString& dir, int sender, int count)
{
    MailboxSender mailbox(dir + "/fifo1", dir + "/refifo");
    for (int i = 0; i < count; ++i) {
        const qint64 begin = nowUs();
        if (mailbox.send(words[sender][i % wordsPerSender], sendLimitMs)
            != MailboxSender::Result::Done)
            return 1;
        std::printf("%lld\n", static_cast<long long>(begin));
    }
    return 0;
}

std::atomic<bool> loopHasRead {false};

void watchLog(QtMsgType, const QMessageLogContext&, const QString& text)
{
    if (text.startsWith("ipc read:"))
        loopHasRead = true;
}

/// What one sender's commands came to.
struct Sequence
{
    std::vector<qint64> actedUs;
    int broken = 0; ///< commands that were not the next ones of the sender
};

void take(std::vector<Sequence>& sequences, int code)
{
    for (std::size_t sender = 0; sender < sequences.size(); ++sender) {
        const int* const begin = codes[sender];
        const int* const found = std::find(begin, begin + wordsPerSender, code);
        if (found == begin + wordsPerSender)
            continue;
        Sequence& sequence = sequences[sender];
        if (found - begin != static_cast<int>(sequence.actedUs.size() % wordsPerSender))
            ++sequence.broken;
        sequence.actedUs.push_back(nowUs());
    }
}

/// Returns when all have ended.
std::vector<std::unique_ptr<QProcess>> runSenders(const QString& dir, int count, int each)
{
    std::vector<std::unique_ptr<QProcess>> senders;
    int running = count;
    for (int sender = 0; sender < count; ++sender) {
        senders.push_back(std::make_unique<QProcess>());
        QProcess* process = senders.back().get();
        QObject::connect(process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished),
                         process, [&running] {
                             if (--running == 0)
                                 QCoreApplication::quit();
                         });
        process->start(QCoreApplication::applicationFilePath(),
                       {"--send", dir, QString::number(sender), QString::number(each)});
    }
    QCoreApplication::exec();
    return senders;
}

void printTimes(const char* what, std::vector<qint64> timesUs)
{
    if (timesUs.empty())
        return;
    std::sort(timesUs.begin(), timesUs.end());
    const auto at = [&timesUs](double part) {
        const auto index = static_cast<std::size_t>(part * static_cast<double>(timesUs.size() - 1));
        return static_cast<double>(timesUs[index]) / 1000.0;
    };
    std::printf("%s: median %.1f ms, 99th percentile %.1f ms, longest %.1f ms\n", what, at(0.5),
                at(0.99), at(1.0));
}

int judge(const std::vector<Sequence>& sequences, std::vector<std::unique_ptr<QProcess>>& senders,
          int each)
{
    int lost = 0;
    int doubled = 0;
    int broken = 0;
    std::vector<qint64> times;
    for (std::size_t sender = 0; sender < sequences.size(); ++sender) {
        const auto& acted = sequences[sender].actedUs;
        const int count = static_cast<int>(acted.size());
        lost += std::max(0, each - count);
        doubled += std::max(0, count - each);
        broken += sequences[sender].broken;
        const QList<QByteArray> lines = senders[sender]->readAllStandardOutput().split('\n');
        for (int i = 0; i < std::min(count, lines.size() - 1); ++i)
            times.push_back(acted[static_cast<std::size_t>(i)] - lines[i].toLongLong());
    }
    std::printf("%zu senders, %d commands each: %d lost, %d doubled, %d out of sequence\n",
                sequences.size(), each, lost, doubled, broken);
    printTimes("from the call to the act", times);
    return lost == 0 && doubled == 0 && broken == 0 ? 0 : 1;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    if (arguments.value(1) == "--send")
        return sendCommands(arguments.value(2), arguments.value(3).toInt(),
                            arguments.value(4).toInt());
    const int count = arguments.size() > 1 ? arguments[1].toInt() : 10000;
    const int senderCount = arguments.size() > 2 ? arguments[2].toInt() : 4;
    const int each = count / std::max(1, senderCount);

    qInstallMessageHandler(watchLog);
    const QTemporaryDir dir;
    GS::instance()->fifo1Path = dir.filePath("fifo1");
    GS::instance()->refifoPath = dir.filePath("refifo");
    std::vector<Sequence> sequences(static_cast<std::size_t>(senderCount));
    QObject::connect(IpcListener::instance(), &IpcListener::received, &app, [&sequences](int id) {
        take(sequences, id);
        IpcListener::instance()->writeDone();
    });
    // An empty command file that was read tells that the loop is past its start, where a command
    // would count as a left-over.
    if (!QFile(GS::instance()->fifo1Path).open(QIODevice::WriteOnly))
        return 1;
    while (!loopHasRead)
        QThread::msleep(1);
    QFile::remove(GS::instance()->fifo1Path);

    auto senders = runSenders(dir.path(), senderCount, each);
    WorkerThread::stopAll();
    WorkerThread::waitForAll(10000);
    delete IpcListener::instance();
    return judge(sequences, senders, each);
}
