#include "fonts.h"

#include <QFont>
#include <QFontInfo>

void unifyFonts()
{
    // The name that the font system itself resolves to: a substitute must be a family that exists.
    const QString family = QFontInfo(QFont(QStringLiteral("Helvetica"))).family();
    for (const char* name : {"Helvetica Neue", "Poppins", "Tahoma"})
        QFont::insertSubstitution(QLatin1String(name), family);
}
