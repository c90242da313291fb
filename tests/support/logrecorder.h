#pragma once

#include <QElapsedTimer>
#include <QString>
#include <QVector>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <vector>

/**
 * Takes every message of Qt's log while it lives, from any thread, and can stop the thread that
 * logs a certain text right there until it is let go. One at a time.
 */
class LogRecorder
{
public:
    struct Line
    {
        QtMsgType type;
        QString text;
        qint64 ms; ///< since the recorder was made
    };

    LogRecorder()
    {
        clock.start();
        current = this;
        previous = qInstallMessageHandler(&LogRecorder::handle);
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

    void clear()
    {
        const std::lock_guard<std::mutex> guard(mutex);
        recorded.clear();
    }

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
    static void handle(QtMsgType type, const QMessageLogContext&, const QString& text)
    {
        if (LogRecorder* recorder = current)
            recorder->record(type, text);
    }

    void record(QtMsgType type, const QString& text)
    {
        std::unique_lock<std::mutex> lock(mutex);
        recorded.push_back({type, text, clock.elapsed()});
        released.wait(lock, [&] { return heldStart.isEmpty() || !text.startsWith(heldStart); });
    }

    inline static std::atomic<LogRecorder*> current {nullptr};

    QtMessageHandler previous = nullptr;
    QElapsedTimer clock;
    std::mutex mutex;
    std::condition_variable released;
    std::vector<Line> recorded;
    QString heldStart;
};
