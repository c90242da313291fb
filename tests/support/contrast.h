#pragma once

#include <QColor>
#include <QHash>
#include <QImage>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

/// What text needs before its background to be read by everyone (WCAG 2, level AA).
constexpr double readableContrast = 4.5;

inline double luminance(const QColor& colour)
{
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF())
        + 0.0722 * linear(colour.blueF());
}

/// From 1 for equal colours to 21 for black and white.
inline double contrast(const QColor& one, const QColor& other)
{
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

/// The colours of a picture, the most frequent first.
inline std::vector<QColor> coloursOf(const QImage& picture)
{
    QHash<QRgb, int> counts;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            ++counts[picture.pixel(x, y)];
    }
    std::vector<QRgb> values(counts.keyBegin(), counts.keyEnd());
    std::sort(values.begin(), values.end(),
              [&](QRgb a, QRgb b) { return std::pair(counts[b], b) < std::pair(counts[a], a); });
    return {values.begin(), values.end()};
}

/// Between the two most frequent colours: of something large before its background.
inline double contrastIn(const QImage& picture)
{
    const std::vector<QColor> colours = coloursOf(picture);
    return colours.size() < 2 ? 1 : contrast(colours[0], colours[1]);
}

inline bool allDiffer(const std::vector<QImage>& pictures)
{
    for (auto one = pictures.begin(); one != pictures.end(); ++one) {
        if (std::find(one + 1, pictures.end(), *one) != pictures.end())
            return false;
    }
    return true;
}
