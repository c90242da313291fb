#pragma once

#include <QObject>
#include <QSize>

#include <atomic>
#include <memory>

class Lifeline;

/**
 * Watches the size of the primary screen and judges the refresh rates of all screens.
 *
 * A worker thread polls once a second; the screens themselves are only ever read on the GUI
 * thread, since they come and go there: each round the worker asks it for the size and waits
 * 200 ms at most. No answer, or an empty size, means no change in that round.
 */
class ResolutionChangeNotifier : public QObject
{
    Q_OBJECT

public:
    /// The watcher. The first call makes it, with @p parent, and starts the poll; it must come
    /// from the GUI thread.
    static ResolutionChangeNotifier* instance(QObject* parent = nullptr);

    /// Ends the poll, also one that sleeps or waits for an answer just now; to be called on the
    /// GUI thread. instance() keeps answering the old pointer.
    ~ResolutionChangeNotifier() override;

    /// The lowest refresh rate of all screens in Hz, each cut to a whole number. GUI thread only;
    /// 0 when there is no screen.
    static int getMinDispFrequency();

    /// Whether that rate is above 50 Hz: below, writing lags visibly behind the pen.
    static bool isOptimumFreq();

signals:
    /// The primary screen's new full size in px. Comes from the watcher's thread. It also comes
    /// once after the start when a panel takes room: the first size known is the available one.
    void resolutionChanged(int width, int height);

private slots:
    void listenToResolution();

private:
    class SizeQuestion;

    explicit ResolutionChangeNotifier(QObject* parent);

    void logScreens() const;

    /// Announces this size if it is a new one; an empty one is no answer.
    void compareWith(const QSize& size);

    static ResolutionChangeNotifier* _instance;

    std::atomic<QSize> lastSize {QSize(0, 0)}; ///< width and height in one: always of one screen
    std::atomic<bool> keepListening {true};
    // Shared with the poll, whose last round may be longer than the object's life.
    std::shared_ptr<SizeQuestion> sizeQuestion;
    std::shared_ptr<Lifeline> lifeline;
};
