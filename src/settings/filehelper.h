#pragma once

#include <QFile>

/// The file helpers of the settings, of the status reader and of the mailbox.
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

    /// Opens the regular file at @p path with @p file in @p mode, which means what it means to
    /// QFile::open(): WriteOnly by itself truncates, and a mode that writes creates a missing
    /// file unless it holds ExistingOnly. A directory, a device or a pipe in its place counts as
    /// a file that cannot be opened, and the attempt never blocks. False on failure.
    /// The open file has no name of its own: remove it by its path.
    static bool openRegularFile(QFile& file, const QString& path, QIODevice::OpenMode mode);
};
