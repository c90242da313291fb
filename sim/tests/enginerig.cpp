#include "sim/tests/enginerig.h"

#include "support/files.h"
#include "support/patience.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

namespace {

JournalEntry entryOf(const QByteArray& line)
{
    static const QRegularExpression pattern(
        QStringLiteral("^(\\d{13}) (engine|tool)\\[(\\d+)\\] ([a-z]+)((?: [a-z]+=[!-~]*)*)$"));
    const auto match = pattern.match(QString::fromLatin1(line));
    JournalEntry entry;
    entry.ms = match.captured(1).toLongLong();
    entry.who = match.captured(2).toLatin1();
    entry.pid = match.captured(3).toLongLong();
    entry.event = match.captured(4).toLatin1();
    for (const QString& field : match.captured(5).split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const int sign = field.indexOf(QLatin1Char('='));
        entry.fields.insert(field.left(sign).toLatin1(), field.mid(sign + 1).toLatin1());
    }
    return entry;
}

} // namespace

RigProcess::~RigProcess()
{
    kill();
    waitForFinished(patienceMs);
}

EngineRig::EngineRig(const QString& home)
    : environment(QProcessEnvironment::systemEnvironment())
    , homePath(directory.filePath(home))
{
    QDir().mkpath(homePath + QStringLiteral("/Documents"));
    environment.insert(QStringLiteral("HOME"), homePath);
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), homePath + QStringLiteral("/.config"));
    environment.insert(QStringLiteral("VIREON_SIM_JOURNAL"), journalPath());
    environment.remove(QStringLiteral("VIREON_SIM_SCENARIO"));
}

QString EngineRig::dataPath(const QString& name) const
{
    return homePath + QStringLiteral("/Documents/Vireon/") + name;
}

QString EngineRig::journalPath() const
{
    return directory.filePath(QStringLiteral("journal"));
}

void EngineRig::setScenario(const QByteArray& text)
{
    QFile file(directory.filePath(QStringLiteral("test.scenario")));
    if (file.open(QIODevice::WriteOnly))
        file.write(text);
    environment.insert(QStringLiteral("VIREON_SIM_SCENARIO"), file.fileName());
}

bool EngineRig::startEngine(QProcess& engine)
{
    return start(engine, program("vireon-main"))
        && (engine.bytesAvailable() > 0 || engine.waitForReadyRead(patienceMs));
}

bool EngineRig::start(QProcess& process, const QString& program, const QStringList& arguments)
{
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(homePath);
    process.start(program, arguments);
    return process.waitForStarted(patienceMs);
}

int EngineRig::runTool(const QStringList& arguments, QByteArray* standardError)
{
    RigProcess tool;
    if (!start(tool, program("vireon-sdk"), arguments) || !tool.waitForFinished(patienceMs))
        return -1;
    if (standardError)
        *standardError = tool.readAllStandardError();
    return tool.exitStatus() == QProcess::NormalExit ? tool.exitCode() : -1;
}

QVector<JournalEntry> EngineRig::journal() const
{
    QVector<JournalEntry> result;
    QList<QByteArray> lines = contentOf(journalPath(), {}).split('\n');
    lines.removeLast();
    for (const QByteArray& line : lines)
        result.append(entryOf(line));
    return result;
}

QVector<JournalEntry> EngineRig::entries(const QByteArray& who, const QByteArray& event) const
{
    QVector<JournalEntry> result;
    for (const JournalEntry& entry : journal()) {
        if (entry.who == who && entry.event == event)
            result.append(entry);
    }
    return result;
}

QByteArray EngineRig::results() const
{
    QByteArrayList result;
    for (const JournalEntry& entry : entries("engine", "status"))
        result.append(entry.fields.value("result"));
    return result.join(' ');
}

QByteArray EngineRig::statusText() const
{
    return contentOf(statusPath(), {});
}

QString EngineRig::program(const char* name)
{
    return QStringLiteral(VIREON_BIN_DIR "/") + QLatin1String(name);
}
