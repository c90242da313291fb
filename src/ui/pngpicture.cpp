#include "ui/pngpicture.h"

#include <QBuffer>
#include <QFile>
#include <QImageReader>

namespace {

QImage read(QIODevice& device)
{
    QImageReader reader(&device, "png");
    reader.setAutoDetectImageFormat(false);
    return reader.read();
}

} // namespace

QImage pngPicture(QByteArray png)
{
    QBuffer buffer(&png);
    return read(buffer);
}

QImage pngPictureIn(const QString& path)
{
    QFile file(path);
    return read(file);
}
