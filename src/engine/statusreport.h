#pragma once

#include <QString>

#include <optional>

/**
 * What one look at the engine's status file finds.
 *
 * The first line is "Result=" and the status code, the second "Firmware=" and the firmware
 * indicator, both decimal. A missing prefix is no error, and only its first occurrence is removed.
 * At most 4096 bytes of each line are looked at: a file of any size costs the same.
 */
struct StatusReport
{
    /// Reads the file at @p path; nothing if it cannot be opened or is not a regular file.
    static std::optional<StatusReport> fromFile(const QString& path);

    QString statusText; ///< the first line without its prefix
    std::optional<int> status; ///< empty when the line is not a number
    std::optional<int> firmware; ///< likewise
};
