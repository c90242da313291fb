#pragma once

#include <QFile>

#include <fcntl.h>
#include <optional>

/// For open(): never wait. Without O_NONBLOCK, opening a pipe would wait for its other end.
constexpr int openWithoutWaiting = O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

/// Opens the regular file at @p path with @p file in @p mode: ReadOnly, WriteOnly or ReadWrite,
/// with Truncate, ExistingOnly and Unbuffered as QFile::open() means them. A mode that writes
/// creates a missing file unless it holds ExistingOnly. A directory, a device or a pipe in its
/// place counts as a file that cannot be opened, and the attempt never blocks. False on failure.
/// The open file has no name of its own: remove it by its path.
bool openRegularFile(QFile& file, const QString& path, QIODevice::OpenMode mode);

/// The first @p most bytes of the regular file at @p path, or all if there are fewer: the cheap way
/// for what is read again and again. Null if it cannot be opened, as openRegularFile() means it.
std::optional<QByteArray> beginOfRegularFile(const QString& path, int most);

/// Gives the file at @p from the name @p to, unless anything has that name already, be it a link
/// that leads nowhere. False then, and on failure: the file has its old name still.
bool renameUnlessTaken(const QString& from, const QString& to);

/// Makes the file @p path with @p content, where there is none yet. It gets its name when it is
/// complete, so that no end of the process leaves an empty one; a "path.new" may be left then,
/// which the next call takes away. Links that lead nowhere are followed. Whatever has the name,
/// also by the time that the content is written, stays as it is. False on failure.
bool createRegularFile(const QString& path, const QByteArray& content);
