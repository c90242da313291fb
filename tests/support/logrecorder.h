#pragma once

#include <QElapsedTimer>
#include <QString>
#include <QStringList>
#include <QVector>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <utility>
#include <vector>

/**
 * Takes every message of Qt's log while it lives, from any thread, and can stop the thread that
 * logs a certain text right there until it is let go. One at a time; made once Qt Test has
 * installed its own handler, so not before a test's first function.
 */
class LogRecorder
{
public:
    struct Line
    {
        QtMsgType type;
        QString text;
        qint64 ms; ///< since the recorder was made

        bool isWarning() const { return type != QtDebugMsg && type != QtInfoMsg; } ///< or worse
    };

    /// Whether the handler before it gets each message, too.
    enum class Messages { Kept, PassedOn };

    explicit LogRecorder(Messages messages = Messages::Kept)
        : passesOn(messages == Messages::PassedOn)
    {
        clock.start();
        previous = qInstallMessageHandler(&LogRecorder::handle);
        current = this; // last: from here on, other threads use what is above
    }

    ~LogRecorder()
    {
        release();
        qInstallMessageHandler(previous);
        current = nullptr;
    }

    LogRecorder(const LogRecorder&) = delete;
    LogRecorder& operator=(const LogRecorder&) = delete;

    QVector<Line> lines()
    {
        const std::lock_guard<std::mutex> guard(mutex);
        // A real copy: implicit sharing would look like a race to ThreadSanitizer.
        QVector<Line> copy;
        for (const Line& line : recorded)
            copy.append(line);
        return copy;
    }

    /// The lines that begin with @p start.
    QVector<Line> linesWith(const QString& start)
    {
        QVector<Line> found;
        for (const Line& line : lines()) {
            if (line.text.startsWith(start))
                found.append(line);
        }
        return found;
    }

    int count(const QString& start) { return linesWith(start).size(); }

    /// The texts of the warnings and worse.
    QStringList warnings()
    {
        QStringList found;
        for (const Line& line : lines()) {
            if (line.isWarning())
                found.append(line.text);
        }
        return found;
    }

    /// The lines so far, which are forgotten here.
    std::vector<Line> take()
    {
        const std::lock_guard<std::mutex> guard(mutex);
        return std::exchange(recorded, {});
    }

    void clear() { take(); }

    /// From now on, a thread that logs a text beginning with @p start waits for release().
    void hold(const QString& start)
    {
        const std::lock_guard<std::mutex> guard(mutex);
        heldStart = start;
    }

    void release()
    {
        const std::lock_guard<std::mutex> guard(mutex);
        heldStart.clear();
        released.notify_all();
    }

private:
    static void handle(QtMsgType type, const QMessageLogContext& context, const QString& text)
    {
        LogRecorder* recorder = current;
        if (!recorder)
            return;
        if (recorder->passesOn)
            recorder->previous(type, context, text);
        recorder->record(type, text);
    }

    void record(QtMsgType type, const QString& text)
    {
        std::unique_lock<std::mutex> lock(mutex);
        recorded.push_back({type, text, clock.elapsed()});
        released.wait(lock, [&] { return heldStart.isEmpty() || !text.startsWith(heldStart); });
    }

    inline static std::atomic<LogRecorder*> current {nullptr};

    const bool passesOn;
    QtMessageHandler previous = nullptr;
    QElapsedTimer clock;
    std::mutex mutex;
    std::condition_variable released;
    std::vector<Line> recorded;
    QString heldStart;
};
