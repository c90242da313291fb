#pragma once

#include "support/patience.h"

#include <QDir>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

/**
 * An X server of this test's own with screens that need no hardware, on a free display: output
 * DUMMY0 is on, 1920x1080 at 60 Hz, and DUMMY1 can be plugged. The modes are those of
 * dummy-screens.conf.
 */
class DummyScreens
{
public:
    DummyScreens()
    {
        QDir(dir.path()).mkdir("runtime");
        QFile::setPermissions(dir.filePath("runtime"),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        server.setStandardErrorFile(dir.filePath("server.err"));
        server.start("Xorg",
                     {"-displayfd", "1", "-noreset", "-novtswitch", "-sharevts", "-nolisten", "tcp",
                      "-config", VIREON_SOURCE_DIR "/tests/support/dummy-screens.conf", "-logfile",
                      dir.filePath("server.log")});
        while (!server.canReadLine() && server.waitForReadyRead(patienceMs)) { }
        display = ':' + QString::fromLatin1(server.readLine().trimmed());
    }

    ~DummyScreens()
    {
        server.terminate();
        if (!server.waitForFinished(patienceMs))
            server.kill();
        server.waitForFinished();
    }

    DummyScreens(const DummyScreens&) = delete;
    DummyScreens& operator=(const DummyScreens&) = delete;

    bool isUp() const { return display.size() > 1; }

    /// For a program that shows itself on these screens.
    QProcessEnvironment environment() const
    {
        QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
        variables.insert("DISPLAY", display);
        variables.insert("QT_QPA_PLATFORM", "xcb");
        variables.insert("XDG_RUNTIME_DIR", dir.filePath("runtime"));
        variables.insert("TMPDIR", dir.path());
        variables.remove("DBUS_SESSION_BUS_ADDRESS");
        return variables;
    }

    /// Runs a tool on these screens; its output, or nothing when it failed.
    QByteArray run(const QString& program, const QStringList& arguments) const
    {
        QProcess tool;
        tool.setProcessEnvironment(environment());
        tool.start(program, arguments);
        const bool done = tool.waitForFinished(patienceMs)
            && tool.exitStatus() == QProcess::NormalExit && tool.exitCode() == 0;
        return done ? tool.readAllStandardOutput() + '\n' : QByteArray();
    }

    /// One output's settings, as xrandr takes them; whether they were accepted.
    bool set(const QString& output, const QStringList& settings) const
    {
        return !run("xrandr", QStringList {"--output", output} + settings).isEmpty();
    }

    /// Plugs the second output in, right of the first one. The server notices the plug only when
    /// it is asked for its outputs.
    bool plugSecond(const QString& mode) const
    {
        return !run("xrandr", {"--addmode", "DUMMY1", mode}).isEmpty()
            && set("DUMMY1", {"--mode", mode, "--right-of", "DUMMY0"})
            && run("xrandr", {"--query"}).contains("DUMMY1 connected");
    }

private:
    QTemporaryDir dir;
    QProcess server;
    QString display;
};
