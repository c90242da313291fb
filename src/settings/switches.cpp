#include "settings/switches.h"

#include "base/regularfile.h"

#include <QFileInfo>
#include <QSettings>

#include <algorithm>

namespace {

bool setFlag(bool& field, const QString& text)
{
    field = text.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0;
    return field || text.compare(QLatin1String("false"), Qt::CaseInsensitive) == 0;
}

bool setNumber(qint64& field, const Switches::Number& row, const QString& text)
{
    bool parsed = false;
    const qint64 number = text.toLongLong(&parsed);
    if (!parsed || number < row.least || number > row.most)
        return false;
    field = number;
    return true;
}

/// A text with commas in it is a list to QSettings.
QString textOf(const QSettings& file, const QString& key)
{
    return file.value(key).toStringList().join(QLatin1String(", "));
}

QString wrongValue(const Switches::Row& row, const QString& text)
{
    return QStringLiteral("%1: \"%2\" is wrong, %3 wanted; it stays off")
        .arg(QLatin1String(row.name), text, Switches::wanted(row));
}

bool isReadable(const QString& path)
{
    QFile file;
    return openRegularFile(file, path, QIODevice::ReadOnly);
}

} // namespace

const std::array<Switches::Row, 9>& Switches::rows()
{
    static const std::array<Row, 9> table {{
        {"mailbox", Flag {&Switches::mailbox}, "take commands that other programs send"},
        {"logWindow", Flag {&Switches::logWindow}, "open a window with the log by Ctrl+F"},
        {"logFile", Path {&Switches::logFile},
         "write the log into this file; a relative path lies in the data directory"},
        {"logFileSize", Number {&Switches::logFileSize, 1024, 1073741824},
         "bytes after which a new log file is begun"},
        {"logFileKept", Number {&Switches::logFileKept, 0, 9},
         "older log files that are kept, as FILE.1 and so on"},
        {"sleep", Flag {&Switches::sleep}, "end the engine before the machine goes to sleep"},
        {"updater", Flag {&Switches::updater}, "quit while the updater is at work"},
        {"autostartEntry", Flag {&Switches::autostartEntry},
         "let the settings' check box write the entry that starts the program at log-in"},
        {"annotationToolbar", Flag {&Switches::annotationToolbar},
         "hide the annotation toolbar during calibrations"},
    }};
    return table;
}

const Switches::Row* Switches::find(const QString& name)
{
    const auto& table = rows();
    const auto* const found = std::find_if(table.begin(), table.end(),
                                           [&name](const Row& row) { return name == row.name; });
    return found == table.end() ? nullptr : found;
}

QString Switches::wanted(const Row& row)
{
    if (const auto* number = std::get_if<Number>(&row.value))
        return QStringLiteral("%1 to %2").arg(number->least).arg(number->most);
    return std::holds_alternative<Flag>(row.value) ? QStringLiteral("true or false")
                                                   : QStringLiteral("a path");
}

bool Switches::set(const Row& row, const QString& text)
{
    if (const auto* flag = std::get_if<Flag>(&row.value))
        return setFlag(this->*flag->field, text);
    if (const auto* path = std::get_if<Path>(&row.value)) {
        this->*path->field = text;
        return true;
    }
    const auto& number = std::get<Number>(row.value);
    if (setNumber(this->*number.field, number, text))
        return true;
    // Both numbers belong to the log file.
    logFile.clear();
    return false;
}

QStringList Switches::read(const QString& path)
{
    if (!QFileInfo::exists(path))
        return {};
    // Looked at first: QSettings would wait for the other end of a pipe.
    const bool readable = isReadable(path);
    const QSettings file(readable ? path : QString(), QSettings::IniFormat);
    if (!readable || file.status() != QSettings::NoError)
        return {QStringLiteral("it cannot be read; all in it stays off")};
    QStringList faults;
    for (const QString& key : file.allKeys()) {
        if (!find(key))
            faults << QStringLiteral("unknown key \"%1\"").arg(key);
    }
    // In the table's order, so that a wrong number finds the file's path set.
    for (const Row& row : rows()) {
        const QString key = QLatin1String(row.name);
        if (file.contains(key) && !set(row, textOf(file, key)))
            faults << wrongValue(row, textOf(file, key));
    }
    return faults;
}
