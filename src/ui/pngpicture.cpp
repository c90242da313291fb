#include "ui/pngpicture.h"

#include <QFile>

#include <png.h>

QImage pngPicture(const QByteArray& png)
{
    png_image header {};
    header.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_memory(&header, png.constData(),
                                          static_cast<std::size_t>(png.size())))
        return {};
    header.format = PNG_FORMAT_RGBA;
    QImage picture(static_cast<int>(header.width), static_cast<int>(header.height),
                   QImage::Format_RGBA8888);
    const bool read = !picture.isNull()
        && png_image_finish_read(&header, nullptr, picture.bits(), picture.bytesPerLine(), nullptr);
    png_image_free(&header);
    return read ? picture : QImage();
}

QImage pngPictureIn(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? pngPicture(file.readAll()) : QImage();
}
