#pragma once

#include <QString>

class QProcess;

/**
 * Hides and shows the toolbar of the annotation application, through that application's own tools.
 *
 * A tool is started and then left alone: nobody waits for it, reads it or looks at its exit code,
 * and a failed start is not reported. Both share one process, so a request that comes while the
 * last tool still runs is lost, with a warning of Qt's.
 *
 * The tools' names hold backslashes and no slash. They are looked for in the current directory,
 * where they are absent unless a file is really named so, and then started through PATH.
 */
class AnnotoraSDKHelper
{
public:
    AnnotoraSDKHelper();

    /// Whether there is a regular file at @p path.
    bool fileExists(QString path);

    /// Starts the tool that hides the toolbar; does nothing where it is absent.
    void hideAnnotoraAnnotationToolbar();

    /// Starts the tool that shows the toolbar; does nothing where it is absent.
    void showAnnotoraAnnotationToolbar();

private:
    void startTool(const QString& path);

    QProcess* process; ///< never deleted, since that would kill a running tool
    QString hideToolPath;
    QString showToolPath;
};
