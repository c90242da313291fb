#include "ipc/mailboxcommand.h"

#include <QFile>
#include <QTextStream>

#include <algorithm>
#include <array>

namespace {

constexpr qint64 lineLimit = 65536;

constexpr std::array<MailboxCommand, 37> commands {{
    {'0', 16, "IPC: b"},  {'1', 110, "IPC: 1"}, {'2', 111, "IPC: 2"}, {'3', 112, "IPC: 3"},
    {'4', 21, "IPC: 21"}, {'5', 22, "IPC: 22"}, {'6', 23, "IPC: 23"}, {'7', 24, "IPC: 24"},
    {'8', 17, "IPC: d"},  {'9', 113, "IPC: 9"}, {'Q', 25, "IPC: 25"}, {'a', 1, "IPC: a"},
    {'b', 108, "IPC: b"}, {'c', 107, "IPC: c"}, {'d', 104, "IPC: d"}, {'e', 7, "IPC: e"},
    {'f', 4, "IPC: f"},   {'g', 105, "IPC: g"}, {'h', 8, "IPC: h"},   {'i', 9, "IPC: i"},
    {'j', 101, "IPC: j"}, {'k', 14, "IPC: k"},  {'l', 100, "IPC: l"}, {'m', 0, "IPC: m"},
    {'n', 109, "IPC: n"}, {'o', 103, "IPC: o"}, {'p', 6, "IPC: p"},   {'q', 12, "IPC: q"},
    {'r', 15, "IPC: r"},  {'s', 3, "IPC: s"},   {'t', 2, "IPC: t"},   {'u', 102, "IPC: u"},
    {'v', 5, "IPC: v"},   {'w', 11, "IPC: w"},  {'x', 13, "IPC: x"},  {'y', 10, "IPC: i"},
    {'z', 106, "IPC: z"},
}};

/// The first byte of the trimmed line; zero if nothing is left of it.
char firstByte(const QString& line)
{
    const QByteArray trimmed = line.trimmed().toUtf8();
    return trimmed.isEmpty() ? '\0' : trimmed.front();
}

} // namespace

QString MailboxCommand::readFirstLine(QFile& file)
{
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    return stream.readLine(lineLimit);
}

const MailboxCommand* MailboxCommand::find(const QString& line)
{
    const char character = firstByte(line);
    const auto* const found =
        std::find_if(commands.begin(), commands.end(), [character](const MailboxCommand& entry) {
            return entry.character == character;
        });
    return found == commands.end() ? nullptr : found;
}
