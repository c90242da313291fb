#pragma once

#include <QString>

/**
 * Counts the engine's starts, across its restarts.
 *
 * The count is kept in a small file and belongs to the process that starts the engine: a new
 * controller begins at 1 again, however often the engine ran before.
 */
class StartCount
{
public:
    /// The file beside @p journalPath, or in @p dataDirectory where there is no journal.
    static QString fileFor(const QString& journalPath, const QString& dataDirectory);

    /// Counts this start in the file @p path and returns its number, from 1. A file that cannot be
    /// written makes every start the first.
    static int next(const QString& path);
};
