#pragma once

#include "scene/ColorConversion.h"
#include "scene/EdgeData.h"
#include "scene/InstanceList.h"
#include "scene/NodeData.h"
#include "scene/RecordPool.h"
#include "scene/SelectMode.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QRect>
#include <QRectF>
#include <QString>
#include <QVector2D>

namespace NELK
{

/// The model behind a GraphScene: owns all nodes and edges, and holds what views, overview and handles share.
///
/// Beside the two maps of all elements there is a set for each feature that is costly to draw, holding just the
/// elements that have it, so that the work for a feature grows with its users and not with the network. All keys are
/// ids. No set depends on `show`.
///
/// Nothing here records that something changed. Whoever shows the scene is told by a signal, or by the host, and reads
/// everything again.
class Scene : public QObject
{
    Q_OBJECT

public:
    using NodeSet = QHash<qint64, NodeData*>;
    using EdgeSet = QHash<qint64, EdgeData*>;

    explicit Scene(QObject* parent = nullptr);
    ~Scene() override;

    // Elements. A new element takes the place of an older one with the same id, in all maps and sets; the older record
    // lives on, out of reach, until the scene is cleared or a node of it is removed.

    NodeData* createNode(qint64 id);
    /// An edge between two nodes, or a ring where they are one. Null if either is null or its id unknown here.
    EdgeData* createEdge(qint64 id, NodeData* start, NodeData* end);
    /// A further ring beside a ring, or an edge parallel to a base edge. Null if `base` is null, unknown here, or
    /// itself derived.
    EdgeData* createEdge(qint64 id, EdgeData* base, int index);
    /// The element with that id, or null.
    NodeData* getNode(qint64 id) const { return nodes.value(id); }
    EdgeData* getEdge(qint64 id) const { return edges.value(id); }
    /// Removes a node with all its edges. The id must exist.
    void removeNode(qint64 id);
    /// Removes an edge. The id must exist. Edges derived from it stay on their tracks and depend on nothing from then.
    void removeEdge(qint64 id);
    /// Removes all elements. The render lists stay as they are until the next rebuild.
    void clear();

    /// How far views scroll and fit. At least 8000 by 4800; no bound on positions.
    void setSize(int newWidth, int newHeight);

    // Movement.

    /// Moves every selected node that is shown and not locked, and its edges. Emits even if there is none.
    void moveSelected(QVector2D delta);
    /// The rectangle around all node centres, widened by the outermost parallel track. Its top is the largest y.
    QRect boundingRect(bool visibleOnly) const;
    /// Moves all nodes so that the middle of their bounding box comes to lie at the origin.
    void elementsAlignToCenter();

    // Picking. Hidden elements and nodes from `pickableIdLimit` on are treated as absent. At a point nodes come before
    // edges, and a node's label counts as part of the node.

    /// Whether a node is at `point`; its id goes to `id` unless that is null. Selected nodes come first, then the one
    /// painted on top.
    bool testNodeAt(QVector2D point, qint64* id, bool selectedOnly) const;
    /// Whether an edge is within `tolerance` of `point`; its id goes to `id` unless that is null.
    bool testEdgeAt(QVector2D point, int tolerance, qint64* id) const;
    /// Selects by a click. Sets `*changed` if the selection changed. Answers whether a node was hit.
    bool selectAtPoint(QVector2D point, SelectMode mode, bool* changed, int tolerance);
    /// Selects all that overlaps the frame between two corners; the first has the lesser x and the greater y.
    void selectInFrame(QVector2D leftTop, QVector2D rightBottom, SelectMode mode);

    qint32 width = 8000;
    qint32 height = 4800;
    float aspect = 0.6f;
    bool nodeTextShow = true;
    bool edgeTextShow = true;

    NodeSet nodes;
    NodeSet circleNodes;
    NodeSet selectedNodes;
    NodeSet labelNodes;
    NodeSet setNumNodes;
    EdgeSet edges;
    EdgeSet plainEdges;
    EdgeSet selectedEdges;
    EdgeSet startArrowEdges;
    EdgeSet endArrowEdges;
    EdgeSet labelEdges;
    EdgeSet ringEdges;

    InstanceList circleItems;
    InstanceList ringItems;
    InstanceList imageItems;
    InstanceList eyeItems;
    InstanceList textItems;
    InstanceList selCircleItems;
    InstanceList selRingItems;
    InstanceList selImageItems;
    InstanceList frameItems;
    InstanceList selTextItems;
    InstanceList edgeLineItems;
    InstanceList edgeCurveItems;
    InstanceList arrowItems;
    InstanceList edgeRingItems;
    InstanceList edgeTextItems;

    QString reservedText;
    Rgb selectColor{0.196f, 0.557f, 1.0f};
    Rgba setNumColor{0.0f, 0.0f, 0.0f, 1.0f};
    Rgba setNumBackColor{1.0f, 1.0f, 0.0f, 1.0f};

Q_SIGNALS:
    /// The selection was changed by a click or a frame. Carries the ids of all that is selected now.
    void signalSelectChanged(const QList<qint64>& ns, const QList<qint64>& es);
    void signalElementsMoved();
    /// Something in the scene or in a camera on it changed. `region` is always empty.
    void signalChanged(const QList<QRectF>& region);

private:
    EdgeData* enter(qint64 id, EdgeData* edge);
    void withdraw(const NodeData& node);
    void withdraw(const EdgeData& edge);
    void discard(EdgeData* edge);
    void emitSelectChanged();

    RecordPool<NodeData> m_nodePool;
    RecordPool<EdgeData> m_edgePool;
};

} // namespace NELK
