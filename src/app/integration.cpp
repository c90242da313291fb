#include "app/integration.h"

#include "app/commandline.h"
#include "app/mailboxcommands.h"
#include "ui/mainwindow.h"

#include <QCoreApplication>

#include <cstdio>

namespace {

/// Past the log, which an administrator may have switched off.
void tell(const QString& fault)
{
    std::fprintf(stderr, "config/integration.conf: %s\n", fault.toUtf8().constData());
}

} // namespace

Integration::Integration(const CommandLine& commandLine)
{
    const QString path =
        QCoreApplication::applicationDirPath() + QLatin1String("/config/integration.conf");
    for (const QString& fault : switches.read(path))
        tell(fault);
    commandLine.applyTo(switches);
}

void Integration::start(MainWindow& window)
{
    if (switches.mailbox)
        new MailboxCommands(window);
}
