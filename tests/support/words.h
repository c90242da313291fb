#pragma once

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QStringList>

#include <functional>
#include <iostream>
#include <unistd.h>

/// Hands each line of standard input, split at its tabs, to a function on the event loop, and
/// ends the process with the input.
class Words : public QObject
{
public:
    using Handler = std::function<void(const QStringList& words)>;

    explicit Words(Handler handler)
        : handle(std::move(handler))
        , input(STDIN_FILENO, QSocketNotifier::Read)
    {
        connect(&input, &QSocketNotifier::activated, this, [this] { read(); });
    }

    /// One line on standard output.
    static void say(const QString& answer) { std::cout << answer.toStdString() << std::endl; }

private:
    void read()
    {
        char buffer[4096];
        const ssize_t size = ::read(STDIN_FILENO, buffer, sizeof buffer);
        if (size <= 0)
            _exit(0);
        pending.append(buffer, static_cast<int>(size));
        for (int end = pending.indexOf('\n'); end >= 0; end = pending.indexOf('\n')) {
            const QString line = QString::fromUtf8(pending.left(end));
            pending.remove(0, end + 1);
            handle(line.split(QLatin1Char('\t')));
        }
    }

    Handler handle;
    QSocketNotifier input;
    QByteArray pending;
};
