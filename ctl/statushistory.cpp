#include "ctl/statushistory.h"

#include "ctl/controllerstate.h"
#include "engine/statusreport.h"
#include "settings/globalsettings.h"

#include <QDateTime>
#include <QFileInfo>
#include <QRegularExpression>

namespace {

constexpr int mostChanges = 100;

/// In a log file's line, what the reader of the status file and the engine's supervisor tell.
const QString changePattern =
    QStringLiteral("^(\\d\\d\\.\\d\\d\\.\\d{4} \\d\\d:\\d\\d:\\d\\d): Debug: "
                   "(?:statuslistener \"(-?\\d+)\"|vireon-main crashed)");

QString tellStatusFile()
{
    const QString path = QString::fromStdString(GS::instance()->penSettingsPath);
    const auto report = StatusReport::fromFile(path);
    if (!report)
        return QStringLiteral("there is none");
    const auto textOf = [](const std::optional<int>& number) {
        return number ? QString::number(*number) : QStringLiteral("none");
    };
    return QStringLiteral("status %1, firmware %2, written %3")
        .arg(textOf(report->status), textOf(report->firmware),
             QFileInfo(path).lastModified().toString(Qt::ISODate));
}

QString tellChange(const QRegularExpressionMatch& change)
{
    const QString code = change.captured(2);
    const QString text = code.isEmpty()
        ? QStringLiteral("the engine has ended and is started again")
        : ControllerState {true, code.toInt(), {}}.text();
    return QStringLiteral("%1 %2 %3\n").arg(change.captured(1), code.rightJustified(4), text);
}

} // namespace

QByteArray tellStatusHistory(const ControllerState& state, const QList<QByteArray>& logs)
{
    QString text =
        QStringLiteral("now: %1\nstatus file: %2\n\n").arg(state.text(), tellStatusFile());
    if (logs.isEmpty()) {
        text +=
            QStringLiteral("The last changes are not known: they are in the log, and no log file "
                           "is kept. logFile in config/integration.conf switches one on.\n");
        return text.toUtf8();
    }
    const QRegularExpression pattern(changePattern, QRegularExpression::MultilineOption);
    QStringList changes;
    for (const QByteArray& log : logs) {
        for (auto match = pattern.globalMatch(QString::fromUtf8(log)); match.hasNext();)
            changes << tellChange(match.next());
    }
    text += QStringLiteral("The last changes, as the log has them:\n");
    text += changes.mid(qMax(0, changes.size() - mostChanges)).join(QString());
    return text.toUtf8();
}
