#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

/// One key and its value in a line of the journal.
struct JournalField
{
    const char* key;
    QByteArray value;
};

/**
 * The file in which engine and tool write down what they do, for tests that judge by it.
 *
 * One line for each event, appended with one write, so that lines of several processes never mix:
 * "<ms> <who>[<pid>] <event> <key>=<value> ...". The time is the wall clock's, in ms since 1970.
 * README.md lists the events.
 */
class Journal
{
public:
    /// @p who is "engine" or "tool". Without a @p path nothing is written.
    Journal(const char* who, const QString& path);
    ~Journal();
    Q_DISABLE_COPY(Journal)

    /// The file that VIREON_SIM_JOURNAL names; empty when there is none.
    static QString pathFromEnvironment();

    /// Whether the file could be opened, or none is wanted.
    bool isUsable() const;

    void add(const char* event, const QVector<JournalField>& fields = {});

    /// @p value with every byte but letters, digits and -._~/:+ as "%" and two hex digits.
    static QByteArray encoded(const QByteArray& value);

    /// The encoded @p values, separated by commas.
    static QByteArray encodedList(const QVector<QByteArray>& values);

private:
    const char* const who;
    const bool isWanted;
    int file = -1;
};
