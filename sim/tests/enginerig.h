#pragma once

#include <QByteArray>
#include <QMap>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QVector>

/// One line of the simulated engine's journal, its values still encoded.
struct JournalEntry
{
    qint64 ms = 0;
    QByteArray who;
    qint64 pid = 0;
    QByteArray event;
    QMap<QByteArray, QByteArray> fields;
};

/// A process that is killed, silently, when it goes out of scope while it runs.
class RigProcess : public QProcess
{
public:
    ~RigProcess() override;
};

/**
 * A home of its own with the two programs of the simulated engine, for tests that run them.
 */
class EngineRig
{
public:
    /// The home is @p home below a temporary directory, with a documents directory in it.
    explicit EngineRig(const QString& home = QStringLiteral("home"));

    QString home() const { return homePath; }
    QString dataPath(const QString& name = QString()) const;
    QString statusPath() const { return dataPath(QStringLiteral("pensettings.ini")); }
    QString journalPath() const;

    /// Writes the scenario that the next programs run with.
    void setScenario(const QByteArray& text);

    /// Starts the engine and waits until it has written a line.
    bool startEngine(QProcess& engine);

    /// Starts @p program with @p arguments in this home, and waits until it runs.
    bool start(QProcess& process, const QString& program, const QStringList& arguments = {});

    /// Runs the tool with @p arguments to its end and returns its exit code; -1 when it was killed.
    int runTool(const QStringList& arguments, QByteArray* standardError = nullptr);

    /// The journal so far. A malformed line has an empty event.
    QVector<JournalEntry> journal() const;

    /// The journal's lines for @p event of @p who, in their order.
    QVector<JournalEntry> entries(const QByteArray& who, const QByteArray& event) const;

    /// The results of the engine's status lines, for example "-1 0 2".
    QByteArray results() const;

    QByteArray statusText() const;

    static QString program(const char* name);

    QProcessEnvironment environment;

private:
    QTemporaryDir directory;
    QString homePath;
};
