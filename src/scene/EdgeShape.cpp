#include "scene/EdgeShape.h"

#include "scene/EdgeData.h"
#include "scene/ModelMatrices.h"
#include "scene/NodeData.h"
#include "scene/Truncation.h"

#include <utility>

namespace NELK
{

namespace
{

/// Arrow heads and bends stand as if every node had the default size.
constexpr float nodeRadius = 128.0f;

QVector2D middle(QVector2D a, QVector2D b)
{
    return (a + b) * 0.5f;
}

/// The body in three pieces over the two inner corners. The middle piece is lengthened to close the bends.
void buildSegments(EdgeData& edge, QVector2D first, QVector2D last)
{
    edge.segmentMatrix0 = lineModel(first, edge.curveStartPos, edge.edgeWidth, false);
    edge.segmentMatrix1 = lineModel(edge.curveStartPos, edge.curveEndPos, edge.edgeWidth, true);
    edge.segmentMatrix2 = lineModel(edge.curveEndPos, last, edge.edgeWidth, false);
}

/// The arrow heads of a straight body, shifted off the line by `offset`. They are kept ready whether shown or not.
void buildArrows(EdgeData& edge, const LineFrame& frame, QVector2D offset)
{
    edge.startArrowMatrix = arrowModel(frame.arrowStartBase + offset, frame.lineAngle, edge.edgeWidth, true);
    edge.endArrowMatrix = arrowModel(frame.arrowEndBase + offset, frame.lineAngle, edge.edgeWidth, false);
}

void buildStraightShape(EdgeData& edge)
{
    edge.lineMatrix = lineModel(edge.startPos, edge.endPos, edge.edgeWidth, false);
    edge.centerPos = middle(edge.startPos, edge.endPos);
    edge.curveStartPos = edge.frame.lineStart;
    edge.curveEndPos = edge.frame.lineEnd;
    buildArrows(edge, edge.frame, {});
}

void buildTrackShape(EdgeData& edge, const LineFrame& frame)
{
    const float steps = static_cast<float>(EdgeData::trackStep(edge.index)) * edge.zoomSpan;
    const QVector2D side = edge.index % 2 != 0 ? frame.offsetStartA : frame.offsetStartB;
    const QVector2D offset = steps * (side - frame.lineStart);

    edge.curveStartPos = frame.lineStart + offset;
    edge.curveEndPos = frame.lineEnd + offset;
    buildSegments(edge, edge.startPos, edge.endPos);
    edge.centerPos = middle(edge.curveStartPos, edge.curveEndPos);
    buildArrows(edge, frame, offset);
}

} // namespace

void buildLineFrame(EdgeData& edge)
{
    edge.frame = computeLineFrame(edge.startPos, edge.endPos, nodeRadius);
}

void rebuildShape(EdgeData& edge)
{
    if (edge.ring)
        buildRingShape(edge);
    else if (edge.rightAngle)
        buildRightAngleShape(edge);
    else
        buildCurveShape(edge);
}

void buildCurveShape(EdgeData& edge)
{
    if (!edge.baseEdge)
        buildLineFrame(edge);

    // An edge that has outlived its base edge keeps its track, beside a frame of its own.
    if (edge.index == 0)
        buildStraightShape(edge);
    else
        buildTrackShape(edge, edge.baseEdge ? edge.baseEdge->frame : edge.frame);
}

void buildRightAngleShape(EdgeData& edge)
{
    QVector2D upper = edge.startPos;
    QVector2D lower = edge.endPos;
    float arrowDistance = 179.2f;
    float arrowAngle = 1.5707964f;
    if (edge.endPos.y() > edge.startPos.y()) {
        std::swap(upper, lower);
        arrowDistance = -arrowDistance;
        arrowAngle = -arrowAngle;
    }

    const float level = (upper.y() * 3.0f + lower.y()) * 0.25f;
    edge.curveStartPos = {upper.x(), level};
    edge.curveEndPos = {lower.x(), level};
    edge.centerPos = {lower.x(), (level + lower.y()) * 0.5f};
    buildSegments(edge, upper, lower);
    edge.startArrowMatrix =
        arrowModel({edge.startPos.x(), edge.startPos.y() - arrowDistance}, arrowAngle, edge.edgeWidth, false);
    edge.endArrowMatrix =
        arrowModel({edge.endPos.x(), edge.endPos.y() + arrowDistance}, -arrowAngle, edge.edgeWidth, false);
}

void buildRingShape(EdgeData& edge)
{
    const NodeData& node = *edge.startNode;
    const auto circle = static_cast<float>(node.circleDiameter);
    // The label's height comes by a route of its own, in single precision, and may be off the diameter by rounding.
    const int height = truncated((static_cast<float>(edge.index) * 0.4f + 1.0f) * circle);

    edge.ringDiameter = truncated(circle * edge.ringScale);
    edge.centerPos = {node.x, node.y + static_cast<float>(height)};
    edge.startPos = {node.x, node.y + wholeHalf(height)};
    edge.endPos = edge.startPos;
    edge.curveStartPos = edge.startPos;
    edge.curveEndPos = edge.endPos;
}

} // namespace NELK
