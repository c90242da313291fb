#include "app/fonts.h"

#include <QFont>
#include <QFontInfo>
#include <QGuiApplication>

void unifyFonts()
{
    const QString desktops = QGuiApplication::font().family();
    // A substitute must be an existing family, so an alias is resolved first. The foundry may
    // follow in brackets.
    const QString resolved = QFontInfo(QFont(QStringLiteral("Helvetica"))).family();
    const QString family = resolved.section(QLatin1String(" ["), 0, 0);
    for (const char* name : {"Helvetica", "Helvetica Neue", "Poppins", "Tahoma"})
        QFont::insertSubstitutions(QLatin1String(name), {family, desktops});
}
