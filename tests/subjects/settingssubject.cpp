// settingssubject [clean] [save]: makes the settings as the program does and prints every field as
// "name=value"; "clean" then cleans the working directory, "save" saves another profile, 7.
//
// SUBJECT_PROCESSORS is the number of processors that it finds; what it opens below "/var/vireon"
// lies in the directory SUBJECT_VAR instead.

#include "settings/filehelper.h"
#include "settings/globalsettings.h"
#include "support/settingsfields.h"

#include <QCoreApplication>
#include <QTextCodec>

#include <clocale>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <string>
#include <sys/resource.h>
#include <unistd.h>

// These two stand before the C library's, for Qt as well. A preloaded library would do the same,
// but not together with the sanitizers.

extern "C" long sysconf(int name) noexcept
{
    using Function = long (*)(int);
    static const auto real = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "sysconf"));
    const char* processors = name == _SC_NPROCESSORS_ONLN ? getenv("SUBJECT_PROCESSORS") : nullptr;
    return processors ? std::strtol(processors, nullptr, 10) : real(name);
}

extern "C" int open(const char* path, int flags, ...)
{
    using Function = int (*)(const char*, int, ...);
    static const auto real = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "open"));
    va_list arguments;
    va_start(arguments, flags);
    const auto mode = (flags & O_CREAT) ? va_arg(arguments, mode_t) : mode_t(0);
    va_end(arguments);
    const std::string systemDir = "/var/vireon/";
    const char* replacement = getenv("SUBJECT_VAR");
    if (replacement && std::string(path).rfind(systemDir, 0) == 0)
        return real((replacement + ('/' + std::string(path).substr(systemDir.size()))).c_str(),
                    flags, mode);
    return real(path, flags, mode);
}

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
