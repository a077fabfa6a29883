#pragma once

#include "scene/ColorConversion.h"
#include "scene/LabelLine.h"
#include "scene/LineFrame.h"
#include "scene/Mat4.h"

#include <QList>
#include <QVector2D>

namespace NELK
{

struct NodeData;

/// All that the system knows of one edge.
///
/// There are three kinds. A base edge is a straight or right-angled line between two nodes. A derived edge runs beside
/// its base edge, on a track of its own. A ring joins a node to itself.
///
/// Positions and sizes are in scene units, y up. Each construction links the new edge into the lists of its nodes and
/// builds its shape; the Scene undoes the first on removal. `select` and the two arrow flags are mirrored in sets of
/// the Scene: change them through setMirrored alone.
struct EdgeData
{
    /// A base edge.
    EdgeData(NodeData& start, NodeData& end);
    /// An edge derived from `base`, on track `number`, at least 1.
    EdgeData(EdgeData& base, int number);
    /// A ring around `node`; each `number`, at least 0, is wider than the one before.
    EdgeData(NodeData& node, int number);
    Q_DISABLE_COPY(EdgeData)

    /// Adds a row to the label, unless there is no text in it.
    void appendLabelLine(const QString& text);

    /// How many steps track `index` stands off the line: 1 and 2 lie one step to either side of it, 3 and 4 two steps.
    static qint32 trackStep(qint32 index) { return index / 2 + index % 2; }
    /// How far the outermost track of this base edge stands off the line between the nodes.
    int edgeMargin() const;

    qint64 id = 0;
    bool ring = false;
    qint32 ringDiameter = 10;
    /// Diameter of the ring as a multiple of the node's circle.
    float ringScale = 1.0f;
    bool rightAngle = false;
    NodeData* startNode = nullptr;
    NodeData* endNode = nullptr;
    QVector2D startPos;
    QVector2D endPos;
    /// Where the label is centred.
    QVector2D centerPos;
    bool select = false;
    bool show = true;
    /// Whose line frame the track follows; null for base edges, for rings, and once the base edge is gone.
    EdgeData* baseEdge = nullptr;
    qint32 index = 0;
    qint32 maxIndex = 0;
    /// Of the straight line between the nodes; filled in an edge that has no base edge.
    LineFrame frame;
    Mat4 lineMatrix;
    QVector2D curveStartPos;
    QVector2D curveEndPos;
    Mat4 segmentMatrix0;
    Mat4 segmentMatrix1;
    Mat4 segmentMatrix2;
    Mat4 startArrowMatrix;
    Mat4 endArrowMatrix;
    bool startArrowShow = false;
    bool endArrowShow = false;
    qint32 edgeWidth = 8;
    Rgb edgeColor{0.0f, 0.0f, 0.0f};
    QList<LabelLine> labelLines;
    float labelSize = 1.0f;
    Rgba labelColor{0.0f, 0.0f, 0.0f, 1.0f};
    Rgba labelBackColor{1.0f, 1.0f, 1.0f, 0.0f};
    /// Multiplier of the distance between tracks.
    float zoomSpan = 1.0f;

private:
    void linkNodes(NodeData& start, NodeData& end);
};

} // namespace NELK
