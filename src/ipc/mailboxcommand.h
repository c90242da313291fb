#pragma once

#include <QString>

class QFile;

/**
 * One command of the mailbox: the character that the sender writes, and what it stands for.
 *
 * The command file is a text in UTF-8, of which only the first character of the first line counts,
 * once white space was trimmed off both ends; case matters. At most 65536 characters of the line
 * are read, so that a file of any size costs the same.
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
