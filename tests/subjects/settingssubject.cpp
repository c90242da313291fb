// settingssubject [clean] [save]: makes the settings as the program does and prints every field as
// "name=value"; "clean" then cleans the working directory, "save" saves another profile, 7.
//
// Its C library is the one of fakesystem.cpp.

#include "settings/filehelper.h"
#include "settings/globalsettings.h"
#include "support/settingsfields.h"

#include <QCoreApplication>
#include <QTextCodec>

#include <clocale>
#include <cstdio>
#include <sys/resource.h>

namespace {

void print(const GS& settings)
{
    for (const SettingsField& field : settingsFields(settings))
        std::printf("%s=%s\n", field.name.constData(), field.value.constData());
}

} // namespace

int main(int argc, char** argv)
{
    const rlimit noCoreFile {0, 0};
    setrlimit(RLIMIT_CORE, &noCoreFile);
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    const QCoreApplication application(argc, argv);
    std::printf("locale=%s\n", setlocale(LC_CTYPE, nullptr));
    GS* settings = GS::instance();
    std::printf("instances=%d\n", settings == GS::instance() ? 1 : 2);
    print(*settings);
    for (const QString& action : QCoreApplication::arguments().mid(1)) {
        if (action == QLatin1String("clean"))
            FileHelper::cleanWorkingDirectory();
        if (action == QLatin1String("save")) {
            settings->profile = 7;
            settings->saveUserSettings();
        }
    }
    return 0;
}
