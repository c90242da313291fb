#include "app/version.h"
#include "ctl/controllerstate.h"
#include "ctl/exitcode.h"
#include "ctl/mailboxverb.h"
#include "ctl/reportarchive.h"
#include "ctl/supportreport.h"
#include "ctl/usage.h"
#include "ctl/waiting.h"
#include "ipc/mailboxsender.h"
#include "settings/globalsettings.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QLocale>
#include <QTextCodec>
#include <QTranslator>

#include <cstdio>

namespace {

constexpr int sendLimitS = 10;
constexpr int waitLimitS = 60;
constexpr int mostSeconds = 1000000;
const char* const timeoutName = "timeout";
const char* const jsonName = "json";
const char* const followName = "follow";

/// The settings and the guard tell on the log what they do; here only faults count.
void dropNotes(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    if (type != QtDebugMsg && type != QtInfoMsg)
        std::fprintf(stderr, "vireonctl: %s\n", text.toUtf8().constData());
}

ExitCode fail(ExitCode code, const QString& reason)
{
    std::fprintf(stderr, "vireonctl: %s\n", reason.toUtf8().constData());
    return code;
}

// --- The commands -----------------------------------------------------------------------------

ExitCode carryOut(const MailboxVerb& verb, int limitMs)
{
    const ControllerState state = ControllerProbe().look();
    if (!state.running)
        return fail(state.exitCode(),
                    state.isAnotherUsers ? "the Vireon that runs is another user's"
                                         : "no Vireon runs");
    MailboxSender sender(GS::instance()->fifo1Path, GS::instance()->refifoPath);
    if (!sender.isOpen())
        return fail(ExitMailboxOff, "the mailbox is off: see config/integration.conf");
    switch (sender.send(verb.character, limitMs)) {
    case MailboxSender::Result::NotTaken:
        return fail(ExitNotInTime, "the command was not taken in time");
    case MailboxSender::Result::NoReply:
        return fail(ExitNotInTime, "the command was taken, but not carried out in time");
    default:
        return ExitDone;
    }
}

ExitCode tellStatus(bool json, bool followed)
{
    ControllerProbe probe;
    if (followed)
        return follow(probe, json);
    const ControllerState state = probe.look();
    std::puts((json ? state.toJson() : state.text().toUtf8()).constData());
    return state.exitCode();
}

ExitCode report(const QString& path)
{
    QString fault = reasonAgainstArchive(path);
    if (fault.isEmpty()) {
        const QList<ReportFile> files = gatherReport(ControllerProbe().look());
        const QString head = QCoreApplication::translate("vireonctl", "The report holds:");
        std::printf("%s\n%s", head.toUtf8().constData(), listReport(files).toUtf8().constData());
        std::fflush(stdout);
        fault = writeReportArchive(path, files);
    }
    return fault.isEmpty() ? ExitDone : fail(ExitFailed, fault);
}

ExitCode run(const QString& words, const QCommandLineParser& parser)
{
    const bool asks = words == "status" || words.startsWith("wait ");
    bool isNumber = true;
    const int seconds = parser.isSet(timeoutName) ? parser.value(timeoutName).toInt(&isNumber)
                                                  : (asks ? waitLimitS : sendLimitS);
    if (!isNumber || seconds < 0 || seconds > mostSeconds)
        return fail(ExitUsage, "--timeout: a number of seconds is wanted");
    const int limitMs = 1000 * seconds;
    if (words == "status")
        return tellStatus(parser.isSet(jsonName), parser.isSet(followName));
    if (const MailboxVerb* verb = MailboxVerb::find(words))
        return carryOut(*verb, limitMs);
    ControllerProbe probe;
    if (words == "wait gone")
        return waitUntilGone(probe, limitMs);
    if (words == "wait ready" || words == "wait calibrated")
        return waitForState(probe, words == "wait calibrated", limitMs);
    return fail(ExitUsage, "unknown command; --help tells all");
}

void addOptions(QCommandLineParser& parser)
{
    parser.addOption({{"h", "help"}, {}});
    parser.addOption({{"v", "version"}, {}});
    parser.addOption({timeoutName, {}, "seconds"});
    parser.addOption(QCommandLineOption(jsonName));
    parser.addOption(QCommandLineOption(followName));
}

ExitCode answer(const QCoreApplication& application)
{
    QCommandLineParser parser;
    addOptions(parser);
    if (!parser.parse(application.arguments()))
        return fail(ExitUsage, parser.errorText());
    if (parser.isSet("help")) {
        std::fputs(usageText().toUtf8().constData(), stdout);
        return ExitDone;
    }
    if (parser.isSet("version")) {
        std::printf("vireonctl %s\n", applicationVersion);
        return ExitDone;
    }
    const QStringList words = parser.positionalArguments();
    if (words.value(0) == "report" && words.size() == 2 && !words[1].isEmpty())
        return report(words[1]);
    return run(words.join(' '), parser);
}

} // namespace

int main(int argc, char* argv[])
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    qInstallMessageHandler(dropNotes);
    const QCoreApplication application(argc, argv);
    QTranslator translator;
    const QString language = QLocale::system().name().split(QLatin1Char('_')).first();
    if (translator.load(QLatin1String("vireon-menu-desktop-") + language,
                        QStringLiteral(":/translations")))
        QCoreApplication::installTranslator(&translator);
    return answer(application);
}
