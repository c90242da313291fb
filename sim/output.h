#pragma once

#include <QByteArray>

/// Writes @p text @p repeat times to the file @p descriptor, at once and without a buffer. Waits
/// for a reader that is slow, and gives up when there is none any more.
void writeOutput(int descriptor, const QByteArray& text, int repeat = 1);
