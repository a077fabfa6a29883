#pragma once

#include <NELK/Export.h>
#include <NELK/GraphEdge.h>
#include <NELK/GraphNode.h>

#include <QList>
#include <QObject>
#include <QPoint>
#include <QRect>
#include <QRectF>

namespace NELK
{

class Scene;

/// A network in memory: the host fills it with nodes and edges and shows it through one or more `GraphView` widgets.
///
/// The scene has no parent; the host deletes it, and before it all views on it. All members belong to the user
/// interface thread. A host's own changes emit nothing, setSize() apart.
///
/// Ids are 64-bit numbers, chosen by the host or taken from one running number that all scenes of the process share for
/// nodes and edges alike. The two are not checked against each other: a host that mixes them keeps them apart. Nodes
/// with ids from 12345678900 on carry float icons and cannot be picked in a view.
class NELK_EXPORT GraphScene : public QObject
{
    Q_OBJECT

public:
    GraphScene();
    /// Deletes all elements; no handle of this scene may be used any more.
    ~GraphScene() override;

    /// Creates a node at the origin under the next running id.
    GraphNode createNode();
    /// Creates a node at the origin under `id`. If the id is taken, the new node takes its place: handles of the old
    /// one become invalid, and it is no longer drawn, while its edges stay where they are.
    GraphNode createNode(qint64 id);

    /// Creates an edge under the next running id: a straight base edge between two nodes, or a ring where they are one.
    /// The handle is null if a handle is not valid or its id is not in this scene; the running id moves all the same.
    ///
    /// Both nodes must be of this scene. A node of another scene whose id is known here is not told apart, and an edge
    /// to it would break when either scene changes.
    GraphEdge createEdge(const GraphNode& start, const GraphNode& end);
    /// The same under `id`. If the id is taken, the new edge takes its place: handles of the old one become invalid, it
    /// is no longer drawn or found, and edges parallel to it stay where they are.
    GraphEdge createEdge(qint64 id, const GraphNode& start, const GraphNode& end);
    /// Creates a further edge beside `base`, in the same direction, under the next running id.
    ///
    /// Beside an edge between two nodes it runs on track `index`, where less than 1 counts as 1: odd tracks lie to the
    /// right of the way from start to end and even ones to the left (y up), two more with each step outward. Beside a
    /// ring it is ring number `index`, where less than 0 counts as 0, wider by 0.4 of the node's circle with each
    /// number. Which tracks are taken is the host's business. `base` must be of this scene. The handle is null if it is
    /// not valid, if it is itself parallel to an edge that is still there, or if its id is not in this scene; the
    /// running id moves all the same.
    GraphEdge createEdge(const GraphEdge& base, int index);
    /// The same under `id`. If the id is taken, the new edge takes its place, as told above.
    GraphEdge createEdge(qint64 id, const GraphEdge& base, int index);

    /// The node or edge with that id; a null handle if there is none.
    GraphNode getNode(qint64 id) const;
    GraphEdge getEdge(qint64 id) const;

    /// Removes a node and all its edges. The id must exist; a debug build asserts this. Emits nothing, also when
    /// something selected goes.
    void removeNode(qint64 id);
    /// Removes an edge. The id must exist; a debug build asserts this. Edges parallel to it stay on their tracks.
    void removeEdge(qint64 id);
    /// Removes all elements. The size and the running id stay as they are.
    void clear();

    /// Sets how far views scroll and fit, in scene units: at least 8000 by 4800. It moves no element and is no bound on
    /// positions. Emits signalSizeChanged(), also when nothing changed.
    void setSize(int width, int height);
    int width() const;
    int height() const;

    /// The rectangle around all node centres, or those of shown nodes, with room for the outermost parallel edge, in
    /// the scene plane: its top is the largest y and its height counts downward from there. Icons and labels are not
    /// counted in. Without a node the result is (-4000, 2400) with width 8000 and height -4800.
    QRect boundingRect(bool visibleOnly) const;
    /// Moves all nodes so that the middle of the box around their centres lies at the origin. Locked and hidden nodes
    /// move too.
    void elementsAlignToCenter();

    /// Shows or hides all text of nodes; set numbers stay. Hidden text does not count for GraphNode::rect() and for
    /// picking. Seen after `GraphView::NelkUpdate`.
    void setNodeTextShow(bool show);
    /// Shows or hides all text of edges. Seen after `GraphView::NelkUpdate`.
    void setEdgeTextShow(bool show);

    /// All nodes whose circle, shown or not, has `point` (scene plane) strictly inside it; hidden nodes and nodes that
    /// a view cannot pick too. In no particular order.
    QList<GraphNode> testNodeAtPoint(const QPoint& point) const;

    // A slot may change the scene as it likes, but must not delete it: deleteLater() does.

Q_SIGNALS:
    /// The user changed the selection. Holds the ids of all selected nodes and edges, in no particular order.
    void signalSelectChanged(const QList<qint64>& ns, const QList<qint64>& es);
    /// The selection was changed or elements were dragged by the user, or the camera of a view moved. `region` is
    /// always empty.
    void changed(const QList<QRectF>& region);
    /// setSize() was called.
    void signalSizeChanged();

private:
    friend class GraphView;

    Q_DISABLE_COPY(GraphScene)

    Scene* const scene; // a child of this object
};

} // namespace NELK
