#include "app/messageoutput.h"

#include "app/logfile.h"
#include "ui/mainwindow.h"

#include <QDateTime>
#include <QMessageLogContext>
#include <QString>

#include <cstdio>

namespace {

LogFile* logFile = nullptr;

QString levelWord(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return "Debug";
    case QtWarningMsg:
        return "Warning";
    case QtCriticalMsg:
        return "Critical";
    case QtFatalMsg:
        return "Fatal";
    default:
        return {};
    }
}

} // namespace

void myMessageOutput(QtMsgType type, QMessageLogContext const& context, QString const& text)
{
    const QDateTime now = QDateTime::currentDateTime();
    // All four at once: one after the other, a "%2" in the text would be replaced as well.
    const QString body =
        QString(": %1 (%2:%3, %4)")
            .arg(text, QString::fromUtf8(context.file), QString::number(context.line),
                 QString::fromUtf8(context.function));
    const QString line = now.date().toString("dd.MM.yyyy") + ' ' + now.time().toString(Qt::TextDate)
        + ": " + levelWord(type) + body;
    std::puts(line.toUtf8().constData());
    // An abort after a fatal message would drop what is still in the buffer.
    std::fflush(stdout);
    if (logFile)
        logFile->write(line);
    if (MainWindow* window = mainWindow)
        window->appendText(line);
}

void setLogFile(LogFile* file)
{
    logFile = file;
}
