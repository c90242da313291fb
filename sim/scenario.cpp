#include "scenario.h"

#include "scenarioparser.h"

#include <algorithm>

namespace {

/// Whether @p changes leave nothing of the healthy engine's own status reports at its start.
bool replacesStart(const QVector<Statement>& changes)
{
    return std::any_of(changes.begin(), changes.end(), [](const Statement& s) {
        return s.kind == Statement::Unwritten
            || (s.kind == Statement::At && s.step.action.decidesResult());
    });
}

/// Whether @p changes leave nothing of the healthy engine's reaction to @p letter: what prints or
/// changes only the firmware comes on top of it.
bool replacesReaction(const QVector<Statement>& changes, const QByteArray& letter)
{
    return std::any_of(changes.begin(), changes.end(), [&letter](const Statement& s) {
        const Action& action = s.step.action;
        return s.kind == Statement::On && s.letters.contains(letter)
            && (action.decidesResult() || action.kind == Action::Die
                || action.kind == Action::Ignore);
    });
}

bool isUnwritten(const QVector<Statement>& changes)
{
    return std::any_of(changes.begin(), changes.end(),
                       [](const Statement& s) { return s.kind == Statement::Unwritten; });
}

/// Takes @p statements into @p life.
void add(const QVector<Statement>& statements, EngineLife& life)
{
    for (const Statement& statement : statements) {
        if (statement.kind == Statement::At)
            life.timeline.append(statement.step);
        for (const QByteArray& letter : statement.letters) {
            if (statement.kind == Statement::On)
                life.reactions[letter].append(statement.step);
            else
                life.answers[letter] = statement.answer;
        }
    }
}

/// What of the healthy engine is left under @p changes.
QVector<Statement> remainderOf(const QVector<Statement>& healthy, const QVector<Statement>& changes)
{
    const bool newStart = replacesStart(changes);
    const bool unwritten = isUnwritten(changes);
    QVector<Statement> rest;
    for (Statement statement : healthy) {
        if (statement.kind == Statement::At && newStart)
            continue;
        if (unwritten && statement.step.action.touchesStatusFile())
            continue;
        const auto replaced = [&changes](const QByteArray& letter) {
            return replacesReaction(changes, letter);
        };
        auto& letters = statement.letters;
        letters.erase(std::remove_if(letters.begin(), letters.end(), replaced), letters.end());
        rest.append(statement);
    }
    return rest;
}

} // namespace

std::optional<Scenario> Scenario::parse(const QByteArray& text, ScenarioFault* fault)
{
    ScenarioParser parser;
    if (!parser.parse(text)) {
        *fault = parser.fault();
        return std::nullopt;
    }
    Scenario scenario;
    scenario.statements = parser.statements();
    return scenario;
}

const char* Scenario::healthyText()
{
    return "at 0 status -1\n"
           "at 1000 status 0\n"
           "on a|m|t status 2\n"
           "on a|m|t after 2000 status 0\n"
           "on 0 status -6\n"
           "on Q exit 0\n"
           "on sigterm exit 0\n";
}

QByteArray Scenario::sigterm()
{
    return QByteArrayLiteral("sigterm");
}

EngineLife Scenario::lifeOf(int start) const
{
    ScenarioFault fault;
    const std::optional<Scenario> healthy = parse(healthyText(), &fault);
    Q_ASSERT(healthy);
    const QVector<Statement> changes = statementsOf(start);
    EngineLife life;
    add(remainderOf(healthy->statements, changes), life);
    add(changes, life);
    return life;
}

QVector<Statement> Scenario::statementsOf(int start) const
{
    QVector<Statement> result;
    std::copy_if(
        statements.begin(), statements.end(), std::back_inserter(result),
        [start](const Statement& s) { return start >= s.firstStart && start <= s.lastStart; });
    return result;
}
