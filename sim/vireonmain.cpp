#include "datadirectory.h"
#include "journal.h"
#include "output.h"
#include "simulatedengine.h"
#include "startcount.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTextCodec>

#include <csignal>
#include <cstdio>
#include <optional>

#include <sys/signalfd.h>
#include <unistd.h>

namespace {

enum ExitStatus { ScenarioRefused = 2, EnvironmentUnfit = 3 };

/// Blocks the signals that ask the engine to end and returns the file from which they are read.
int holdTerminations()
{
    sigset_t signalSet;
    sigemptyset(&signalSet);
    for (const int number : {SIGTERM, SIGINT, SIGHUP})
        sigaddset(&signalSet, number);
    ::sigprocmask(SIG_BLOCK, &signalSet, nullptr);
    // Writing to a controller that is gone must not end the engine: SIGTERM does.
    std::signal(SIGPIPE, SIG_IGN);
    return ::signalfd(-1, &signalSet, SFD_CLOEXEC | SFD_NONBLOCK);
}

/// The scenario that VIREON_SIM_SCENARIO names, or an empty one; nothing when it is refused.
std::optional<Scenario> readScenario(Journal& journal)
{
    const QString path = QFile::decodeName(qgetenv("VIREON_SIM_SCENARIO"));
    if (path.isEmpty())
        return Scenario();
    QFile file(path);
    ScenarioFault fault;
    std::optional<Scenario> scenario;
    if (file.open(QIODevice::ReadOnly))
        scenario = Scenario::parse(file.readAll(), &fault);
    else
        fault.reason = file.errorString();
    if (!scenario) {
        std::fprintf(stderr, "vireon-main: %s:%d: %s\n", qUtf8Printable(path), fault.line,
                     qUtf8Printable(fault.reason));
        journal.add("refused",
                    {{"line", QByteArray::number(fault.line)},
                     {"reason", Journal::encoded(fault.reason.toUtf8())}});
    }
    return scenario;
}

QVector<QByteArray> toBytes(const QStringList& texts)
{
    QVector<QByteArray> result;
    for (const QString& text : texts)
        result.append(text.toUtf8());
    return result;
}

/// What an engine finds at its start.
QVector<JournalField> surroundings(const DataDirectory& directory)
{
    QVector<JournalField> fields {
        {"cwd", Journal::encoded(QDir::currentPath().toUtf8())},
        {"args", Journal::encodedList(toBytes(QCoreApplication::arguments().mid(1)))},
        {"parent", QByteArray::number(::getppid())},
        {"data", Journal::encoded(directory.path().toUtf8())},
    };
    if (directory.exists())
        fields.append({"files", Journal::encodedList(toBytes(directory.names()))});
    return fields;
}

} // namespace

int main(int argc, char* argv[])
{
    QElapsedTimer clock;
    clock.start();
    const int terminations = holdTerminations();
    // File names are UTF-8, also in the locale "C".
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    QCoreApplication app(argc, argv);

    const QString journalPath = Journal::pathFromEnvironment();
    Journal journal("engine", journalPath);
    if (!journal.isUsable())
        std::fprintf(stderr, "vireon-main: cannot open the journal %s\n",
                     qUtf8Printable(journalPath));
    const std::optional<Scenario> scenario = readScenario(journal);
    if (!scenario)
        return ScenarioRefused;

    const DataDirectory directory;
    QVector<JournalField> found = surroundings(directory);
    if (!directory.create()) {
        std::fprintf(stderr, "vireon-main: cannot create the data directory %s\n",
                     qUtf8Printable(directory.path()));
        return EnvironmentUnfit;
    }
    const int number = StartCount::next(StartCount::fileFor(journalPath, directory.path()));
    found.prepend({"number", QByteArray::number(number)});
    journal.add("start", found);

    SimulatedEngine engine(scenario->lifeOf(number), directory, journal, clock, terminations);
    if (!engine.start())
        return EnvironmentUnfit;
    writeOutput(STDOUT_FILENO, "simulated engine, start " + QByteArray::number(number) + '\n');
    return QCoreApplication::exec();
}
