#pragma once

#include "actionparser.h"
#include "scenario.h"

/**
 * Turns the text of a scenario into statements.
 *
 * The first malformed line refuses the whole text; fault() tells its number and why.
 */
class ScenarioParser
{
public:
    /// False when the text is refused.
    bool parse(const QByteArray& text);

    const ScenarioFault& fault() const { return theFault; }
    const QVector<Statement>& statements() const { return theStatements; }

private:
    struct StatementWord;

    bool parseLine(const QByteArray& line);
    bool parseStart();
    bool parseStatement(const QByteArray& word);
    bool parseAt(Statement& statement);
    bool parseOn(Statement& statement);
    bool parseReply(Statement& statement);
    bool parseUnwritten(Statement& statement);
    bool parseLetters(QVector<QByteArray>& letters, bool withSigterm);

    static const StatementWord statementWords[];

    ActionParser words;
    int firstStart = 1; ///< of the section that is being read
    int lastStart = 0;
    ScenarioFault theFault;
    QVector<Statement> theStatements;
};
