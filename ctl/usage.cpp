#include "ctl/usage.h"

#include "ctl/mailboxverb.h"

namespace {

const char* const head = "usage: vireonctl COMMAND [OPTION...]\n"
                         "\n"
                         "Drives the Vireon that runs for this user, and tells how it is.\n"
                         "\n"
                         "Commands that the program carries out, where its mailbox is on:\n";

const char* const rest =
    "\n"
    "Commands that ask:\n"
    "  status             tell the state in the window's words\n"
    "  wait ready         wait until the engine takes commands, and has done so for a second\n"
    "  wait calibrated    the same, and it is calibrated\n"
    "  wait gone          wait until the program has ended, whosever it is\n"
    "  report FILE        gather what the support asks for in FILE, a new .tar.gz of yours alone\n"
    "\n"
    "Options:\n"
    "  --timeout S        wait at most this many seconds (60; 10 for what is carried out)\n"
    "  --json             status: as JSON\n"
    "  --follow           status: go on with each change until the program ends\n"
    "  -h, --help         show this text\n"
    "  -v, --version      show the version\n"
    "\n"
    "It ends with 0 when done, 1 when the report could not be written, 2 for wrong usage, 3 when "
    "no\n"
    "Vireon runs, 4 when it was not in time, 5 when the mailbox of the Vireon that runs is off, "
    "and\n"
    "6 when that Vireon is another user's.\n";

} // namespace

QString usageText()
{
    QString text = QLatin1String(head);
    for (const MailboxVerb& verb : MailboxVerb::all())
        text += QStringLiteral("  %1%2\n").arg(QLatin1String(verb.words), -19).arg(verb.meaning);
    return text + QLatin1String(rest);
}
