#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

// PNG pictures of the program's own, for the start. To decode its first one, Qt loads every plug-in
// for pictures that is installed, with the libraries of all their formats; these need none.

/// The picture in @p png; a null one if it is none.
QImage pngPicture(const QByteArray& png);

/// The picture in the file @p path, which may be a resource; a null one if there is none.
QImage pngPictureIn(const QString& path);
