#pragma once

#include "action.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVector>

#include <optional>

/// What the SDK tool gets for a letter.
struct Answer
{
    enum Kind {
        Taken, ///< the tool ends with `exitCode`
        Never, ///< none: the tool waits for as long as the engine lives
        Hang ///< the tool is told to hang, and outlives the engine
    };

    Kind kind = Taken;
    int delayMs = 0; ///< ms between the letter and the answer
    int exitCode = 0;
};

/// An action and its time: ms since the engine's start, or since the letter it reacts to.
struct Step
{
    int atMs = 0;
    Action action;
};

/// What one start of the engine does. Letters are single characters in UTF-8.
struct EngineLife
{
    QVector<Step> timeline;
    QHash<QByteArray, QVector<Step>> reactions; ///< by letter, and by Scenario::sigterm()
    QHash<QByteArray, Answer> answers; ///< by letter; Taken at once where there is none
};

/// Why and where a scenario is refused.
struct ScenarioFault
{
    int line = 0; ///< the first line is 1
    QString reason;
};

/// One line of a scenario, for the starts from firstStart to lastStart.
struct Statement
{
    enum Kind { At, On, Reply, Unwritten };

    Kind kind = At;
    int firstStart = 1;
    int lastStart = 0;
    QVector<QByteArray> letters; ///< of On and Reply
    Step step; ///< of At and On
    Answer answer; ///< of Reply
};

/**
 * The script of a simulated engine. README.md describes the text format.
 *
 * A scenario tells only where an engine differs from a healthy one; the healthy engine is itself a
 * scenario, in healthyText().
 */
class Scenario
{
public:
    /// Parses @p text (UTF-8). Empty, with @p fault filled, when a line is malformed.
    static std::optional<Scenario> parse(const QByteArray& text, ScenarioFault* fault);

    /// The engine that runs when no scenario is given.
    static const char* healthyText();

    /// The name under which the reaction to SIGTERM is kept.
    static QByteArray sigterm();

    /// The life of start number @p start (from 1): the healthy one with this scenario's changes.
    EngineLife lifeOf(int start) const;

private:
    QVector<Statement> statementsOf(int start) const;

    QVector<Statement> statements;
};
