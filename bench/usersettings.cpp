// bench-usersettings [SAVES [KILLS]]: what others see of the user settings file while it is
// rewritten.
//
// First this process saves SAVES times (10000 if not given), each time other values, while a
// reader process reads the file in a loop. Then a process that saves without pause is killed with
// SIGKILL KILLS times (1000 if not given), after a random time each. Counted is what was read:
// a whole file of one save, one with a tail of the save before it (which reads the same), an empty
// one, a shorter piece of one, a mixture of two, or none.

#include "settings/globalsettings.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <array>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <memory>
#include <random>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

enum Finding { Whole, WithTail, Empty, Short, Mixed, Missing };
constexpr std::array<const char*, 6> findingNames {"whole", "with a tail", "empty",
                                                   "short", "mixed",       "missing"};

using Counts = std::array<std::atomic<long>, findingNames.size()>;

/// What parent and child share.
struct Shared
{
    std::atomic<bool> ready {false};
    std::atomic<bool> stop {false};
    std::atomic<long> saves {0};
    Counts counts {};
};

/// Values by which each save is known; every second text is longer than the one after it.
void fill(GS& settings, int number)
{
    const int value = number % 2 == 0 ? number : -number;
    settings.profile = value;
    settings.userParam60 = value;
    settings.userParam61 = value;
}

/// The text of one save, as the file holds it when nobody interferes.
QByteArray textOf(const QByteArray& number)
{
    return "1\n" + number + "\n1\n0\n2\n1\n1\n0\n0\n1\n1\n" + number + '\n' + number + "\n0\n1\n";
}

Finding judge(const QByteArray& path)
{
    QFile file(QFile::decodeName(path));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return Missing;
    const QByteArray text = file.read(4096);
    if (text.isEmpty())
        return Empty;
    const QByteArrayList lines = text.split('\n');
    const QByteArray whole = textOf(lines.value(1));
    if (text == whole)
        return Whole;
    if (text.startsWith(whole))
        return WithTail;
    return whole.startsWith(text) ? Short : Mixed;
}

void report(const char* title, const Counts& counts)
{
    std::printf("%s:", title);
    for (std::size_t i = 0; i < counts.size(); ++i) {
        std::printf(" %ld %s%s", counts[i].load(), findingNames[i],
                    i + 1 < counts.size() ? "," : "\n");
    }
}

[[noreturn]] void readInALoop(const QByteArray& path, Shared& shared)
{
    shared.ready = true;
    while (!shared.stop)
        ++shared.counts[judge(path)];
    _exit(0);
}

void measureReader(GS& settings, long saves, Shared& shared)
{
    settings.saveUserSettings();
    const QByteArray path = QByteArray::fromStdString(settings.userIniPath);
    const pid_t reader = fork();
    if (reader == 0)
        readInALoop(path, shared);
    while (!shared.ready)
        usleep(1000);
    for (int number = 1; number <= saves; ++number) {
        fill(settings, number);
        settings.saveUserSettings();
    }
    shared.stop = true;
    waitpid(reader, nullptr, 0);
    std::printf("%ld saves, ", saves);
    report("reads by another process", shared.counts);
}

[[noreturn]] void saveInALoop(GS& settings, Shared& shared)
{
    for (int number = 1;; ++number) {
        fill(settings, number);
        settings.saveUserSettings();
        ++shared.saves;
    }
}

void measureKills(GS& settings, long kills, Shared& shared)
{
    std::mt19937 random {std::random_device {}()};
    std::uniform_int_distribution<useconds_t> delayUs {0, 5000};
    const QByteArray path = QByteArray::fromStdString(settings.userIniPath);
    for (long i = 0; i < kills; ++i) {
        const long before = shared.saves;
        const pid_t saver = fork();
        if (saver == 0)
            saveInALoop(settings, shared);
        while (shared.saves == before)
            usleep(100);
        usleep(delayUs(random));
        kill(saver, SIGKILL);
        waitpid(saver, nullptr, 0);
        ++shared.counts[judge(path)];
    }
    std::printf("%ld kills after %ld saves, ", kills, shared.saves.load());
    report("left in the file", shared.counts);
}

Shared& newShared()
{
    void* memory =
        mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        qFatal("no shared memory");
    return *new (memory) Shared;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QTemporaryDir directory;
    GS settings;
    settings.userIniPath = directory.filePath(QStringLiteral("user.ini")).toStdString();
    measureReader(settings, arguments.value(1, QStringLiteral("10000")).toLong(), newShared());
    measureKills(settings, arguments.value(2, QStringLiteral("1000")).toLong(), newShared());
    return 0;
}
