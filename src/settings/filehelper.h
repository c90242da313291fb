#pragma once

/// What the start and the calibration reset do with the files of the data directory.
class FileHelper
{
public:
    /// Makes sure that the engine's data directory exists (one level only: its parent must exist)
    /// and that no mailbox files of an earlier run are left in it. What it does is told on
    /// standard output; failures are not reported.
    static void cleanWorkingDirectory();

    /// Whether the file at @p path can be opened for reading: an unreadable one counts as missing,
    /// a directory as a file, a pipe or a device as missing. Never blocks.
    static bool fileExists(char const* path);

    /// Deletes the calibration file. 0 on success, also when fileExists() denies it; -1 on failure.
    static int cleanVireonCalibFiles();
};
