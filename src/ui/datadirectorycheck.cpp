#include "ui/datadirectorycheck.h"

#include "settings/globalsettings.h"

#include <QFileInfo>
#include <QStandardPaths>

QString DataDirectoryCheck::problem()
{
    const GS& settings = *GS::instance();
    if (settings.documentsDir.isEmpty())
        return tr("Vireon needs the directory \"%1\", which does not exist. "
                  "Create it and start Vireon again.")
            .arg(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    const QFileInfo directory(settings.dataDir);
    if (!directory.isDir() || !directory.isWritable())
        return tr("Vireon cannot write into the directory \"%1\". "
                  "Change its owner or its permissions and start Vireon again.")
            .arg(settings.dataDir);
    return QString();
}
