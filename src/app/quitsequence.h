#pragma once

#include <memory>

class QApplication;
class QTranslator;
class RunGuard;

/**
 * How the program ends, and what may still run meanwhile.
 *
 * MainWindow::exitApp() is the only way out, for the user and, through QuitRequests, for the
 * system; the mailbox' quit codes and the updater's watch call it, too. It sends the engine's
 * command "Q" to a thread of its own, hides all that shows and waits 800 ms without an event loop,
 * in which an exit of the engine would be taken for a crash. The workers go on meanwhile: a command
 * that waits for its engine runs when that gets ready, and the status reader reports to nobody.
 * Then the event loop ends, and end() follows.
 */
class QuitSequence
{
public:
    /// After the event loop:
    ///  1. WorkerThread::stopAll() cuts every sleep, and each worker leaves at its next look,
    ///     500 ms for all. A tool that still runs is left alone.
    ///  2. What the process holds is given back: the guard always, translator and application only
    ///     when no thread is alive that might use them. Main window and supervisor are never
    ///     destroyed.
    ///  3. GracePeriod: an engine or a tool that still runs has 5 s after the SIGTERM that it gets
    ///     with the end of this process.
    ///  4. leave().
    [[noreturn]] static void end(std::unique_ptr<QApplication> application,
                                 std::unique_ptr<RunGuard> guard,
                                 std::unique_ptr<QTranslator> translator, int status);

    /// Ends the process without its static destructors, which must not run under living threads.
    [[noreturn]] static void leave(int status);
};
