#pragma once

#include <QVector2D>

#include <cmath>

namespace NELK
{

/// How far two points are apart. In doubles, so that a rim is met exactly at whole-number coordinates of any size.
inline double distance(QVector2D a, QVector2D b)
{
    const double dx = static_cast<double>(a.x()) - static_cast<double>(b.x());
    const double dy = static_cast<double>(a.y()) - static_cast<double>(b.y());
    return std::sqrt(dx * dx + dy * dy);
}

} // namespace NELK
