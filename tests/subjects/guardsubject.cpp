// One copy of a guarded program: guardsubject KEY. It obeys words on standard input, each on a line
// of its own, and answers each with one line:
//   try    make a guard and try to run: "won", or "refused" and the program ends
//   ask    make a guard and tell whether another copy runs: "running" or "free"
//   lock   take all that a guard takes while it works: "locked"
//   spin   make guards, try to run and drop them, for ever: "spinning"
//   quit   begin to quit: "quitting"
//   release  give the marker back and keep the guard: "released"
//   end    destroy all guards and end: "ended"
// Between two words its event loop runs.
#include "base/filelock.h"
#include "base/keyfile.h"
#include "ipc/runguard.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>

#include <cstdio>
#include <iostream>
#include <memory>
#include <poll.h>
#include <string>
#include <unistd.h>

namespace {

constexpr int lockWaitMs = 10000;
constexpr int pauseMs = 5;

void say(const char* answer)
{
    std::cout << answer << std::endl;
}

void spin(const QString& key)
{
    say("spinning");
    for (;;) {
        RunGuard guard(key);
        guard.tryToRun();
    }
}

/// The next word; false when there will be none.
bool nextWord(std::string& word)
{
    pollfd input {STDIN_FILENO, POLLIN, 0};
    while (poll(&input, 1, pauseMs) == 0)
        QCoreApplication::processEvents();
    return static_cast<bool>(std::getline(std::cin, word));
}

/// What another guard sees when a copy is stopped or killed in the middle of a step.
void lock(const QString& key)
{
    const QByteArray hash =
        QCryptographicHash::hash((key + "_memLockKey").toUtf8(), QCryptographicHash::Sha1).toHex();
    static const FileLock fileLock(QDir::tempPath() + "/runguard_" + hash + ".lock", lockWaitMs);
    const QString semaphorePath = KeyFile::semaphorePath(QString::fromLatin1(hash));
    if (!QFile::exists(semaphorePath))
        KeyFile::prepareSemaphore(semaphorePath);
    static QSystemSemaphore semaphore(QString::fromLatin1(hash), 1);
    semaphore.acquire();
    say(fileLock.isHeld() ? "locked" : "not locked");
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    std::setvbuf(stdin, nullptr, _IONBF, 0); // nothing may be read that poll() cannot see
    const QString key = application.arguments().value(1);
    std::unique_ptr<RunGuard> guard;
    bool ended = false;
    std::string word;
    while (!ended && nextWord(word)) {
        if (word == "lock") {
            lock(key);
        } else if (word == "spin") {
            spin(key);
        } else if (word == "quit") {
            RunGuard::announceEnd();
            say("quitting");
        } else if (word == "release") {
            guard->release();
            say("released");
        } else if (word == "end") {
            ended = true;
        } else if (!guard) {
            guard = std::make_unique<RunGuard>(key);
        }
        if (word == "ask")
            say(guard->isAnotherRunning() ? "running" : "free");
        if (word == "try") {
            const bool won = guard->tryToRun();
            say(won ? "won" : "refused");
            ended = !won;
        }
    }
    guard.reset();
    say("ended");
    _exit(0);
}
