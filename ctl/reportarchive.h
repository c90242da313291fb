#pragma once

#include <QList>
#include <QString>

struct ReportFile;

/// Writes those of @p files that have a content into the new archive @p path, a .tar.gz with one
/// directory, "vireon-report", that nobody but its user can read. It has its name once it is whole.
/// Gives what went wrong, with nothing left at @p path but what was there; empty when it is done.
QString writeReportArchive(const QString& path, const QList<ReportFile>& files);

/// Why there cannot be a new archive @p path, at a first look; empty when nothing is against it.
QString reasonAgainstArchive(const QString& path);
