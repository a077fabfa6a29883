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

    /// Whether both refer to the same edge of the same scene. Null handles are equal if both were default-constructed,
    /// or both came from the same scene.
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
    /// The first inner corner of an edge in three pieces. On a straight edge the point 128 units from its start, which
    /// between nodes nearer than 256 units lies beyond that of the end; for a ring the centre of the ring.
    QPoint curveStartPos() const;
    /// The second inner corner of an edge in three pieces, or the like point at its end.
    QPoint curveEndPos() const;

    bool select() const;
    /// Selects the edge or not, also where it is hidden. Emits nothing.
    void setSelect(bool select);
    /// Shows or hides the edge, whether its nodes are shown or not.
    void setShow(bool show);
    /// Colour of line and arrow heads; alpha does not count. Black at first.
    void setEdgeColor(const QColor& color);
    /// Width of the line in scene units, at least 8. Arrow heads grow with it.
    void setEdgeWidth(int width);
    /// Draws the edge in three axis-parallel pieces, or as it was. Parallel edges drawn so lie on top of each other,
    /// and edges parallel to one drawn so stay where its straight line was when it was last drawn. A ring keeps its
    /// shape.
    void setRightAngle(bool rightAngle);
    /// Puts this parallel edge `span` times as far off the line between its nodes as it is at first, which is 128 units
    /// for tracks 1 and 2, 256 for 3 and 4, and so on. Zero lays it on that line, a negative number on the other side;
    /// there is no bound. Base edges, rings and right-angled edges do not change. Does nothing on a null handle.
    void setZoomSpan(float span);
    /// Draws an arrow head at the start, or none. Rings have no place for one.
    void setStartArrowShow(bool show);
    /// The same at the end.
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
