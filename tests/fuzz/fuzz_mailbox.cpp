// The mailbox's command file: any text has a first line, and a command only if it begins with one.

#include "fuzz/fuzzfile.h"
#include "ipc/mailboxcommand.h"

#include <QFile>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static FuzzFile text;
    text.write(data, size);
    QFile file(text.path());
    require(file.open(QIODevice::ReadOnly), "the file opens");
    const QString line = MailboxCommand::readFirstLine(file);
    require(!line.contains(QLatin1Char('\n')), "one line at most");
    const MailboxCommand* command = MailboxCommand::find(line);
    require(!command || line.trimmed().startsWith(QLatin1Char(command->character)),
            "the line begins with its command");
    return 0;
}
