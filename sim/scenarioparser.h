#pragma once

#include "linetokens.h"
#include "scenario.h"

/**
 * Turns the text of a scenario into statements.
 *
 * Nothing is guessed: the first word that does not fit refuses the whole text, and fault() tells
 * its line and the reason.
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
    struct ActionWord;
    struct OptionWord;

    bool refuse(const QString& reason);
    bool parseLine(const QByteArray& line);

    bool parseStart(Statement& statement);
    bool parseAt(Statement& statement);
    bool parseOn(Statement& statement);
    bool parseReply(Statement& statement);
    bool parseUnwritten(Statement& statement);

    bool parseAction(Action& action);
    bool parseIgnore(Action& action);
    bool parseStatus(Action& action);
    bool parseFirmware(Action& action);
    bool parseRaw(Action& action);
    bool parsePrint(Action& action);
    bool parseExit(Action& action);
    bool parseSignal(Action& action);

    bool parseOptions(Action& action, unsigned allowed);
    bool parseOption(Action& action, const OptionWord& option);

    bool parseLetters(QVector<QByteArray>& letters, bool withSigterm);
    bool parseText(QByteArray& text);
    bool parseTime(int& ms);
    bool parseNumber(int& number, int least, int most);
    bool parseDelay(int& ms);

    static const StatementWord statementWords[];
    static const ActionWord actionWords[];
    static const OptionWord optionWords[];

    LineTokens tokens;
    QByteArray lastKeyword; ///< for the reason of a refusal
    int firstStart = 1; ///< of the section that is being read
    int lastStart = 0;
    ScenarioFault theFault;
    QVector<Statement> theStatements;
};
