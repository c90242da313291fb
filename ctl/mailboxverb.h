#pragma once

#include <QString>

#include <array>

/// A command of vireonctl that goes through the mailbox.
struct MailboxVerb
{
    const char* words; ///< as they are typed, with one blank between two
    char character; ///< what is sent, see MailboxCommand
    const char* meaning; ///< one line of the help

    static const std::array<MailboxVerb, 20>& all();

    /// The verb of these words; null when there is none.
    static const MailboxVerb* find(const QString& words);
};
