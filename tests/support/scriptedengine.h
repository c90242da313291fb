#pragma once

#include <QCoreApplication>
#include <QFile>
#include <QRegularExpression>
#include <QStringList>
#include <QTemporaryDir>

#include <csignal>

/**
 * The engine and its tool as small shell scripts beside the test program, where the supervisor
 * looks for them. They append to a journal: "start PID" and "tool LETTER PID".
 */
class ScriptedEngine
{
public:
    ~ScriptedEngine() { killTools(); }

    /// What the next engine does after its line in the journal.
    bool installEngine(const QByteArray& script = "exec sleep 600")
    {
        return install("vireon-main", "start $$", script);
    }

    /// Likewise for the next tool.
    bool installTool(const QByteArray& script)
    {
        return install("vireon-sdk", "tool $* $$", script);
    }

    /// The lines that begin with @p start.
    QStringList journal(const QString& start) const
    {
        QFile file(folder.filePath("journal"));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        const QStringList lines = QString::fromUtf8(file.readAll()).split('\n');
        return lines.filter(QRegularExpression('^' + start));
    }

    int starts() const { return journal("start ").size(); }
    int tools() const { return journal("tool ").size(); }

    void killEngine() const { killNamed(journal("start ").last()); }

    /// A tool that is killed has finished, to the supervisor.
    void killTools() const
    {
        for (const QString& line : journal("tool "))
            killNamed(line);
    }

    void clear()
    {
        killTools();
        QFile::remove(folder.filePath("journal"));
    }

    QString path(const QString& name) const { return folder.filePath(name); }

private:
    static void killNamed(const QString& line) { kill(line.section(' ', -1).toInt(), SIGKILL); }

    bool install(const QString& name, const QByteArray& entry, const QByteArray& script)
    {
        // Renamed into place: a script that is open for writing cannot be started.
        const QString program = QCoreApplication::applicationDirPath() + '/' + name;
        const QByteArray journalName = QFile::encodeName(folder.filePath("journal"));
        QFile file(program + ".new");
        const QByteArray text =
            "#!/bin/sh\necho \"" + entry + "\" >> \"" + journalName + "\"\n" + script + '\n';
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size()
            || !file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner))
            return false;
        file.close();
        return rename(QFile::encodeName(file.fileName()).constData(),
                      QFile::encodeName(program).constData())
            == 0;
    }

    QTemporaryDir folder;
};
