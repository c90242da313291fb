#pragma once

#include "agenda.h"
#include "letterserver.h"
#include "scenario.h"
#include "statuswriter.h"

#include <QObject>

class DataDirectory;
class Journal;
class QSocketNotifier;

/**
 * One start of the simulated engine: takes letters, writes the status file, prints, dies.
 *
 * The letters are taken before the first action is performed, so that a controller that sees a
 * status can send one at once.
 */
class SimulatedEngine : public QObject
{
    Q_OBJECT

public:
    /// @p terminations is a signalfd for the signals that ask the engine to end. @p clock runs
    /// since the engine's start.
    SimulatedEngine(const EngineLife& life, const DataDirectory& directory, Journal& journal,
                    const QElapsedTimer& clock, int terminations);

    /// False when letters cannot be taken. The life then begins in the event loop.
    bool start();

private:
    void onLetter(const QByteArray& letter, QLocalSocket* tool);
    void onTermination();
    void react(const QByteArray& letter);
    void perform(const Action& action);
    void writeStatus(const Action& action);
    void die(const Death& death);
    void journalDeath(const Death& death);

    const EngineLife life;
    Journal& journal;
    const int terminations;
    LetterServer server;
    StatusWriter writer;
    Agenda agenda;
    int result = -1; ///< the last one written
    int firmware = 2; ///< a current one: the controller advises an update below 2
};
