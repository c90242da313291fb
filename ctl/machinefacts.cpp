#include "ctl/machinefacts.h"

#include "app/version.h"

#include <QCoreApplication>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QSysInfo>

namespace {

constexpr int answerLimitMs = 5000;

const char* const sessionVariables[] = {"XDG_CURRENT_DESKTOP", "XDG_SESSION_DESKTOP",
                                        "XDG_SESSION_TYPE",    "DISPLAY",
                                        "WAYLAND_DISPLAY",     "LANG"};

/// What @p program prints, its errors too.
QString answerOf(const QString& program, const QStringList& arguments)
{
    const QString path = QStandardPaths::findExecutable(program);
    if (path.isEmpty())
        return program + QLatin1String(" is not installed");
    QProcess tool;
    tool.setProcessChannelMode(QProcess::MergedChannels);
    tool.setStandardInputFile(QProcess::nullDevice());
    tool.start(path, arguments, QIODevice::ReadOnly);
    if (tool.waitForFinished(answerLimitMs))
        return QString::fromUtf8(tool.readAll()).trimmed();
    tool.kill();
    return program + QLatin1String(" gives no answer");
}

/// The window manager has put its own window's number on the root, and its name on that.
QString windowManager()
{
    const QString property = QStringLiteral("_NET_SUPPORTING_WM_CHECK");
    const QString root = answerOf(QStringLiteral("xprop"), {"-root", "-notype", property});
    const QRegularExpressionMatch window = QRegularExpression("0x[0-9a-f]+$").match(root);
    return window.hasMatch()
        ? answerOf(QStringLiteral("xprop"), {"-id", window.captured(), "-notype", "_NET_WM_NAME"})
        : root;
}

} // namespace

QByteArray tellVersions()
{
    const QString controller = QCoreApplication::applicationDirPath() + QLatin1String("/vireon");
    const QStringList lines {
        QStringLiteral("vireonctl: %1").arg(QLatin1String(applicationVersion)),
        QStringLiteral("the program beside it: %1").arg(answerOf(controller, {"--version"})),
        QStringLiteral("Qt: %1, built with %2").arg(QLatin1String(qVersion()), QT_VERSION_STR),
        QStringLiteral("system: %1, %2 %3, %4")
            .arg(QSysInfo::prettyProductName(), QSysInfo::kernelType(), QSysInfo::kernelVersion(),
                 QSysInfo::currentCpuArchitecture())};
    return (lines.join('\n') + '\n').toUtf8();
}

QByteArray tellDesktop()
{
    QString text;
    for (const char* name : sessionVariables)
        text += QStringLiteral("%1: %2\n")
                    .arg(QLatin1String(name), qEnvironmentVariable(name, "not set"));
    const QStringList query {QStringLiteral("--query")};
    text += QStringLiteral("window manager: %1\n\nscreens, the present rates with a star:\n%2\n")
                .arg(windowManager(), answerOf(QStringLiteral("xrandr"), query));
    return text.toUtf8();
}
