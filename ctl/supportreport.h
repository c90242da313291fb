#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

struct ControllerState;

/// One file of the report for the support.
struct ReportFile
{
    QString name; ///< in the report, with "/" between directories
    QString meaning; ///< a few words, in the language of the translator installed
    std::optional<QByteArray> content; ///< empty: the machine has no such file
};

/// All that the support asks for, with the controller in this @p state, which need not run:
/// versions, desktop, the three settings files, status and its changes, log files, the data
/// directory's names.
///
/// Nothing else is read, and what is read is not changed. Of a file of more than 16 MiB only the
/// end is taken, and of the data directory 2000 names; both is said in the place. The log files are
/// those of config/integration.conf and of the running program's command line.
QList<ReportFile> gatherReport(const ControllerState& state);

/// What is in @p files, one line each.
QString listReport(const QList<ReportFile>& files);
