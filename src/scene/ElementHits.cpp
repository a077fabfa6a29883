#include "scene/ElementHits.h"

#include "scene/Distance.h"
#include "scene/EdgeData.h"
#include "scene/ElementIds.h"
#include "scene/NodeData.h"
#include "scene/Rectangles.h"
#include "scene/SegmentHits.h"
#include "scene/Truncation.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace NELK
{

namespace
{

/// The rim of a circle belongs to the body, the sides of a plain icon do not.
bool bodyAtPoint(QVector2D point, const NodeData& node)
{
    if (node.circleShow)
        return wholeHalf(node.circleDiameter) >= distance(node.center(), point);
    return wholeHalf(node.width) > std::abs(node.x - point.x()) &&
           wholeHalf(node.height) > std::abs(node.y - point.y());
}

bool labelAtPoint(QVector2D point, const NodeData& node, bool nodeTextShow)
{
    const QSize box = node.labelBox(nodeTextShow);
    const float iconBottom = node.y - wholeHalf(node.bodyDiameter());
    const QVector2D centre(node.x, iconBottom - wholeHalf(box.height()));
    return insideBox(centre, static_cast<float>(box.width()), static_cast<float>(box.height()), point);
}

/// Whether `test` holds for any of the straight pieces of which an edge that is no ring is drawn.
template <typename PieceTest>
bool anyPiece(const EdgeData& edge, PieceTest test)
{
    if (!edge.rightAngle && edge.index == 0)
        return test(edge.startPos, edge.endPos);

    // The pieces of a right-angled edge start at its upper end.
    const bool fromEnd = edge.rightAngle && edge.endPos.y() > edge.startPos.y();
    const QVector2D first = fromEnd ? edge.endPos : edge.startPos;
    const QVector2D last = fromEnd ? edge.startPos : edge.endPos;
    return test(first, edge.curveStartPos) || test(edge.curveStartPos, edge.curveEndPos) ||
           test(edge.curveEndPos, last);
}

bool ringNearPoint(QVector2D point, const EdgeData& ring, int tolerance)
{
    const double fromCentre = distance(ring.startPos, point);
    const qint64 radius = ring.ringDiameter / 2;
    const auto outerRim = static_cast<float>(radius + tolerance);
    const auto innerRim = static_cast<float>(radius - ring.edgeWidth - tolerance);
    return outerRim > fromCentre && fromCentre > innerRim;
}

/// Looks at the top and left sides of the frame alone: a thin frame that clips the ring's outer curve with its bottom
/// or right side, and holds no extreme point of the ring, is no hit.
bool ringInFrame(QVector2D leftTop, QVector2D rightBottom, const EdgeData& ring)
{
    const QVector2D centre = ring.startPos;
    const float left = leftTop.x();
    const float top = leftTop.y();
    const float right = rightBottom.x();
    const float bottom = rightBottom.y();
    const float outerRadius = wholeHalf(qint64{ring.ringDiameter} + ring.edgeWidth);
    const float radius = wholeHalf(ring.ringDiameter);

    const auto insideCircle = [&](QVector2D point) { return outerRadius > distance(centre, point); };
    const bool leftTopInside = insideCircle(leftTop);
    const std::array<QVector2D, 3> otherCorners{QVector2D(right, top), rightBottom, QVector2D(left, bottom)};
    const bool rimBetweenCorners = std::any_of(otherCorners.begin(), otherCorners.end(),
                                               [&](QVector2D corner) { return insideCircle(corner) != leftTopInside; });
    if (rimBetweenCorners)
        return true;

    const std::array<QVector2D, 4> extremes{centre + QVector2D(0.0f, radius), centre - QVector2D(0.0f, radius),
                                            centre + QVector2D(radius, 0.0f), centre - QVector2D(radius, 0.0f)};
    const bool extremeInFrame = std::any_of(extremes.begin(), extremes.end(), [&](QVector2D extreme) {
        return insideFrame(leftTop, rightBottom, extreme);
    });
    if (extremeInFrame)
        return true;

    if (leftTopInside)
        return false;
    const bool topSideOverRing = left < centre.x() && centre.x() < right && std::abs(centre.y() - top) < radius;
    const bool leftSideOverRing = bottom < centre.y() && centre.y() < top && std::abs(centre.x() - left) < radius;
    return topSideOverRing || leftSideOverRing;
}

} // namespace

bool isPickable(const NodeData& node)
{
    return node.show && node.id < pickableIdLimit;
}

bool isPickable(const EdgeData& edge)
{
    return edge.show;
}

bool nodeAtPoint(QVector2D point, const NodeData& node, bool nodeTextShow)
{
    return bodyAtPoint(point, node) || labelAtPoint(point, node, nodeTextShow);
}

bool edgeNearPoint(QVector2D point, const EdgeData& edge, int tolerance)
{
    if (edge.ring)
        return ringNearPoint(point, edge, tolerance);
    const auto reach = static_cast<float>(qint64{edge.edgeWidth} + tolerance);
    return anyPiece(edge, [&](QVector2D start, QVector2D end) { return nearSegment(start, end, reach, point); });
}

bool nodeInFrame(QVector2D leftTop, QVector2D rightBottom, const NodeData& node, bool nodeTextShow)
{
    const float left = leftTop.x();
    const float top = leftTop.y();
    const float right = rightBottom.x();
    const float bottom = rightBottom.y();

    const float half = wholeHalf(node.bodyDiameter());
    const float iconBottom = node.y - half;
    if (node.x + half > left && node.x - half < right && iconBottom < top && node.y + half > bottom)
        return true;

    const QSize box = node.labelBox(nodeTextShow);
    const float halfWidth = wholeHalf(box.width());
    return node.x + halfWidth > left && node.x - halfWidth < right &&
           iconBottom - static_cast<float>(box.height()) < top && iconBottom > bottom;
}

bool edgeInFrame(QVector2D leftTop, QVector2D rightBottom, const EdgeData& edge)
{
    if (edge.ring)
        return ringInFrame(leftTop, rightBottom, edge);
    return anyPiece(edge, [&](QVector2D start, QVector2D end) {
        return segmentCrossesFrame(leftTop, rightBottom, start, end, false);
    });
}

} // namespace NELK
