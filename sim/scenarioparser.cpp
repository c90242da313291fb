#include "scenarioparser.h"

#include "signalnames.h"

#include <limits>

namespace {

constexpr int longestMs = 86400000; // a day
constexpr int mostStarts = std::numeric_limits<int>::max();
constexpr int mostRepeats = 10000000;

QString quoted(const QByteArray& word)
{
    return QStringLiteral("\"%1\"").arg(QString::fromUtf8(word));
}

enum Option : unsigned { WithFirmware = 1, Style = 2, Repeat = 4, Partial = 8, Then = 16 };

} // namespace

struct ScenarioParser::StatementWord
{
    const char* word;
    Statement::Kind kind;
    bool (ScenarioParser::*parse)(Statement&);
};

struct ScenarioParser::ActionWord
{
    const char* word;
    Action::Kind kind;
    bool (ScenarioParser::*parse)(Action&);
};

struct ScenarioParser::OptionWord
{
    const char* word;
    Option option;
    WriteStyle style;
};

const ScenarioParser::StatementWord ScenarioParser::statementWords[] = {
    {"at", Statement::At, &ScenarioParser::parseAt},
    {"on", Statement::On, &ScenarioParser::parseOn},
    {"answer", Statement::Reply, &ScenarioParser::parseReply},
    {"unwritten", Statement::Unwritten, &ScenarioParser::parseUnwritten},
};

const ScenarioParser::ActionWord ScenarioParser::actionWords[] = {
    {"ignore", Action::Ignore, &ScenarioParser::parseIgnore},
    {"status", Action::Status, &ScenarioParser::parseStatus},
    {"firmware", Action::Firmware, &ScenarioParser::parseFirmware},
    {"raw", Action::Raw, &ScenarioParser::parseRaw},
    {"remove", Action::Remove, &ScenarioParser::parseIgnore},
    {"print", Action::Print, &ScenarioParser::parsePrint},
    {"print-error", Action::PrintError, &ScenarioParser::parsePrint},
    {"exit", Action::Die, &ScenarioParser::parseExit},
    {"signal", Action::Die, &ScenarioParser::parseSignal},
};

const ScenarioParser::OptionWord ScenarioParser::optionWords[] = {
    {"firmware", WithFirmware, WriteStyle::Whole},
    {"in-place", Style, WriteStyle::InPlace},
    {"slowly", Style, WriteStyle::Slowly},
    {"halves", Style, WriteStyle::Halves},
    {"repeat", Repeat, WriteStyle::Whole},
    {"partial", Partial, WriteStyle::Whole},
    {"then", Then, WriteStyle::Whole},
};

bool ScenarioParser::parse(const QByteArray& text)
{
    theStatements.clear();
    firstStart = 1;
    lastStart = mostStarts;
    theFault.line = 0;
    for (QByteArray line : text.split('\n')) {
        ++theFault.line;
        if (line.endsWith('\r'))
            line.chop(1);
        if (!parseLine(line))
            return false;
    }
    return true;
}

bool ScenarioParser::refuse(const QString& reason)
{
    theFault.reason = reason;
    return false;
}

bool ScenarioParser::parseLine(const QByteArray& line)
{
    QString reason;
    if (!tokens.cut(line, &reason))
        return refuse(reason);
    if (tokens.atEnd())
        return true;

    Statement statement;
    const QByteArray word = lastKeyword = tokens.take();
    bool known = word == "start";
    if (known && !parseStart(statement))
        return false;
    for (const StatementWord& entry : statementWords) {
        if (word != entry.word)
            continue;
        known = true;
        statement.kind = entry.kind;
        statement.firstStart = firstStart;
        statement.lastStart = lastStart;
        if (!(this->*entry.parse)(statement))
            return false;
        theStatements.append(statement);
    }
    if (!known)
        return refuse(QStringLiteral("unknown statement %1").arg(quoted(word)));
    if (!tokens.atEnd())
        return refuse(QStringLiteral("unexpected %1").arg(quoted(tokens.peek())));
    return true;
}

bool ScenarioParser::parseStart(Statement&)
{
    const QByteArray word = tokens.take();
    const int dash = word.indexOf('-');
    bool firstOk = true;
    bool lastOk = true;
    const QByteArray lastWord = word.mid(dash + 1);
    firstStart = word == "any" ? 1 : word.left(dash).toInt(&firstOk);
    if (word == "any" || (dash > 0 && lastWord.isEmpty()))
        lastStart = mostStarts;
    else
        lastStart = dash < 0 ? firstStart : lastWord.toInt(&lastOk);
    if (!firstOk || !lastOk || firstStart < 1 || lastStart < firstStart)
        return refuse(
            QStringLiteral("%1 names no starts: N, N-M, N- or any expected").arg(quoted(word)));
    return true;
}

bool ScenarioParser::parseAt(Statement& statement)
{
    return parseTime(statement.step.atMs) && parseAction(statement.step.action);
}

bool ScenarioParser::parseOn(Statement& statement)
{
    return parseLetters(statement.letters, true) && parseDelay(statement.step.atMs)
        && parseAction(statement.step.action);
}

bool ScenarioParser::parseReply(Statement& statement)
{
    Answer& answer = statement.answer;
    if (!parseLetters(statement.letters, false))
        return false;
    const bool isLate = tokens.peek() == "after";
    if (!parseDelay(answer.delayMs))
        return false;
    lastKeyword = tokens.peek();
    if (tokens.takeIf("exit"))
        return parseNumber(answer.exitCode, 0, 255);
    if (isLate && tokens.atEnd())
        return true;
    if (!isLate && tokens.takeIf("never"))
        answer.kind = Answer::Never;
    else if (tokens.takeIf("hang"))
        answer.kind = Answer::Hang;
    else
        return refuse(QStringLiteral("never, hang, exit or after expected"));
    return true;
}

bool ScenarioParser::parseUnwritten(Statement&)
{
    return true;
}

bool ScenarioParser::parseAction(Action& action)
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

bool ScenarioParser::parseIgnore(Action&)
{
    return true;
}

bool ScenarioParser::parseStatus(Action& action)
{
    return parseNumber(action.result, std::numeric_limits<int>::min(),
                       std::numeric_limits<int>::max())
        && parseOptions(action, WithFirmware | Style | Then);
}

bool ScenarioParser::parseFirmware(Action& action)
{
    action.firmware = 0;
    return parseNumber(*action.firmware, std::numeric_limits<int>::min(),
                       std::numeric_limits<int>::max())
        && parseOptions(action, Style | Then);
}

bool ScenarioParser::parseRaw(Action& action)
{
    return parseText(action.text) && parseOptions(action, Style | Repeat | Then);
}

bool ScenarioParser::parsePrint(Action& action)
{
    if (!parseText(action.text))
        return false;
    action.text.append('\n');
    return parseOptions(action, Repeat | Partial);
}

bool ScenarioParser::parseExit(Action& action)
{
    action.death = Death {Death::ByExit, 0};
    return parseNumber(action.death->value, 0, 255);
}

bool ScenarioParser::parseSignal(Action& action)
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

bool ScenarioParser::parseOptions(Action& action, unsigned allowed)
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

bool ScenarioParser::parseOption(Action& action, const OptionWord& option)
{
    switch (option.option) {
    case WithFirmware:
        action.firmware = 0;
        return parseNumber(*action.firmware, std::numeric_limits<int>::min(),
                           std::numeric_limits<int>::max());
    case Style:
        action.style = option.style;
        return option.style == WriteStyle::InPlace || parseTime(action.styleMs);
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

bool ScenarioParser::parseLetters(QVector<QByteArray>& letters, bool withSigterm)
{
    if (tokens.atEnd())
        return refuse(QStringLiteral("a letter is missing after %1").arg(quoted(lastKeyword)));
    const bool isOne = tokens.isQuoted();
    const QByteArray word = tokens.take();
    const QList<QByteArray> names = isOne ? QList<QByteArray> {word} : word.split('|');
    for (const QByteArray& name : names) {
        const bool isSigterm = withSigterm && !isOne && name == Scenario::sigterm();
        if (!isSigterm && QString::fromUtf8(name).toUcs4().size() != 1)
            return refuse(QStringLiteral("%1 is not one letter").arg(quoted(name)));
        letters.append(name);
    }
    return true;
}

bool ScenarioParser::parseText(QByteArray& text)
{
    if (!tokens.isQuoted())
        return refuse(QStringLiteral("a quoted text is missing after %1").arg(quoted(lastKeyword)));
    text = tokens.take();
    return true;
}

bool ScenarioParser::parseTime(int& ms)
{
    return parseNumber(ms, 0, longestMs);
}

bool ScenarioParser::parseDelay(int& ms)
{
    if (!tokens.takeIf("after"))
        return true;
    lastKeyword = "after";
    return parseTime(ms);
}

bool ScenarioParser::parseNumber(int& number, int least, int most)
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
