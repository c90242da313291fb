#pragma once

#include <QString>

#include <optional>

/**
 * What one look at the engine's status file finds. docs/engine-contract.md tells the format,
 * qml/status.js what the view says of a status.
 *
 * Beyond that, a line is read with or without its prefix, of which only the first occurrence is
 * removed, and a line of more than 4096 bytes is no number: a file of any size costs the same.
 */
struct StatusReport
{
    /// Reads the file at @p path; nothing if it cannot be opened or is not a regular file.
    static std::optional<StatusReport> fromFile(const QString& path);

    QString statusText; ///< the first line without its prefix
    std::optional<int> status; ///< empty when the line is not a number
    std::optional<int> firmware; ///< likewise
};
