#include "base/desktop.h"

#include <QtGlobal>

namespace {

const char* const variable = "XDG_CURRENT_DESKTOP";
const char* const themeVariable = "QT_QPA_PLATFORMTHEME";

} // namespace

bool isUnityDesktop()
{
    return qgetenv(variable).toLower() == "unity";
}

GtkThemeBlocker::GtkThemeBlocker()
{
    if (!isUnityDesktop())
        return;
    hiddenName = qgetenv(variable);
    qputenv(variable, "none");
    hiddenTheme = qgetenv(themeVariable);
    qunsetenv(themeVariable);
}

GtkThemeBlocker::~GtkThemeBlocker()
{
    restore();
}

void GtkThemeBlocker::restore()
{
    if (hiddenName.isEmpty())
        return;
    qputenv(variable, hiddenName);
    hiddenName.clear();
    if (!hiddenTheme.isEmpty())
        qputenv(themeVariable, hiddenTheme);
}
