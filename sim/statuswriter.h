#pragma once

#include "action.h"

#include <QByteArray>
#include <QString>
#include <QTimer>

#include <functional>

/**
 * Writes the engine's status file, as a good engine does or as a bad one.
 *
 * A write that takes time continues in the event loop; the next write cuts it short.
 */
class StatusWriter
{
public:
    explicit StatusWriter(const QString& path);
    ~StatusWriter();
    Q_DISABLE_COPY(StatusWriter)

    /// Writes @p content. @p done is called with the outcome when the file is complete; with
    /// WriteStyle::Whole it is called just before the file appears, when nothing is left to do
    /// but the renaming, and @p appeared just after it. With the other styles both come at the end.
    void write(const QByteArray& content, const Action& action, std::function<void()> done,
               std::function<void()> appeared);

    /// Deletes the file; a missing one is no failure.
    void remove();

private:
    void writeWhole(const QByteArray& content);
    void writeInPlace(const QByteArray& content, const Action& action);
    void writePiece();
    void cutShort();
    void complain(const char* what) const;

    const QByteArray path;
    int file = -1;
    QByteArray rest;
    int pieceSize = 0;
    QTimer timer;
    std::function<void()> whenDone;
    std::function<void()> whenAppeared;
};
