#include "app/commandline.h"

#include "app/version.h"
#include "settings/switches.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr int usageError = 2;
const char* const helpName = "help";
const char* const versionName = "version";

/// An option of Qt's: it may take a value, as the next argument or after "=".
struct QtOption
{
    const char* name;
    bool takesValue;
};

// The ones that the application object takes, then those of its plug-in for X.
const QtOption qtOptions[] = {
    {"platform", true},      {"platformpluginpath", true},
    {"platformtheme", true}, {"plugin", true},
    {"geometry", true},      {"qwindowgeometry", true},
    {"title", true},         {"qwindowtitle", true},
    {"icon", true},          {"qwindowicon", true},
    {"style", true},         {"stylesheet", true},
    {"session", true},       {"qmljsdebugger", true},
    {"reverse", false},      {"widgetcount", false},
    {"testability", false},  {"qdebug", false},
    {"qdevel", false},       {"display", true},
    {"name", true},          {"visual", true},
    {"nograb", false},       {"dograb", false},
};

void addOption(QCommandLineParser& parser, const QtOption& row)
{
    QCommandLineOption option(QLatin1String(row.name));
    if (row.takesValue)
        option.setValueName(QStringLiteral("value"));
    option.setFlags(QCommandLineOption::HiddenFromHelp);
    parser.addOption(option);
}

void addOption(QCommandLineParser& parser, const Switches::Row& row)
{
    const QString name = QLatin1String(row.name);
    parser.addOption({name, QLatin1String(row.meaning), Switches::wanted(row)});
}

QStringList listOf(int count, char** texts)
{
    QStringList list;
    for (int i = 0; i < count; ++i)
        list << QString::fromLocal8Bit(texts[i]);
    return list;
}

/// The parser asks the application object for the program's name.
QString helpText(const QCommandLineParser& parser)
{
    char name[] = "vireon";
    char* names[] = {name, nullptr};
    int count = 1;
    const QCoreApplication application(count, names);
    return parser.helpText();
}

void print(std::FILE* where, const QString& text)
{
    std::fputs(text.toUtf8().constData(), where);
}

} // namespace

CommandLine::CommandLine(int argc, char** argv)
    : arguments(listOf(argc, argv))
{
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.setApplicationDescription(QStringLiteral(
        "Vireon, the controller of an interactive touch and pen projection.\n"
        "An option takes precedence over the line of its name in config/integration.conf.\n"
        "The options of Qt, such as --platform, are taken too."));
    parser.addOption({{QStringLiteral("h"), QLatin1String(helpName)}, "show this text"});
    parser.addOption({{QStringLiteral("v"), QLatin1String(versionName)}, "show the version"});
    for (const Switches::Row& row : Switches::rows())
        addOption(parser, row);
    for (const QtOption& row : qtOptions)
        addOption(parser, row);
}

std::optional<int> CommandLine::answer()
{
    const QString fault = findFault();
    if (!fault.isEmpty()) {
        print(stderr, QStringLiteral("vireon: %1\n").arg(fault));
        return usageError;
    }
    if (parser.isSet(QLatin1String(helpName))) {
        print(stdout, helpText(parser));
        return EXIT_SUCCESS;
    }
    if (parser.isSet(QLatin1String(versionName))) {
        print(stdout, QStringLiteral("Vireon %1\n").arg(QLatin1String(applicationVersion)));
        return EXIT_SUCCESS;
    }
    return std::nullopt;
}

QString CommandLine::findFault()
{
    if (!parser.parse(arguments))
        return parser.errorText();
    Switches tried;
    for (const Switches::Row& row : Switches::rows()) {
        for (const QString& value : parser.values(QLatin1String(row.name))) {
            if (!tried.set(row, value))
                return QStringLiteral("--%1: \"%2\" is wrong, %3 wanted")
                    .arg(QLatin1String(row.name), value, Switches::wanted(row));
        }
    }
    return {};
}

void CommandLine::applyTo(Switches& switches) const
{
    for (const Switches::Row& row : Switches::rows()) {
        const QString name = QLatin1String(row.name);
        if (parser.isSet(name))
            switches.set(row, parser.value(name));
    }
}
