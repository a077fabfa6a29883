#pragma once

#include <QColor>
#include <QImage>
#include <QPoint>
#include <QString>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace NELK
{

/// The pixel to the right of and above a point of the centred plane, which has y up.
inline QPoint pixelAt(const QImage& picture, double right, double up)
{
    return {static_cast<int>(std::floor(picture.width() / 2 + right)),
            static_cast<int>(std::ceil(picture.height() / 2 - up)) - 1};
}

/// The greatest difference in a channel.
inline int difference(QRgb a, QRgb b)
{
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b))});
}

/// The mean of the greatest differences of the pixels of two pictures of one size.
inline double meanDifference(const QImage& a, const QImage& b)
{
    double sum = 0.0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x)
            sum += difference(a.pixel(x, y), b.pixel(x, y));
    }
    return sum / (a.width() * a.height());
}

inline QString nameOf(QRgb color)
{
    return QColor(color).name();
}

} // namespace NELK
