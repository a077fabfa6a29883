#pragma once

#include <QVector2D>

#include <utility>

namespace NELK
{

/// What the drawing of an edge needs to know of the straight line between its two ends.
struct LineFrame
{
    /// The ends, each drawn back along the line by the radius.
    QVector2D lineStart, lineEnd;
    /// Beside `lineStart` and `lineEnd`, one radius off the line: A on the right of the way from start to end, B on
    /// the left (y up).
    QVector2D offsetStartA, offsetEndA;
    QVector2D offsetStartB, offsetEndB;
    /// Where arrow heads stand: 1.4 radii from the ends.
    QVector2D arrowStartBase, arrowEndBase;
    /// Direction of the line in radians.
    float lineAngle = 0.0f;
};

/// The frame of the line from `start` to `end`. Ends that coincide are told apart by one unit along x.
LineFrame computeLineFrame(QVector2D start, QVector2D end, float radius);

/// The two points that lie `radius` beside `onLine`, square to the line that runs there from `centre`; `onLine` is
/// `radius` away from `centre`. The first lies to the right of that direction, the second to the left (y up).
std::pair<QVector2D, QVector2D> squarePoints(QVector2D centre, QVector2D onLine, int radius);

} // namespace NELK
