#include "engine/annotorasdkhelper.h"

#include <QFileInfo>
#include <QProcess>

AnnotoraSDKHelper::AnnotoraSDKHelper()
    : process(new QProcess)
    , hideToolPath("SDK\\Annotora\\Annotora_SDK_HideAnnotationWindow.exe")
    , showToolPath("SDK\\Annotora\\Annotora_SDK_ShowAnnotationWindow.exe")
{
}

bool AnnotoraSDKHelper::fileExists(QString path)
{
    return QFileInfo(path).isFile();
}

void AnnotoraSDKHelper::hideAnnotoraAnnotationToolbar()
{
    startTool(hideToolPath);
}

void AnnotoraSDKHelper::showAnnotoraAnnotationToolbar()
{
    startTool(showToolPath);
}

void AnnotoraSDKHelper::startTool(const QString& path)
{
    if (fileExists(path))
        process->start(path, QStringList());
}
