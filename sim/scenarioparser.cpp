#include "scenarioparser.h"

#include <limits>

namespace {

constexpr int mostStarts = std::numeric_limits<int>::max();

/// Reads "N", "N-M" or "N-"; false for anything else.
bool readStarts(const QByteArray& word, int& first, int& last)
{
    last = mostStarts;
    const int dash = word.indexOf('-');
    bool firstOk = false;
    bool lastOk = true;
    first = (dash < 0 ? word : word.left(dash)).toInt(&firstOk);
    if (dash < 0)
        last = first;
    else if (dash + 1 < word.size())
        last = word.mid(dash + 1).toInt(&lastOk);
    return firstOk && lastOk && first >= 1 && last >= first;
}

} // namespace

struct ScenarioParser::StatementWord
{
    const char* word;
    Statement::Kind kind;
    bool (ScenarioParser::*parse)(Statement&);
};

const ScenarioParser::StatementWord ScenarioParser::statementWords[] = {
    {"at", Statement::At, &ScenarioParser::parseAt},
    {"on", Statement::On, &ScenarioParser::parseOn},
    {"answer", Statement::Reply, &ScenarioParser::parseReply},
    {"unwritten", Statement::Unwritten, &ScenarioParser::parseUnwritten},
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
        if (!parseLine(line)) {
            theFault.reason = words.refusal();
            return false;
        }
    }
    return true;
}

bool ScenarioParser::parseLine(const QByteArray& line)
{
    if (!words.begin(line))
        return false;
    if (words.tokens.atEnd())
        return true;
    const QByteArray word = words.lastKeyword = words.tokens.take();
    if (!(word == "start" ? parseStart() : parseStatement(word)))
        return false;
    if (!words.tokens.atEnd())
        return words.refuse(
            QStringLiteral("unexpected %1").arg(ActionParser::quoted(words.tokens.peek())));
    return true;
}

bool ScenarioParser::parseStart()
{
    const QByteArray word = words.tokens.take();
    return readStarts(word, firstStart, lastStart)
        || words.refuse(QStringLiteral("%1 names no starts: N, N-M or N- expected")
                            .arg(ActionParser::quoted(word)));
}

bool ScenarioParser::parseStatement(const QByteArray& word)
{
    for (const StatementWord& entry : statementWords) {
        if (word != entry.word)
            continue;
        Statement statement;
        statement.kind = entry.kind;
        statement.firstStart = firstStart;
        statement.lastStart = lastStart;
        if (!(this->*entry.parse)(statement))
            return false;
        theStatements.append(statement);
        return true;
    }
    return words.refuse(QStringLiteral("unknown statement %1").arg(ActionParser::quoted(word)));
}

bool ScenarioParser::parseAt(Statement& statement)
{
    return words.parseTime(statement.step.atMs) && words.parseAction(statement.step.action);
}

bool ScenarioParser::parseOn(Statement& statement)
{
    return parseLetters(statement.letters, true) && words.parseDelay(statement.step.atMs)
        && words.parseAction(statement.step.action);
}

bool ScenarioParser::parseReply(Statement& statement)
{
    Answer& answer = statement.answer;
    if (!parseLetters(statement.letters, false))
        return false;
    words.lastKeyword = words.tokens.peek();
    if (words.tokens.takeIf("after"))
        return words.parseTime(answer.delayMs);
    if (words.tokens.takeIf("exit"))
        return words.parseNumber(answer.exitCode, 0, 255);
    if (words.tokens.takeIf("never"))
        answer.kind = Answer::Never;
    else if (words.tokens.takeIf("hang"))
        answer.kind = Answer::Hang;
    else
        return words.refuse(QStringLiteral("never, hang, exit or after expected"));
    return true;
}

bool ScenarioParser::parseUnwritten(Statement&)
{
    return true;
}

bool ScenarioParser::parseLetters(QVector<QByteArray>& letters, bool withSigterm)
{
    if (words.tokens.atEnd())
        return words.refuse(QStringLiteral("a letter is missing after %1")
                                .arg(ActionParser::quoted(words.lastKeyword)));
    const bool isOne = words.tokens.isQuoted();
    const QByteArray word = words.tokens.take();
    const QList<QByteArray> names = isOne ? QList<QByteArray> {word} : word.split('|');
    for (const QByteArray& name : names) {
        const bool isSigterm = withSigterm && !isOne && name == Scenario::sigterm();
        if (!isSigterm && QString::fromUtf8(name).toUcs4().size() != 1)
            return words.refuse(
                QStringLiteral("%1 is not one letter").arg(ActionParser::quoted(name)));
        letters.append(name);
    }
    return true;
}
