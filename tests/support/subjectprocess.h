#pragma once

#include "support/patience.h"
#include "support/systemvobjects.h"

#include <QProcess>
#include <QStringList>

#include <csignal>

/// A subject program under a test's control: words go in, answers come out, line by line.
class SubjectProcess
{
public:
    explicit SubjectProcess(const QString& name, const QStringList& arguments,
                            const QStringList& prefix = {})
    {
        QSet<pid_t>& users = SystemVObjects::users(); // before it makes any object
        process.setProcessChannelMode(QProcess::SeparateChannels);
        QStringList words = prefix;
        words << QStringLiteral(SUBJECT_DIR "/") + name << arguments;
        const QString program = words.takeFirst();
        process.start(program, words);
        process.waitForStarted();
        users.insert(static_cast<pid_t>(process.processId()));
    }

    ~SubjectProcess()
    {
        process.kill();
        process.waitForFinished();
    }

    void send(const QByteArray& word)
    {
        process.write(word + '\n');
        process.waitForBytesWritten();
    }

    /// The next line of its standard output; empty when none came in time.
    QByteArray answer()
    {
        while (!process.canReadLine()) {
            if (!process.waitForReadyRead(patienceMs))
                return {};
        }
        return process.readLine().trimmed();
    }

    QByteArray ask(const QByteArray& word)
    {
        send(word);
        return answer();
    }

    void signal(int number) { ::kill(static_cast<pid_t>(process.processId()), number); }

    /// Kills it and waits for its end.
    void killHard()
    {
        signal(SIGKILL);
        process.waitForFinished(patienceMs);
    }

    /// Whether it ends, by itself and with exit status 0, within the limit.
    bool ends()
    {
        const bool over =
            process.state() == QProcess::NotRunning || process.waitForFinished(patienceMs);
        return over && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    }

    /// What it logged since it was asked last.
    QByteArray log() { return process.readAllStandardError(); }

    /// Whether @p text comes on its log in time; what came until then is no longer on it.
    bool logs(const QByteArray& text)
    {
        process.setReadChannel(QProcess::StandardError);
        QByteArray read = log();
        while (!read.contains(text) && process.waitForReadyRead(patienceMs))
            read += log();
        process.setReadChannel(QProcess::StandardOutput);
        return read.contains(text);
    }

private:
    QProcess process;
};
