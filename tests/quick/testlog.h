#pragma once

#include "support/logrecorder.h"

#include <QObject>
#include <QStringList>

#include <memory>
#include <utility>

/**
 * The log recorder for tests of views. Whatever is worse than a debug or info line counts as a
 * warning, which no test here expects.
 */
class TestLog : public QObject
{
    Q_OBJECT

public:
    /// Listens to Qt's log from now on. To be called once the test's own handler is in place, which
    /// then gets each line, too.
    Q_INVOKABLE void listen()
    {
        collect();
        recorder.reset();
        recorder = std::make_unique<LogRecorder>(LogRecorder::Messages::PassedOn);
    }

    /// The warnings, and the debug lines of the views, since the last call.
    Q_INVOKABLE QStringList takeWarnings()
    {
        collect();
        return std::exchange(warnings, {});
    }

    Q_INVOKABLE QStringList takeLines()
    {
        collect();
        return std::exchange(lines, {});
    }

private:
    void collect()
    {
        if (!recorder)
            return;
        for (const LogRecorder::Line& line : recorder->take())
            (line.isWarning() ? warnings : lines).append(line.text);
    }

    std::unique_ptr<LogRecorder> recorder;
    QStringList warnings;
    QStringList lines;
};
