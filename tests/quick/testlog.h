#pragma once

#include <QObject>
#include <QStringList>

#include <utility>

/**
 * Listens to Qt's log from listen() on. Whatever is worse than a debug or info line counts as a
 * warning, which no test here expects.
 */
class TestLog : public QObject
{
    Q_OBJECT

public:
    TestLog() = default;
    Q_DISABLE_COPY_MOVE(TestLog)

    ~TestLog() override
    {
        if (self != this)
            return;
        qInstallMessageHandler(previous);
        self = nullptr;
    }

    /// To be called once the test's own handler is in place, which then gets each line, too.
    Q_INVOKABLE void listen()
    {
        self = this;
        const QtMessageHandler replaced = qInstallMessageHandler(&TestLog::handle);
        if (replaced != &TestLog::handle)
            previous = replaced;
    }

    /// The warnings, and the debug lines of the views, since the last call.
    Q_INVOKABLE QStringList takeWarnings() { return std::exchange(warnings, {}); }
    Q_INVOKABLE QStringList takeLines() { return std::exchange(lines, {}); }

private:
    static void handle(QtMsgType type, const QMessageLogContext& context, const QString& text)
    {
        (type == QtDebugMsg || type == QtInfoMsg ? self->lines : self->warnings).append(text);
        self->previous(type, context, text);
    }

    inline static TestLog* self = nullptr;
    QtMessageHandler previous = nullptr;
    QStringList warnings;
    QStringList lines;
};
