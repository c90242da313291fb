#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

// PNG pictures of the program's own, for the start. To find out what its first picture is, Qt loads
// every plug-in for pictures that is installed, with the libraries of all their formats: here it is
// told.

/// The picture in @p png; a null one if it is none.
QImage pngPicture(QByteArray png);

/// The picture in the file @p path, which may be a resource; a null one if there is none.
QImage pngPictureIn(const QString& path);
