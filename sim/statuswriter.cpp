#include "statuswriter.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace {

bool writeAll(int file, const QByteArray& bytes)
{
    int at = 0;
    while (at < bytes.size()) {
        const ssize_t size =
            ::write(file, bytes.constData() + at, static_cast<size_t>(bytes.size() - at));
        if (size < 0)
            return false;
        at += static_cast<int>(size);
    }
    return true;
}

/// Opens for writing; a pipe in place of the file is a failure and never blocks.
int openFile(const QByteArray& path)
{
    return ::open(path.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NONBLOCK, 0644);
}

} // namespace

StatusWriter::StatusWriter(const QString& statusFile)
    : path(QFile::encodeName(statusFile))
{
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, &timer, [this] { writePiece(); });
}

StatusWriter::~StatusWriter()
{
    cutShort();
}

void StatusWriter::write(const QByteArray& content, const Action& action,
                         std::function<void()> done, std::function<void()> appeared)
{
    cutShort();
    whenDone = std::move(done);
    whenAppeared = std::move(appeared);
    if (action.style == WriteStyle::Whole)
        writeWhole(content);
    else
        writeInPlace(content, action);
}

void StatusWriter::remove()
{
    cutShort();
    if (::unlink(path.constData()) != 0 && errno != ENOENT)
        complain("remove");
}

void StatusWriter::writeWhole(const QByteArray& content)
{
    const QByteArray temporary = path + ".new";
    file = openFile(temporary);
    const bool isWritten = file >= 0 && writeAll(file, content);
    cutShort();
    if (!isWritten) {
        complain("write");
        return;
    }
    whenDone();
    if (::rename(temporary.constData(), path.constData()) != 0)
        complain("replace");
    whenAppeared();
}

void StatusWriter::writeInPlace(const QByteArray& content, const Action& action)
{
    file = openFile(path);
    if (file < 0) {
        complain("write");
        return;
    }
    rest = content;
    int intervalMs = action.styleMs;
    if (action.style == WriteStyle::Halves) {
        pieceSize = (rest.size() + 1) / 2;
    } else {
        const int pieces = std::max(1, std::min(rest.size(), action.styleMs));
        pieceSize = (rest.size() + pieces - 1) / pieces;
        intervalMs = action.styleMs / pieces;
    }
    timer.start(intervalMs);
    writePiece();
}

void StatusWriter::writePiece()
{
    const QByteArray piece = rest.left(pieceSize);
    rest.remove(0, piece.size());
    if (!writeAll(file, piece)) {
        complain("write");
        cutShort();
        return;
    }
    if (!rest.isEmpty())
        return;
    cutShort();
    whenDone();
    whenAppeared();
}

void StatusWriter::cutShort()
{
    timer.stop();
    if (file >= 0)
        ::close(file);
    file = -1;
}

void StatusWriter::complain(const char* what) const
{
    std::fprintf(stderr, "vireon-main: cannot %s the status file %s: %s\n", what, path.constData(),
                 std::strerror(errno));
}
