#include "app/fonts.h"

#include <QFont>
#include <QFontInfo>

void unifyFonts()
{
    // A substitute must be an existing family, so an alias is resolved first. The foundry may
    // follow in brackets.
    const QString resolved = QFontInfo(QFont(QStringLiteral("Helvetica"))).family();
    const QString family = resolved.section(QLatin1String(" ["), 0, 0);
    for (const char* name : {"Helvetica Neue", "Poppins", "Tahoma"})
        QFont::insertSubstitution(QLatin1String(name), family);
}
