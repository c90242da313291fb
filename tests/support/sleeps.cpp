#include "support/sleeps.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace {

// Never destroyed: loops may sleep while the program ends.
struct State
{
    std::mutex mutex;
    std::condition_variable changed;
    QMap<int, QVector<int>> asked;
    QSet<int> held; ///< threads that are to stay in their sleep
    QSet<int> waiting; ///< those of them that are in it
};

State& state()
{
    static auto* const theState = new State;
    return *theState;
}

} // namespace

/// The linker gives this one to whoever calls WorkerThread::msleep().
void sleepInstead(unsigned long ms) __asm__("__wrap__ZN12WorkerThread6msleepEm");

void sleepInstead(unsigned long ms)
{
    const int thread = Sleeps::thisThread();
    std::unique_lock<std::mutex> lock(state().mutex);
    state().asked[thread].append(static_cast<int>(ms));
    state().waiting.insert(thread);
    state().changed.notify_all();
    state().changed.wait(lock, [thread] { return !state().held.contains(thread); });
    state().waiting.remove(thread);
    lock.unlock();
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

int Sleeps::thisThread()
{
    static std::atomic<int> last {0};
    static thread_local const int number = ++last;
    return number;
}

QSet<int> Sleeps::threads()
{
    const std::lock_guard<std::mutex> guard(state().mutex);
    const QList<int> numbers = state().asked.keys();
    return QSet<int>(numbers.begin(), numbers.end());
}

QVector<int> Sleeps::of(int thread)
{
    const std::lock_guard<std::mutex> guard(state().mutex);
    // A real copy: implicit sharing would look like a race to ThreadSanitizer.
    QVector<int> copy;
    for (const int ms : state().asked.value(thread))
        copy.append(ms);
    return copy;
}

void Sleeps::hold(int thread)
{
    std::unique_lock<std::mutex> lock(state().mutex);
    state().held.insert(thread);
    if (thread != thisThread())
        state().changed.wait(lock, [thread] { return state().waiting.contains(thread); });
}

void Sleeps::release(int thread)
{
    const std::lock_guard<std::mutex> guard(state().mutex);
    state().held.remove(thread);
    state().changed.notify_all();
}
