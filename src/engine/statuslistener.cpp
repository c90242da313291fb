#include "engine/statuslistener.h"

#include "base/workerthread.h"
#include "engine/statusreport.h"
#include "settings/globalsettings.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFile>

namespace {

constexpr unsigned long pollIntervalMs = 300;
constexpr unsigned long handOverIntervalMs = 10;

QString statusFilePath()
{
    return QString::fromStdString(GS::instance()->penSettingsPath);
}

} // namespace

StatusListener* StatusListener::_instance = nullptr;

StatusListener* StatusListener::instance()
{
    if (!_instance)
        _instance = new StatusListener;
    return _instance;
}

StatusListener::StatusListener()
{
    QFile::remove(statusFilePath());
    startReader();
}

StatusListener::~StatusListener()
{
    keepReading = false;
    readerStopped = false;
    _instance = nullptr;
}

// --- Reader, on its worker thread -------------------------------------------------------------

void StatusListener::readStatusFile()
{
    qDebug() << "start reading status file";
    readerStopped = false;
    while (keepReading && !WorkerThread::isStopping()) {
        WorkerThread::msleep(pollIntervalMs);
        readReport();
    }
    readerStopped = true;
}

void StatusListener::readReport()
{
    const QString path = statusFilePath();
    const std::optional<StatusReport> report = StatusReport::fromFile(path);
    if (!report) {
        qDebug() << "Could not open the file!" << path;
        return;
    }
    if (report->status && *report->status != status) {
        qDebug() << "statuslistener" << report->statusText;
        status = *report->status;
        emit statusChanged(status);
    }
    if (report->firmware && *report->firmware != firmware) {
        firmware = *report->firmware;
        emit statusChanged(status);
    }
}

// --- Overrides, on the GUI thread -------------------------------------------------------------

void StatusListener::injectStatus(int newStatus)
{
    pauseReader();
    QFile::remove(statusFilePath());
    status = newStatus;
    emit statusChanged(newStatus);
    startReader();
}

void StatusListener::resetWithProblem()
{
    qDebug() << "vireon-main crashed, notifying Ui status: " << status.load();
    pauseReader();
    if (status != StatusNotReady) {
        status = StatusEngineRestarting;
        // Reports that the reader has queued are older than this one and must not overtake it.
        // At StatusNotReady they stay queued: their receiver ends the re-sending of commands.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);
        emit statusChanged(StatusEngineRestarting);
    }
    QFile::remove(statusFilePath());
    startReader();
}

void StatusListener::pauseReader()
{
    keepReading = false;
    while (!readerStopped)
        WorkerThread::msleep(handOverIntervalMs);
    keepReading = true;
    readerStopped = false;
}

void StatusListener::startReader()
{
    // Nobody waits for the end of a reader that could not be started.
    if (!WorkerThread::doWork(this, SLOT(readStatusFile()), -1))
        readerStopped = true;
}
