#pragma once

#include <QString>
#include <QStringList>

#include <array>
#include <variant>

/**
 * What an administrator may switch on beside the program's main job.
 *
 * All is off unless "config/integration.conf" beside the program, or the command line, says
 * otherwise. The file is an INI file without sections; rows() tells its keys, which are also the
 * names of the command line's options. A flag is "true" or "false", in any letter case.
 */
struct Switches
{
    bool mailbox = false; ///< commands of other programs, see MailboxCommands
    bool logWindow = false; ///< Ctrl+F opens a window with the log
    QString logFile; ///< empty: none; a relative path lies in the data directory
    qint64 logFileSize = 1048576; ///< bytes, 1024 to 1073741824, at which a new file is begun
    qint64 logFileKept = 1; ///< predecessors of the log file that are kept, 0 to 9
    bool sleep = false; ///< ends the engine before the machine sleeps
    bool updater = false; ///< quits when the updater asks for it
    bool autostartEntry = false; ///< the settings' check box writes the desktop's entry
    bool annotationToolbar = false; ///< hides that toolbar during calibrations

    struct Flag
    {
        bool Switches::*field;
    };
    struct Path
    {
        QString Switches::*field;
    };
    struct Number
    {
        qint64 Switches::*field;
        qint64 least;
        qint64 most;
    };
    struct Row
    {
        const char* name;
        std::variant<Flag, Path, Number> value;
        const char* meaning; ///< one line
    };
    static const std::array<Row, 9>& rows();

    /// The row of this name; null when there is none.
    static const Row* find(const QString& name);

    /// What @p row may be set to, as one reads it in a message or a help text.
    static QString wanted(const Row& row);

    /// Sets @p row from its text. A wrong one switches off what the row belongs to, and gives
    /// false.
    bool set(const Row& row, const QString& text);

    /// Sets what the file at @p path says. A missing file says nothing. Tells what is wrong in it,
    /// one line each: unknown keys, wrong values, or that it cannot be read at all.
    QStringList read(const QString& path);
};
