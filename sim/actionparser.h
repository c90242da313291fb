#pragma once

#include "action.h"
#include "linetokens.h"

#include <QString>

/**
 * Reads one action of a scenario, and the words that statements and actions share.
 *
 * Nothing is guessed: the first word that does not fit is refused, and refusal() tells why.
 */
class ActionParser
{
public:
    /// Begins a new line; false when it cannot be cut into words.
    bool begin(const QByteArray& line);

    /// Reads an action with its options, to the end of the line.
    bool parseAction(Action& action);

    /// Reads a time in ms, at most a day.
    bool parseTime(int& ms);

    /// Reads "after" and a time where there is one.
    bool parseDelay(int& ms);

    bool parseNumber(int& number, int least, int most);

    /// Keeps the @p reason; false, for the caller to return.
    bool refuse(const QString& reason);

    const QString& refusal() const { return reasonOfRefusal; }

    static QString quoted(const QByteArray& word);

    LineTokens tokens;
    QByteArray lastKeyword; ///< what a missing word is missing after

private:
    struct ActionWord;
    struct OptionWord;

    bool parseNothing(Action& action);
    bool parseStatus(Action& action);
    bool parseFirmware(Action& action);
    bool parseRaw(Action& action);
    bool parsePrint(Action& action);
    bool parseExit(Action& action);
    bool parseSignal(Action& action);
    bool parseOptions(Action& action, unsigned allowed);
    bool parseOption(Action& action, const OptionWord& option);
    bool parseText(QByteArray& text);

    static const ActionWord actionWords[];
    static const OptionWord optionWords[];

    QString reasonOfRefusal;
};
