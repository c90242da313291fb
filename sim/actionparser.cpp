#include "actionparser.h"

#include "signalnames.h"

#include <limits>

namespace {

constexpr int longestMs = 86400000; // a day
constexpr int mostRepeats = 10000000;
constexpr int leastInt = std::numeric_limits<int>::min();
constexpr int mostInt = std::numeric_limits<int>::max();

enum Option : unsigned { WithFirmware = 1, Style = 2, Repeat = 4, Partial = 8, Then = 16 };

} // namespace

struct ActionParser::ActionWord
{
    const char* word;
    Action::Kind kind;
    bool (ActionParser::*parse)(Action&);
};

struct ActionParser::OptionWord
{
    const char* word;
    Option option;
    WriteStyle style;
};

const ActionParser::ActionWord ActionParser::actionWords[] = {
    {"ignore", Action::Ignore, &ActionParser::parseNothing},
    {"status", Action::Status, &ActionParser::parseStatus},
    {"firmware", Action::Firmware, &ActionParser::parseFirmware},
    {"raw", Action::Raw, &ActionParser::parseRaw},
    {"remove", Action::Remove, &ActionParser::parseNothing},
    {"print", Action::Print, &ActionParser::parsePrint},
    {"print-error", Action::PrintError, &ActionParser::parsePrint},
    {"exit", Action::Die, &ActionParser::parseExit},
    {"signal", Action::Die, &ActionParser::parseSignal},
};

const ActionParser::OptionWord ActionParser::optionWords[] = {
    {"firmware", WithFirmware, WriteStyle::Whole}, {"slowly", Style, WriteStyle::Slowly},
    {"halves", Style, WriteStyle::Halves},         {"repeat", Repeat, WriteStyle::Whole},
    {"partial", Partial, WriteStyle::Whole},       {"then", Then, WriteStyle::Whole},
};

QString ActionParser::quoted(const QByteArray& word)
{
    return QStringLiteral("\"%1\"").arg(QString::fromUtf8(word));
}

bool ActionParser::refuse(const QString& reason)
{
    reasonOfRefusal = reason;
    return false;
}

bool ActionParser::begin(const QByteArray& line)
{
    lastKeyword.clear();
    return tokens.cut(line, &reasonOfRefusal);
}

bool ActionParser::parseAction(Action& action)
{
    if (tokens.atEnd())
        return refuse(QStringLiteral("an action is missing"));
    const QByteArray word = lastKeyword = tokens.take();
    for (const ActionWord& entry : actionWords) {
        if (word == entry.word) {
            action.kind = entry.kind;
            return (this->*entry.parse)(action);
        }
    }
    return refuse(QStringLiteral("unknown action %1").arg(quoted(word)));
}

bool ActionParser::parseNothing(Action&)
{
    return true;
}

bool ActionParser::parseStatus(Action& action)
{
    return parseNumber(action.result, leastInt, mostInt)
        && parseOptions(action, WithFirmware | Style | Then);
}

bool ActionParser::parseFirmware(Action& action)
{
    action.firmware = 0;
    return parseNumber(*action.firmware, leastInt, mostInt) && parseOptions(action, Style | Then);
}

bool ActionParser::parseRaw(Action& action)
{
    return parseText(action.text) && parseOptions(action, Style | Then);
}

bool ActionParser::parsePrint(Action& action)
{
    if (!parseText(action.text))
        return false;
    action.text.append('\n');
    return parseOptions(action, Repeat | Partial);
}

bool ActionParser::parseExit(Action& action)
{
    action.death = Death {Death::ByExit, 0};
    return parseNumber(action.death->value, 0, 255);
}

bool ActionParser::parseSignal(Action& action)
{
    if (tokens.atEnd())
        return refuse(QStringLiteral("a signal is missing after \"signal\""));
    const QByteArray name = tokens.take();
    const int number = signalNumber(name);
    if (number == 0)
        return refuse(QStringLiteral("unknown signal %1").arg(quoted(name)));
    action.death = Death {Death::BySignal, number};
    return true;
}

bool ActionParser::parseOptions(Action& action, unsigned allowed)
{
    while (!tokens.atEnd()) {
        const OptionWord* found = nullptr;
        for (const OptionWord& entry : optionWords) {
            if ((allowed & entry.option) != 0 && tokens.takeIf(entry.word)) {
                found = &entry;
                break;
            }
        }
        if (!found)
            return refuse(QStringLiteral("unexpected %1").arg(quoted(tokens.peek())));
        lastKeyword = found->word;
        allowed &= ~static_cast<unsigned>(found->option); // each option once
        if (!parseOption(action, *found))
            return false;
    }
    return true;
}

bool ActionParser::parseOption(Action& action, const OptionWord& option)
{
    switch (option.option) {
    case WithFirmware:
        action.firmware = 0;
        return parseNumber(*action.firmware, leastInt, mostInt);
    case Style:
        action.style = option.style;
        return parseTime(action.styleMs);
    case Repeat:
        return parseNumber(action.repeat, 1, mostRepeats);
    case Partial:
        action.text.chop(1);
        return true;
    case Then:
        break;
    }
    lastKeyword = tokens.peek();
    if (tokens.takeIf("exit"))
        return parseExit(action);
    if (tokens.takeIf("signal"))
        return parseSignal(action);
    return refuse(QStringLiteral("exit or signal expected after \"then\""));
}

bool ActionParser::parseText(QByteArray& text)
{
    if (!tokens.isQuoted())
        return refuse(QStringLiteral("a quoted text is missing after %1").arg(quoted(lastKeyword)));
    text = tokens.take();
    return true;
}

bool ActionParser::parseTime(int& ms)
{
    return parseNumber(ms, 0, longestMs);
}

bool ActionParser::parseDelay(int& ms)
{
    if (!tokens.takeIf("after"))
        return true;
    lastKeyword = "after";
    return parseTime(ms);
}

bool ActionParser::parseNumber(int& number, int least, int most)
{
    if (tokens.atEnd())
        return refuse(QStringLiteral("a number is missing after %1").arg(quoted(lastKeyword)));
    const QByteArray word = tokens.take();
    bool isNumber = false;
    const qlonglong value = word.toLongLong(&isNumber);
    if (!isNumber)
        return refuse(QStringLiteral("%1 is not a number").arg(quoted(word)));
    if (value < least || value > most)
        return refuse(
            QStringLiteral("%1 is not in the range %2 to %3").arg(value).arg(least).arg(most));
    number = static_cast<int>(value);
    return true;
}
