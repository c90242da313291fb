#include "ui/programicon.h"

#include "ui/pngpicture.h"

#include <QFile>
#include <QPixmap>
#include <QtEndian>

namespace {

constexpr int largestSize = 128; // px
constexpr int headerLength = 8; // of the file and of each entry: type and whole length
constexpr int widthPlace = 16; // in a PNG picture

bool isWanted(const QByteArray& png)
{
    return png.size() > widthPlace + 4
        && qFromBigEndian<qint32>(png.constData() + widthPlace) <= largestSize;
}

/// The file is a container of PNG pictures.
QIcon read(const QString& path)
{
    QIcon icon;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return icon;
    const QByteArray data = file.readAll();
    int length = headerLength;
    for (int place = headerLength; place + headerLength <= data.size(); place += length) {
        length = qFromBigEndian<qint32>(data.constData() + place + 4);
        if (length <= headerLength)
            break;
        const QByteArray png = data.mid(place + headerLength, length - headerLength);
        if (isWanted(png))
            icon.addPixmap(QPixmap::fromImage(pngPicture(png)));
    }
    return icon;
}

} // namespace

const QIcon& programIcon()
{
    static const QIcon icon = read(QStringLiteral(":/qml/Vireon.icns"));
    return icon;
}
