#include "scene/Scene.h"

#include "scene/EdgeShape.h"

#include <algorithm>

namespace NELK
{

namespace
{

/// Cuts the bond to a base edge that is about to go. The edge stays on its track, counted from a frame of its own, and
/// may have derived edges itself from now on.
void makeIndependent(EdgeData& derived)
{
    derived.baseEdge = nullptr;
    derived.maxIndex = derived.index;
    buildLineFrame(derived); // a right-angled edge has no use for it, but edges derived from it have
    rebuildShape(derived);
}

/// Counts down the largest index of a base edge that loses the edge which has it. A base edge that was derived itself
/// stands on a track of its own, which still counts.
void forgetIndex(EdgeData& base, qint32 index)
{
    if (base.maxIndex == index && index > base.index)
        --base.maxIndex;
}

} // namespace

Scene::Scene(QObject* parent) : QObject(parent) {}

Scene::~Scene() = default;

NodeData* Scene::createNode(qint64 id)
{
    NodeData* node = m_nodePool.create();
    node->id = id;
    NodeData*& entry = nodes[id];
    if (entry)
        withdraw(*entry);
    entry = node;
    return node;
}

EdgeData* Scene::createEdge(qint64 id, NodeData* start, NodeData* end)
{
    if (!start || !end)
        return nullptr;
    if (!nodes.contains(start->id) || !nodes.contains(end->id))
        return nullptr;
    return enter(id, start == end ? m_edgePool.create(*start, 0) : m_edgePool.create(*start, *end));
}

EdgeData* Scene::createEdge(qint64 id, EdgeData* base, int index)
{
    if (!base || base->baseEdge)
        return nullptr;
    if (base->ring)
        return ringEdges.contains(base->id) ? enter(id, m_edgePool.create(*base->startNode, index)) : nullptr;
    return edges.contains(base->id) ? enter(id, m_edgePool.create(*base, index)) : nullptr;
}

EdgeData* Scene::enter(qint64 id, EdgeData* edge)
{
    edge->id = id;
    EdgeData*& entry = edges[id];
    if (entry)
        withdraw(*entry);
    entry = edge;
    EdgeSet& edgesOfKind = edge->ring ? ringEdges : plainEdges;
    edgesOfKind.insert(id, edge);
    return edge;
}

void Scene::removeEdge(qint64 id)
{
    EdgeData* edge = edges.value(id);
    Q_ASSERT_X(edge, "NELK::Scene::removeEdge", "no edge has this id");

    edge->startNode->outEdges.removeAll(edge);
    edge->endNode->inEdges.removeAll(edge);
    if (edge->baseEdge)
        forgetIndex(*edge->baseEdge, edge->index);
    for (EdgeData* neighbour : qAsConst(edge->startNode->outEdges)) {
        if (neighbour->baseEdge == edge)
            makeIndependent(*neighbour);
    }
    discard(edge);
}

void Scene::removeNode(qint64 id)
{
    NodeData* node = nodes.value(id);
    Q_ASSERT_X(node, "NELK::Scene::removeNode", "no node has this id");

    // Derived edges have the nodes of their base edge, so whole families go together: only the nodes at the other ends
    // need to be told, and the order does not matter.
    for (EdgeData* edge : qAsConst(node->outEdges)) {
        if (!edge->ring)
            edge->endNode->inEdges.removeAll(edge);
        discard(edge);
    }
    for (EdgeData* edge : qAsConst(node->inEdges)) {
        edge->startNode->outEdges.removeAll(edge);
        discard(edge);
    }
    withdraw(*node);
    nodes.remove(id);
    m_nodePool.destroy(node);
}

void Scene::clear()
{
    m_nodePool.clear();
    m_edgePool.clear();

    nodes.clear();
    circleNodes.clear();
    selectedNodes.clear();
    labelNodes.clear();
    setNumNodes.clear();
    edges.clear();
    selectedEdges.clear();
    startArrowEdges.clear();
    endArrowEdges.clear();
    labelEdges.clear();
    plainEdges.clear();
    ringEdges.clear();
}

void Scene::setSize(int newWidth, int newHeight)
{
    width = std::max(newWidth, 8000);
    height = std::max(newHeight, 4800);
    aspect = static_cast<float>(height) / static_cast<float>(width);
}

/// Takes the node out of every set that mirrors a feature.
void Scene::withdraw(const NodeData& node)
{
    labelNodes.remove(node.id);
    setNumNodes.remove(node.id);
    if (node.circleShow)
        circleNodes.remove(node.id);
    if (node.select)
        selectedNodes.remove(node.id);
}

/// Takes the edge out of the set of its kind and of every set that mirrors a feature.
void Scene::withdraw(const EdgeData& edge)
{
    EdgeSet& edgesOfKind = edge.ring ? ringEdges : plainEdges;
    edgesOfKind.remove(edge.id);
    labelEdges.remove(edge.id);
    if (edge.startArrowShow)
        startArrowEdges.remove(edge.id);
    if (edge.endArrowShow)
        endArrowEdges.remove(edge.id);
    if (edge.select)
        selectedEdges.remove(edge.id);
}

/// Takes an edge that no node refers to any more out of the maps and destroys it.
void Scene::discard(EdgeData* edge)
{
    // Where the id was given again, maps and sets hold the later edge.
    if (edges.value(edge->id) == edge) {
        withdraw(*edge);
        edges.remove(edge->id);
    }
    m_edgePool.destroy(edge);
}

} // namespace NELK
