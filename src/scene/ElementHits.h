#pragma once

#include <QVector2D>

namespace NELK
{

struct EdgeData;
struct NodeData;

// Which elements lie at a point or in a frame. All of it in scene units; the corners of a frame are the one with the
// lesser x and the greater y, then the one opposite.

/// Whether views may pick the element at all.
bool isPickable(const NodeData& node);
bool isPickable(const EdgeData& edge);

/// Whether `point` lies on the node's icon, circle or label. Without node text the label is the set numbers.
bool nodeAtPoint(QVector2D point, const NodeData& node, bool nodeTextShow);
/// Whether `point` lies on the edge, `tolerance` units around it included. The inside of a ring is not on it.
bool edgeNearPoint(QVector2D point, const EdgeData& edge, int tolerance);

/// Whether the frame overlaps the node's icon, circle or label.
bool nodeInFrame(QVector2D leftTop, QVector2D rightBottom, const NodeData& node, bool nodeTextShow);
/// Whether some piece of the edge lies in the frame or crosses it.
bool edgeInFrame(QVector2D leftTop, QVector2D rightBottom, const EdgeData& edge);

} // namespace NELK
