#include "ipc/ipclistener.h"

#include "base/regularfile.h"
#include "base/workerthread.h"
#include "ipc/mailboxcommand.h"
#include "ipc/mailboxfile.h"
#include "settings/globalsettings.h"

#include <QDebug>
#include <QFile>
#include <QTextStream>

#include <cstdio>

namespace {

constexpr unsigned long settleMs = 50; // after every pass
constexpr unsigned long stepMs = 10;
constexpr int leftoverCode = 1000;

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
    MailboxFile::Content handled; // and still there, for want of permission to delete it
    drainLeftover(path, handled);
    while (running && !WorkerThread::isStopping()) {
        if (!readingEnabled) {
            readerPaused = true;
            WorkerThread::msleep(stepMs);
            continue;
        }
        if (QFile::exists(path))
            readCommand(path, handled);
        WorkerThread::msleep(settleMs);
        WorkerThread::msleep(stepMs);
    }
}

void IpcListener::drainLeftover(const QString& path, MailboxFile::Content& handled)
{
    MailboxFile file(path, QIODevice::ReadWrite | QIODevice::ExistingOnly);
    if (!file.isOpen() || file.content().line.isEmpty())
        return;
    emit received(leftoverCode);
    if (!file.remove())
        handled = file.content();
}

void IpcListener::readCommand(const QString& path, MailboxFile::Content& handled)
{
    MailboxFile file(path, QIODevice::ReadOnly);
    if (!file.isOpen())
        return;
    if (!(file.content() == handled)) {
        const QString& line = file.content().line;
        qDebug() << "ipc read:" << line;
        if (line.isEmpty())
            return;
        qDebug() << "read command from" << path;
        if (const MailboxCommand* command = MailboxCommand::find(line)) {
            emit received(command->code);
            qDebug() << command->logText;
        }
        handled = file.content();
    }
    if (file.remove())
        handled = {};
}

void IpcListener::writeDone()
{
    readingEnabled = false;
    while (!readerPaused && !WorkerThread::isStopping())
        WorkerThread::msleep(stepMs);
    const QString path = GS::instance()->refifoPath;
    QFile file;
    if (openRegularFile(file, path, QIODevice::ReadWrite | QIODevice::Truncate)) {
        QTextStream(&file) << "x";
        file.close();
    } else {
        std::printf("cannot write to fifo! Folder is %s, exitting.\n", path.toUtf8().constData());
    }
    readingEnabled = true;
}
