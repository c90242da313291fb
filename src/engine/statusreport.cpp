#include "engine/statusreport.h"

#include "base/regularfile.h"

namespace {

constexpr int longestLine = 4096; // bytes

/// The line that begins at @p place, with its end if it has one; null if it is longer than a line
/// of a report can be.
QByteArray lineAt(int place, const QByteArray& text)
{
    const int end = text.indexOf('\n', place);
    const int length = (end < 0 ? text.size() : end + 1) - place;
    return length <= longestLine ? text.mid(place, length) : QByteArray();
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
    // One byte more tells a line that is too long from the last one.
    const std::optional<QByteArray> text = beginOfRegularFile(path, 2 * longestLine + 1);
    if (!text)
        return std::nullopt;
    StatusReport report;
    const QByteArray statusLine = lineAt(0, *text);
    if (statusLine.isNull())
        return report;
    report.statusText = withoutPrefix(statusLine, QStringLiteral("Result="));
    report.status = toNumber(report.statusText);
    const QByteArray firmwareLine = lineAt(statusLine.size(), *text);
    report.firmware = toNumber(withoutPrefix(firmwareLine, QStringLiteral("Firmware=")));
    return report;
}
