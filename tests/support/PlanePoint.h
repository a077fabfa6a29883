#pragma once

#include <QString>
#include <QVector2D>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <limits>

namespace NELK
{

/// A point or a direction of the scene plane in doubles: what tests compute references with.
struct PlanePoint
{
    PlanePoint() = default;
    PlanePoint(double right, double up) : x(right), y(up) {}
    PlanePoint(QVector2D point) : x(point.x()), y(point.y()) {}

    QVector2D toFloats() const { return {static_cast<float>(x), static_cast<float>(y)}; }

    double x = 0.0;
    double y = 0.0;
};

inline PlanePoint operator+(PlanePoint a, PlanePoint b)
{
    return {a.x + b.x, a.y + b.y};
}

inline PlanePoint operator-(PlanePoint a, PlanePoint b)
{
    return {a.x - b.x, a.y - b.y};
}

inline PlanePoint operator*(PlanePoint a, double factor)
{
    return {a.x * factor, a.y * factor};
}

inline double dot(PlanePoint a, PlanePoint b)
{
    return a.x * b.x + a.y * b.y;
}

/// Above zero where `b` lies to the left of `a`, y up.
inline double cross(PlanePoint a, PlanePoint b)
{
    return a.x * b.y - a.y * b.x;
}

inline double length(PlanePoint a)
{
    return std::hypot(a.x, a.y);
}

inline PlanePoint directionAt(double angle)
{
    return {std::cos(angle), std::sin(angle)};
}

inline PlanePoint quarterTurnLeft(PlanePoint a)
{
    return {-a.y, a.x};
}

inline PlanePoint quarterTurnRight(PlanePoint a)
{
    return {a.y, -a.x};
}

/// At least one step between neighbouring floats at the farthest of `points`.
inline double floatStep(std::initializer_list<PlanePoint> points)
{
    double reach = 0.0;
    for (PlanePoint point : points)
        reach = std::max({reach, std::abs(point.x), std::abs(point.y)});
    return reach * static_cast<double>(std::numeric_limits<float>::epsilon());
}

/// What is wrong with the place of `actual`; empty if it is no more than `bound` off. NaN is always wrong.
inline QString complaintAbout(const char* what, PlanePoint actual, PlanePoint reference, double bound)
{
    const double off = length(actual - reference);
    if (off <= bound)
        return {};
    return QStringLiteral("%1 is (%2, %3) and should be (%4, %5): off by %6, with %7 allowed\n")
        .arg(what)
        .arg(actual.x, 0, 'g', 9)
        .arg(actual.y, 0, 'g', 9)
        .arg(reference.x, 0, 'g', 9)
        .arg(reference.y, 0, 'g', 9)
        .arg(off)
        .arg(bound);
}

} // namespace NELK
