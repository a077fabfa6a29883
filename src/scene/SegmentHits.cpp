#include "scene/SegmentHits.h"

#include "scene/Distance.h"
#include "scene/Truncation.h"

#include <QLineF>
#include <QRect>

#include <algorithm>
#include <array>
#include <cmath>

namespace NELK
{

namespace
{

bool isBetween(double value, double one, double other)
{
    return std::min(one, other) <= value && value <= std::max(one, other);
}

QPoint truncatedPoint(QVector2D point)
{
    return {truncated(point.x()), truncated(point.y())};
}

} // namespace

bool nearSegment(QVector2D a, QVector2D b, float tolerance, QVector2D point)
{
    const double manhattanLength =
        std::abs(static_cast<double>(a.x()) - b.x()) + std::abs(static_cast<double>(a.y()) - b.y());
    if (manhattanLength < 2.0)
        return tolerance > distance(a, point);

    // Most points end here: outside the bounding box in both axes.
    const bool outsideInX = (point.x() - b.x()) * (point.x() - a.x()) > 0.0f;
    const bool outsideInY = (point.y() - b.y()) * (point.y() - a.y()) > 0.0f;
    if (outsideInX && outsideInY)
        return false;

    if (point.distanceToLine(a, (a - b).normalized()) >= tolerance)
        return false;
    return betweenSegmentEnds(a, b, point, tolerance);
}

bool betweenSegmentEnds(QVector2D a, QVector2D b, QVector2D point, float tolerance)
{
    const bool swap = a.x() > b.x();
    const QVector2D left = swap ? b : a;
    const QVector2D right = swap ? a : b;
    const double dx = static_cast<double>(right.x()) - left.x();
    const double dy = static_cast<double>(right.y()) - left.y();
    if (std::abs(dx) < 1e-6)
        return isBetween(point.y(), left.y(), right.y());
    if (std::abs(dy) < 1e-6)
        return isBetween(point.x(), left.x(), right.x());

    // Through each end runs a line square to the segment. Between the two lines no point is further from either than
    // the segment is long.
    const double angle = std::atan2(dx, dy);
    const QVector2D across(static_cast<float>(std::cos(angle) * static_cast<double>(tolerance)),
                           static_cast<float>(-std::sin(angle) * static_cast<double>(tolerance)));
    const float length = (right - left).length();
    const auto distanceToSquareThrough = [&](QVector2D end) {
        const QVector2D from = end - across;
        const QVector2D to = end + across;
        return point.distanceToLine(from, (to - from).normalized());
    };
    return length >= distanceToSquareThrough(left) && length >= distanceToSquareThrough(right);
}

bool segmentCrossesFrame(QVector2D leftTop, QVector2D rightBottom, QVector2D a, QVector2D b, bool wholeOnly)
{
    const QRect frame(truncatedPoint(leftTop), truncatedPoint(rightBottom));
    const QPoint start = truncatedPoint(a);
    const QPoint end = truncatedPoint(b);
    if (frame.contains(start) && frame.contains(end))
        return true;
    if (wholeOnly)
        return false;

    const QLineF segment(start, end);
    const std::array<QLineF, 4> sides{
        QLineF(frame.topLeft(), frame.bottomLeft()), QLineF(frame.topRight(), frame.bottomRight()),
        QLineF(frame.topLeft(), frame.topRight()), QLineF(frame.bottomLeft(), frame.bottomRight())};
    return std::any_of(sides.begin(), sides.end(), [&segment](const QLineF& side) {
        return segment.intersects(side, nullptr) == QLineF::BoundedIntersection;
    });
}

} // namespace NELK
