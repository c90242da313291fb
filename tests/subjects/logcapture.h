#pragma once

#include <QMutex>
#include <QStringList>
#include <QtGlobal>

/// Keeps the log lines of a test's own process, from all threads, while it lives.
class LogCapture
{
public:
    LogCapture()
    {
        lines().clear();
        previous() = qInstallMessageHandler(keep);
    }

    ~LogCapture() { qInstallMessageHandler(previous()); }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    /// How many lines hold @p text.
    static int count(const QString& text)
    {
        const QMutexLocker locker(&mutex());
        return lines().filter(text).size();
    }

private:
    static void keep(QtMsgType type, const QMessageLogContext& context, const QString& text)
    {
        {
            const QMutexLocker locker(&mutex());
            lines() << text;
        }
        previous()(type, context, text);
    }

    static QMutex& mutex()
    {
        static QMutex theMutex;
        return theMutex;
    }

    static QStringList& lines()
    {
        static QStringList theLines;
        return theLines;
    }

    static QtMessageHandler& previous()
    {
        static QtMessageHandler handler = nullptr;
        return handler;
    }
};
