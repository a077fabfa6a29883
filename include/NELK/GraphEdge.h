#pragma once

#include <NELK/Export.h>

#include <QPoint>
#include <QString>
#include <QtGlobal>

class QColor;

namespace NELK
{

class GraphScene;
class Scene;
struct EdgeData;

/// A host's hold on one edge of a GraphScene.
///
/// Everything that GraphNode says of handles holds here: states, planes, thread and repaint. All positions of an edge
/// are told in the graph plane, y down, cut toward zero to integers.
class NELK_EXPORT GraphEdge
{
public:
    /// A null handle.
    GraphEdge() = default;

    /// Whether both refer to the same edge of the same scene, or both are null in the same way.
    bool operator==(const GraphEdge& other) const;
    bool operator!=(const GraphEdge& other) const { return !(*this == other); }

    /// The id that the edge has, or had; 0 in a null handle.
    qint64 getId() const { return id; }
    /// Whether the edge is in its scene. Safe to ask at any time while the scene exists. A handle of a removed edge
    /// stays invalid also when a new edge takes the same id.
    bool valid() const;

    /// Whether the edge joins a node to itself. False on a null handle.
    bool ring() const;

    /// Where the edge starts: the centre of its start node; for a ring the centre of the ring.
    QPoint startPos() const;
    /// Where the edge ends: the centre of its end node; for a ring the centre of the ring.
    QPoint endPos() const;
    /// The first inner corner of an edge in three pieces. On a straight edge the point 128 units from its start.
    QPoint curveStartPos() const;
    /// The second inner corner of an edge in three pieces. On a straight edge the point 128 units from its end.
    QPoint curveEndPos() const;

    bool select() const;
    void setSelect(bool select);
    /// Shows or hides the edge, whether its nodes are shown or not.
    void setShow(bool show);
    void setEdgeColor(const QColor& color);
    /// Width of the line in scene units, at least 8. Arrow heads grow with it.
    void setEdgeWidth(int width);
    /// Draws the edge in three axis-parallel pieces, or as it was. A ring keeps its shape.
    void setRightAngle(bool rightAngle);
    /// Sets the distance between this parallel edge and its neighbours to `span` times 128 units. Zero lays the edge on
    /// the line between its nodes, a negative number on the other side of it. Does nothing on a null handle.
    void setZoomSpan(float span);
    void setStartArrowShow(bool show);
    void setEndArrowShow(bool show);

    /// Sets the text at the middle of the edge, or at the top of a ring. Only a line feed ends a row; empty rows are
    /// left out, and nothing wraps. The library must have been started (see INIT_NELK).
    void setLabel(const QString& text);
    /// Colour of the characters, and behind them; both with alpha. Black on transparent at first.
    void setLabelColor(const QColor& color, const QColor& background);
    /// Scales the text, at least 1.0 times; at 1 a row is 76 units high.
    void setLabelSize(float size);

private:
    friend class GraphScene;

    GraphEdge(EdgeData* edgeRecord, Scene* edgeScene);
    EdgeData& data() const;

    EdgeData* record = nullptr;
    Scene* scene = nullptr;
    // Records are recycled: these two tell this edge from another one at the same address.
    qint64 id = 0;
    quint64 serial = 0;
};

} // namespace NELK
