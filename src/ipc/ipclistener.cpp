#include "ipclistener.h"

#include "engine/workerthread.h"
#include "settings/filehelper.h"
#include "settings/globalsettings.h"

#include <QDebug>
#include <QFile>
#include <QTextStream>

#include <algorithm>
#include <array>
#include <cstdio>

namespace {

constexpr unsigned long settleMs = 50; // after every pass
constexpr unsigned long stepMs = 10;
constexpr qint64 lineLimit = 65536;
constexpr int leftoverCode = 1000;

struct Command
{
    char character;
    int code;
    const char* logText;
};

// Log readers match the texts, also where they repeat another command's.
constexpr std::array<Command, 37> commands {{
    {'0', 16, "IPC: b"},  {'1', 110, "IPC: 1"}, {'2', 111, "IPC: 2"}, {'3', 112, "IPC: 3"},
    {'4', 21, "IPC: 21"}, {'5', 22, "IPC: 22"}, {'6', 23, "IPC: 23"}, {'7', 24, "IPC: 24"},
    {'8', 17, "IPC: d"},  {'9', 113, "IPC: 9"}, {'Q', 25, "IPC: 25"}, {'a', 1, "IPC: a"},
    {'b', 108, "IPC: b"}, {'c', 107, "IPC: c"}, {'d', 104, "IPC: d"}, {'e', 7, "IPC: e"},
    {'f', 4, "IPC: f"},   {'g', 105, "IPC: g"}, {'h', 8, "IPC: h"},   {'i', 9, "IPC: i"},
    {'j', 101, "IPC: j"}, {'k', 14, "IPC: k"},  {'l', 100, "IPC: l"}, {'m', 0, "IPC: m"},
    {'n', 109, "IPC: n"}, {'o', 103, "IPC: o"}, {'p', 6, "IPC: p"},   {'q', 12, "IPC: q"},
    {'r', 15, "IPC: r"},  {'s', 3, "IPC: s"},   {'t', 2, "IPC: t"},   {'u', 102, "IPC: u"},
    {'v', 5, "IPC: v"},   {'w', 11, "IPC: w"},  {'x', 13, "IPC: x"},  {'y', 10, "IPC: i"},
    {'z', 106, "IPC: z"},
}};

/// The first line without its line break, cut at the limit.
QString readFirstLine(QFile& file)
{
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    return stream.readLine(lineLimit);
}

/// The first byte of the trimmed line; zero if nothing is left of it.
char firstByte(const QString& line)
{
    const QByteArray trimmed = line.trimmed().toUtf8();
    return trimmed.isEmpty() ? '\0' : trimmed.front();
}

} // namespace

IpcListener* IpcListener::_instance = nullptr;

IpcListener* IpcListener::instance()
{
    if (!_instance)
        _instance = new IpcListener;
    return _instance;
}

IpcListener::IpcListener()
{
    WorkerThread::doWork(this, SLOT(listenToFifos()), -1);
}

void IpcListener::listenToFifos()
{
    const QString path = GS::instance()->fifo1Path;
    qDebug() << "Fifo position:" << path;
    drainLeftover(path);
    while (running && !WorkerThread::isStopping()) {
        if (!readingEnabled) {
            readerPaused = true;
            WorkerThread::msleep(stepMs);
            continue;
        }
        if (QFile::exists(path))
            readCommand(path);
        WorkerThread::msleep(settleMs);
        WorkerThread::msleep(stepMs);
    }
}

void IpcListener::drainLeftover(const QString& path)
{
    QFile file;
    if (!FileHelper::openRegularFile(file, path, QIODevice::ReadWrite | QIODevice::ExistingOnly))
        return;
    if (!readFirstLine(file).isEmpty()) {
        emit received(leftoverCode);
        QFile::remove(path);
    }
}

void IpcListener::readCommand(const QString& path)
{
    QFile file;
    if (!FileHelper::openRegularFile(file, path, QIODevice::ReadOnly))
        return;
    const QString line = readFirstLine(file);
    qDebug() << "ipc read:" << line;
    if (line.isEmpty())
        return;
    const char character = firstByte(line);
    qDebug() << "read command from" << path;
    const auto command =
        std::find_if(commands.begin(), commands.end(),
                     [character](const Command& entry) { return entry.character == character; });
    if (command != commands.end()) {
        emit received(command->code);
        qDebug() << command->logText;
    }
    QFile::remove(path);
}

void IpcListener::writeDone()
{
    readingEnabled = false;
    while (!readerPaused && !WorkerThread::isStopping())
        WorkerThread::msleep(stepMs);
    const QString path = GS::instance()->refifoPath;
    QFile file;
    if (FileHelper::openRegularFile(file, path, QIODevice::ReadWrite | QIODevice::Truncate)) {
        QTextStream(&file) << "x";
        file.close();
    } else {
        std::printf("cannot write to fifo! Folder is %s, exitting.\n", path.toUtf8().constData());
    }
    readingEnabled = true;
}
