#include "ctl/reportarchive.h"

#include "base/regularfile.h"
#include "ctl/supportreport.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QTemporaryFile>

namespace {

const QString topName = QStringLiteral("vireon-report");

QString cannotWrite(const QString& path, const QString& reason)
{
    return QStringLiteral("%1 cannot be written: %2").arg(path, reason);
}

/// Puts the files below @p top; empty, or what went wrong.
QString layOut(const QDir& top, const QList<ReportFile>& files)
{
    for (const ReportFile& file : files) {
        if (!file.content)
            continue;
        const QString path = top.filePath(topName + '/' + file.name);
        top.mkpath(QFileInfo(path).path());
        QFile copy(path);
        if (!copy.open(QIODevice::WriteOnly) || copy.write(*file.content) != file.content->size()
            || !copy.flush())
            return copy.errorString();
    }
    return {};
}

/// Has tar pack what is in @p top; empty, or what it says is wrong.
QString pack(const QString& top, const QString& archive)
{
    QProcess tar;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("TAR_OPTIONS"));
    tar.setProcessEnvironment(environment);
    tar.setProcessChannelMode(QProcess::MergedChannels);
    tar.setStandardInputFile(QProcess::nullDevice());
    // The user's name is nobody's business.
    tar.start(QStringLiteral("tar"),
              {"--create", "--gzip", "--owner=0", "--group=0", "--numeric-owner", "--file", archive,
               "--directory", top, topName});
    tar.waitForFinished(-1);
    if (tar.error() == QProcess::FailedToStart)
        return tar.errorString();
    const bool isDone = tar.exitStatus() == QProcess::NormalExit && tar.exitCode() == 0;
    return isDone ? QString() : QString::fromLocal8Bit(tar.readAll()).simplified();
}

} // namespace

QString reasonAgainstArchive(const QString& path)
{
    const QFileInfo target(path);
    if (target.exists() || target.isSymLink())
        return QStringLiteral("%1 is there already, and stays as it is").arg(path);
    if (!QFileInfo(target.absolutePath()).isDir())
        return cannotWrite(path, QStringLiteral("there is no such directory"));
    return {};
}

QString writeReportArchive(const QString& path, const QList<ReportFile>& files)
{
    const QTemporaryDir staging;
    if (!staging.isValid())
        return cannotWrite(path, staging.errorString());
    if (const QString fault = layOut(QDir(staging.path()), files); !fault.isEmpty())
        return cannotWrite(path, fault);
    const QString target = QFileInfo(path).absoluteFilePath();
    QTemporaryFile unfinished(target + QLatin1String(".XXXXXX")); // for its user alone
    if (!unfinished.open())
        return cannotWrite(path, unfinished.errorString());
    if (const QString fault = pack(staging.path(), unfinished.fileName()); !fault.isEmpty())
        return cannotWrite(path, fault);
    if (renameUnlessTaken(unfinished.fileName(), target))
        return {};
    const QString taken = reasonAgainstArchive(path);
    return taken.isEmpty() ? cannotWrite(path, QStringLiteral("it cannot get its name")) : taken;
}
