// The mailbox with its consumer on: any command file is taken, unless its first line is empty, and
// those that hold a command of the window's, and no others, are carried out and have a reply.

#include "app/mailboxcommands.h"
#include "app/resources.h"
#include "engine/enginestatus.h"
#include "engine/statuslistener.h"
#include "fuzz/fuzzfile.h"
#include "ipc/ipclistener.h"
#include "ipc/mailboxcommand.h"
#include "settings/globalsettings.h"
#include "ui/looks.h"
#include "ui/mainwindow.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <cstdio>

namespace {

constexpr unsigned long longestSleepMs = 1;
constexpr int limitMs = 20000;
constexpr int mostTools = 8; // that run at a time
const QByteArray carriedOut = "mtap08sf56749vwhlzuqQ";

std::atomic<int> looks {0};
std::atomic<int> told {0};
std::atomic<int> toolsBegun {0};
std::atomic<int> toolsEnded {0};

void count(QtMsgType, const QMessageLogContext&, const QString& text)
{
    looks += text.startsWith("ipc read:") ? 1 : 0;
    toolsBegun += text.startsWith("Action:") ? 1 : 0;
    toolsEnded += text.startsWith("returned from") ? 1 : 0;
}

template <class Condition> void waitFor(Condition condition, const char* what)
{
    const QDeadlineTimer deadline(limitMs);
    while (!condition()) {
        require(!deadline.hasExpired(), what);
        QCoreApplication::processEvents();
        QThread::usleep(100);
    }
    QCoreApplication::processEvents();
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString firstLineOf(const QString& path)
{
    QFile file(path);
    require(file.open(QIODevice::ReadOnly), "the file opens");
    return MailboxCommand::readFirstLine(file);
}

/// The program as it is when its mailbox is on, its engine ready. Lives as long as the process.
struct Program
{
    explicit Program(const QString& directory)
        : window(startedIn(directory), QStringLiteral("Exit"), QStringLiteral("1.4.121"))
        , commands(window, nullptr)
    {
        QObject::connect(
            IpcListener::instance(), &IpcListener::received, &commands, [] { ++told; },
            Qt::DirectConnection);
        StatusListener::instance()->injectStatus(StatusReady);
    }

    /// To be called before there is a window; the window's first text.
    static QString startedIn(const QString& directory)
    {
        initResources();
        applyLooks();
        GS* settings = GS::instance();
        settings->fifo1Path = directory + "/fifo1";
        settings->refifoPath = directory + "/refifo";
        settings->penSettingsPath = (directory + "/pensettings.ini").toStdString();
        settings->mcCachePath = (directory + "/mcCache").toStdString();
        settings->userIniPath = (directory + "/user.ini").toStdString();
        return QStringLiteral("Open");
    }

    MainWindow window;
    MailboxCommands commands;
};

} // namespace

/// Nothing of the program is deleted at its end.
extern "C" const char* __asan_default_options()
{
    return "detect_leaks=0";
}

/// The linker gives these to whoever calls WorkerThread::msleep(): all loops run fast.
void sleepAsAsked(unsigned long ms) __asm__("__real__ZN12WorkerThread6msleepEm");
void sleepInstead(unsigned long ms) __asm__("__wrap__ZN12WorkerThread6msleepEm");
void sleepInstead(unsigned long ms)
{
    sleepAsAsked(std::min(ms, longestSleepMs));
}

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    qunsetenv("DISPLAY");
    qInstallMessageHandler(count);
    static int argumentCount = 1;
    static char name[] = "fuzz-mailboxcommands";
    static char* arguments[] = {name, nullptr};
    new QApplication(argumentCount, arguments);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const QTemporaryDir directory;
    static const auto* const program = new Program(directory.path());
    static const QString path = GS::instance()->fifo1Path;
    static FuzzFile text;
    text.write(data, size);
    const QString line = firstLineOf(text.path());
    const MailboxCommand* command = MailboxCommand::find(line);

    QFile::remove(GS::instance()->refifoPath);
    looks = 0;
    told = 0;
    require(QFile::copy(text.path(), path + ".new")
                && std::rename(qPrintable(path + ".new"), qPrintable(path)) == 0,
            "the command waits");
    if (line.isEmpty()) {
        waitFor([] { return looks > 0; }, "an empty line is read");
        require(QFile::remove(path), "and left");
    } else {
        waitFor([] { return !QFile::exists(path); }, "the command is taken");
    }
    require(told == (command ? 1 : 0), "a command is told once, and nothing else");
    const bool acts = command && carriedOut.contains(command->character);
    require(contentOf(GS::instance()->refifoPath) == (acts ? "x" : ""), "what acts has its reply");
    waitFor([] { return toolsBegun - toolsEnded < mostTools; }, "the commands' tools end");
    static_cast<void>(program);
    return 0;
}
