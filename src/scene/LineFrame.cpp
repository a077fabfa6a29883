#include "scene/LineFrame.h"

#include "scene/Distance.h"
#include "scene/Truncation.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace NELK
{

LineFrame computeLineFrame(QVector2D start, QVector2D end, float radius)
{
    if (distance(start, end) < 0.1)
        end.setX(end.x() + 1.0f);

    QVector2D way = end - start;
    if (way.isNull())
        way = {1.0f, 0.0f}; // so far out that floats cannot hold the one unit
    const float length = std::sqrt(way.y() * way.y() + way.x() * way.x());
    const QVector2D toRim(way.x() * radius / length, way.y() * radius / length);

    LineFrame frame;
    frame.lineStart = start + toRim;
    frame.lineEnd = end - toRim;
    frame.arrowStartBase = start + toRim * 1.4f;
    frame.arrowEndBase = end - toRim * 1.4f;
    frame.lineAngle = std::atan2(way.y(), way.x());

    // Seen from the far end the line runs backwards, so right and left change places there.
    const int wholeRadius = truncated(radius);
    std::tie(frame.offsetStartA, frame.offsetStartB) = squarePoints(start, frame.lineStart, wholeRadius);
    std::tie(frame.offsetEndB, frame.offsetEndA) = squarePoints(end, frame.lineEnd, wholeRadius);
    return frame;
}

std::pair<QVector2D, QVector2D> squarePoints(QVector2D centre, QVector2D onLine, int radius)
{
    // The points Q with Q.d = r^2 and |Q|^2 = 2 r^2 are the roots of a quadratic equation. On a nearly level line its
    // discriminant is a small difference of large numbers: in floats it has no correct digit there, and the tracks
    // beside the line would run askew or be NaN. Hence doubles, and a discriminant that is never below zero.
    const double dx = onLine.x() - centre.x();
    const double dy = onLine.y() - centre.y();
    const double r2 = static_cast<double>(radius) * radius;
    const double s = dx * dx + dy * dy;
    if (s == 0.0)
        return {centre, centre}; // so far out that floats cannot tell the two apart

    const double t = dx * -2.0 * r2;
    const double q = std::sqrt(std::max(0.0, t * t - (r2 - (dy * dy + dy * dy)) * r2 * (s * 4.0)));
    const double n = s + s;
    const double x1 = (q - t) / n;
    const double x2 = (-t - q) / n;

    const bool level = std::abs(dy) < 0.1;
    const double y1 = level ? std::sqrt(std::max(0.0, r2 + r2 - x1 * x1)) : (r2 - dx * x1) / dy;
    const double y2 = level ? -y1 : (r2 - dx * x2) / dy;

    const QVector2D one = centre + QVector2D(static_cast<float>(x1), static_cast<float>(y1));
    const QVector2D other = centre + QVector2D(static_cast<float>(x2), static_cast<float>(y2));
    const bool oneIsLeft = dx * y1 - dy * x1 > 0.0;
    return oneIsLeft ? std::make_pair(other, one) : std::make_pair(one, other);
}

} // namespace NELK
