#pragma once

#include <QFile>

#include <fcntl.h>

/// For open(): never wait. Without O_NONBLOCK, opening a pipe would wait for its other end.
constexpr int openWithoutWaiting = O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

/// Opens the regular file at @p path with @p file in @p mode: ReadOnly, WriteOnly or ReadWrite,
/// with Truncate, ExistingOnly and Unbuffered as QFile::open() means them. A mode that writes
/// creates a missing file unless it holds ExistingOnly. A directory, a device or a pipe in its
/// place counts as a file that cannot be opened, and the attempt never blocks. False on failure.
/// The open file has no name of its own: remove it by its path.
bool openRegularFile(QFile& file, const QString& path, QIODevice::OpenMode mode);
