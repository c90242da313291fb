#pragma once

#include <QString>

class QFile;

/**
 * One command of the mailbox: the character that the sender writes, and what it stands for.
 *
 * Only the first character of the first line counts, once white space was trimmed off both ends;
 * case matters. At most 65536 characters of the line are read.
 */
struct MailboxCommand
{
    char character; ///< first byte of its UTF-8 form
    int code; ///< what IpcListener::received() tells
    const char* logText; ///< log readers match it, also where it repeats another command's

    /// The first line of @p file, which is open, without its line break; cut at the limit.
    static QString readFirstLine(QFile& file);

    /// The command that @p line holds; null for anything else, white space alone included.
    static const MailboxCommand* find(const QString& line);
};
