#include "statuslistener.h"

#include "settings/filehelper.h"
#include "settings/globalsettings.h"
#include "workerthread.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFile>

namespace {

constexpr unsigned long pollIntervalMs = 300;
constexpr unsigned long handOverIntervalMs = 10;

/// Longest line that is looked at, in bytes. A file of any size costs no more than two of them.
constexpr qint64 longestLine = 4096;

QString statusFilePath()
{
    return QString::fromStdString(GS::instance()->penSettingsPath);
}

/// Whether @p line, just read, is all of its line: one that is longer cannot be a report.
bool isWhole(const QByteArray& line, const QFile& file)
{
    return line.endsWith('\n') || file.atEnd();
}

/// Removes the first occurrence of @p prefix only: what follows must be a number on its own.
QString withoutPrefix(const QByteArray& line, const QString& prefix)
{
    QString text = QString::fromUtf8(line.constData(), line.size()).trimmed();
    const int position = text.indexOf(prefix);
    return position < 0 ? text : text.remove(position, prefix.size());
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
    QFile file;
    if (!FileHelper::openRegularFile(file, path, QIODevice::ReadOnly)) {
        qDebug() << "Could not open the file!" << path;
        return;
    }
    const QByteArray statusLine = file.readLine(longestLine);
    if (!isWhole(statusLine, file))
        return;
    takeStatusLine(statusLine);
    const QByteArray firmwareLine = file.readLine(longestLine);
    if (isWhole(firmwareLine, file))
        takeFirmwareLine(firmwareLine);
}

void StatusListener::takeStatusLine(const QByteArray& line)
{
    const QString rest = withoutPrefix(line, QStringLiteral("Result="));
    bool parsed = false;
    const int reported = rest.toInt(&parsed);
    if (!parsed || reported == status)
        return;
    qDebug() << "statuslistener" << rest;
    status = reported;
    emit statusChanged(status);
}

void StatusListener::takeFirmwareLine(const QByteArray& line)
{
    bool parsed = false;
    const int reported = withoutPrefix(line, QStringLiteral("Firmware=")).toInt(&parsed);
    if (!parsed || reported == firmware)
        return;
    firmware = reported;
    emit statusChanged(status);
}

// --- Overrides, on the GUI thread -------------------------------------------------------------

void StatusListener::injectStatus(int newStatus)
{
    pauseReader();
    QFile::remove(statusFilePath());
    status = newStatus;
    emit statusChanged(newStatus);
    WorkerThread::doWork(this, SLOT(readStatusFile()), -1);
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
    QFile::remove(statusFilePath());
    WorkerThread::doWork(this, SLOT(readStatusFile()), -1);
}
