#include "ctl/supportreport.h"

#include "app/commandline.h"
#include "base/regularfile.h"
#include "ctl/controllerstate.h"
#include "ctl/machinefacts.h"
#include "ctl/statushistory.h"
#include "settings/globalsettings.h"
#include "settings/switches.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QDirIterator>

#include <vector>

namespace {

constexpr qint64 longestFile = 16777216; // bytes
constexpr int mostNames = 2000;
constexpr int nameWidth = 24;

QString say(const char* text)
{
    return QCoreApplication::translate("vireonctl", text);
}

QString besideTheProgram(const QString& name)
{
    return QCoreApplication::applicationDirPath() + '/' + name;
}

std::optional<QByteArray> contentOf(const QString& path)
{
    QFile file;
    if (!openRegularFile(file, path, QIODevice::ReadOnly))
        return std::nullopt;
    if (file.size() <= longestFile || !file.seek(file.size() - longestFile))
        return file.read(longestFile);
    return "[only the end of it]\n" + file.read(longestFile);
}

// --- The log files ------------------------------------------------------------------------------

/// What the command line of the process says beside the file of switches.
void applyCommandLine(pid_t process, Switches& switches)
{
    QFile file(QStringLiteral("/proc/%1/cmdline").arg(process));
    if (process == 0 || !file.open(QIODevice::ReadOnly))
        return;
    QList<QByteArray> words = file.readAll().split('\0');
    words.removeLast();
    std::vector<char*> pointers;
    for (QByteArray& word : words)
        pointers.push_back(word.data());
    CommandLine line(static_cast<int>(pointers.size()), pointers.data());
    if (!line.answer())
        line.applyTo(switches);
}

/// The oldest first.
QList<ReportFile> gatherLogs(const ControllerState& state)
{
    Switches switches;
    switches.read(besideTheProgram("config/integration.conf"));
    applyCommandLine(state.process, switches);
    if (switches.logFile.isEmpty())
        return {};
    const QFileInfo last(QDir(GS::instance()->dataDir).filePath(switches.logFile));
    QList<ReportFile> files;
    for (qint64 number = switches.logFileKept; number >= 0; --number) {
        const QString end = number == 0 ? QString() : QStringLiteral(".%1").arg(number);
        const ReportFile file {"log/" + last.fileName() + end,
                               say(QT_TRANSLATE_NOOP("vireonctl", "log")),
                               contentOf(last.filePath() + end)};
        if (file.content || number == 0)
            files << file;
    }
    return files;
}

// --- The data directory
// ---------------------------------------------------------------------------

QString kindOf(const QFileInfo& file)
{
    if (file.isSymLink())
        return QStringLiteral("link");
    if (file.isDir())
        return QStringLiteral("directory");
    return file.isFile() ? QStringLiteral("%1 bytes").arg(file.size()) : QStringLiteral("device");
}

QByteArray listDataDirectory()
{
    const QDir top(GS::instance()->dataDir);
    QStringList lines;
    QDirIterator names(top.path(),
                       QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (names.hasNext() && lines.size() < mostNames) {
        const QFileInfo file(names.next());
        lines << QStringLiteral("%1  %2, %3")
                     .arg(top.relativeFilePath(file.filePath()).simplified(), kindOf(file),
                          file.lastModified().toString(Qt::ISODate));
    }
    lines.sort();
    if (names.hasNext())
        lines << QStringLiteral("[and more]");
    return (top.path() + '\n' + lines.join('\n') + '\n').toUtf8();
}

} // namespace

QList<ReportFile> gatherReport(const ControllerState& state)
{
    const QList<ReportFile> logs = gatherLogs(state);
    QList<QByteArray> logContents;
    for (const ReportFile& log : logs) {
        if (log.content)
            logContents << *log.content;
    }
    const QString userIni = QString::fromStdString(GS::instance()->userIniPath);
    return QList<ReportFile> {
               {"versions.txt",
                say(QT_TRANSLATE_NOOP("vireonctl", "versions of program, Qt and system")),
                tellVersions()},
               {"desktop.txt",
                say(QT_TRANSLATE_NOOP("vireonctl",
                                      "desktop, window manager, screens and their rates")),
                tellDesktop()},
               {"config/vireon.conf",
                say(QT_TRANSLATE_NOOP("vireonctl", "settings of the program")),
                contentOf(besideTheProgram("config/vireon.conf"))},
               {"config/integration.conf",
                say(QT_TRANSLATE_NOOP("vireonctl", "what is switched on")),
                contentOf(besideTheProgram("config/integration.conf"))},
               {"user.ini", say(QT_TRANSLATE_NOOP("vireonctl", "settings of the user")),
                contentOf(userIni)},
               {"status.txt", say(QT_TRANSLATE_NOOP("vireonctl", "state, and its last changes")),
                tellStatusHistory(state, logContents)},
               {"data-directory.txt",
                say(QT_TRANSLATE_NOOP("vireonctl", "names of the files in the data directory")),
                listDataDirectory()},
           }
    + logs;
}

QString listReport(const QList<ReportFile>& files)
{
    QString text;
    for (const ReportFile& file : files) {
        const QString size = file.content
            ? say(QT_TRANSLATE_NOOP("vireonctl", "%1 bytes")).arg(file.content->size())
            : say(QT_TRANSLATE_NOOP("vireonctl", "not there"));
        text += QStringLiteral("  %1 %2, %3\n").arg(file.name, -nameWidth).arg(file.meaning, size);
    }
    return text;
}
