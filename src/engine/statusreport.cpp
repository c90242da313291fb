#include "engine/statusreport.h"

#include "base/regularfile.h"

#include <QFile>

namespace {

constexpr qint64 longestLine = 4096; // bytes

/// Whether @p line, just read, is all of its line: one that is longer cannot be a report.
bool isWhole(const QByteArray& line, const QFile& file)
{
    return line.endsWith('\n') || file.atEnd();
}

/// Removes the first occurrence of @p prefix only: what follows must be a number on its own.
QString withoutPrefix(const QByteArray& line, const QString& prefix)
{
    QString text = QString::fromUtf8(line.constData(), line.size()).trimmed();
    const int position = text.indexOf(prefix);
    return position < 0 ? text : text.remove(position, prefix.size());
}

std::optional<int> toNumber(const QString& text)
{
    bool parsed = false;
    const int number = text.toInt(&parsed);
    return parsed ? std::optional<int>(number) : std::nullopt;
}

} // namespace

std::optional<StatusReport> StatusReport::fromFile(const QString& path)
{
    QFile file;
    if (!openRegularFile(file, path, QIODevice::ReadOnly))
        return std::nullopt;
    StatusReport report;
    const QByteArray statusLine = file.readLine(longestLine);
    if (!isWhole(statusLine, file))
        return report;
    report.statusText = withoutPrefix(statusLine, QStringLiteral("Result="));
    report.status = toNumber(report.statusText);
    const QByteArray firmwareLine = file.readLine(longestLine);
    if (isWhole(firmwareLine, file))
        report.firmware = toNumber(withoutPrefix(firmwareLine, QStringLiteral("Firmware=")));
    return report;
}
