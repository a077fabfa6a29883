#pragma once

#include <QVector2D>

namespace NELK
{

/// Whether `point` lies nearer than `tolerance` to the segment from `a` to `b`. A segment shorter than two units counts
/// as the point `a`.
bool nearSegment(QVector2D a, QVector2D b, float tolerance, QVector2D point);

/// Whether `point`, known to lie within `tolerance` of the line through `a` and `b`, lies level with the segment
/// between them and not beyond one of its ends.
bool betweenSegmentEnds(QVector2D a, QVector2D b, QVector2D point, float tolerance);

/// Whether the segment from `a` to `b` lies in the frame between two corners or cuts one of its sides, with all
/// coordinates truncated to integers and the rim counted in. With `wholeOnly` both ends must lie in the frame.
bool segmentCrossesFrame(QVector2D leftTop, QVector2D rightBottom, QVector2D a, QVector2D b, bool wholeOnly);

} // namespace NELK
