#include "scene/Scene.h"

#include "scene/ElementHits.h"
#include "scene/MirroredFlag.h"

namespace NELK
{

namespace
{

bool stateAfterClick(bool selected, bool hit, SelectMode mode)
{
    switch (mode) {
    case SELECT_REPLACE:
        return hit;
    case SELECT_ADD:
        return selected != hit;
    case SELECT_REMOVE:
        return selected && !hit;
    }
    Q_UNREACHABLE();
}

bool stateAfterFrame(bool selected, bool hit, SelectMode mode)
{
    // Unlike a click, a frame never flips what it adds.
    return mode == SELECT_ADD ? selected || hit : stateAfterClick(selected, hit, mode);
}

} // namespace

bool Scene::testNodeAt(QVector2D point, qint64* id, bool selectedOnly) const
{
    const NodeData* found = nullptr;
    // Nodes are painted in the order of the map, so the walk goes backwards to meet the topmost first. A selected node
    // wins over what covers it: a press then grabs the whole selection.
    const QList<NodeData*> painted = nodes.values();
    for (auto it = painted.crbegin(); it != painted.crend(); ++it) {
        const NodeData& node = **it;
        if (selectedOnly && !node.select)
            continue;
        if (!isPickable(node) || !nodeAtPoint(point, node, nodeTextShow))
            continue;
        if (!found || node.select)
            found = &node;
        if (node.select)
            break;
    }
    if (found && id)
        *id = found->id;
    return found != nullptr;
}

bool Scene::testEdgeAt(QVector2D point, int tolerance, qint64* id) const
{
    for (const EdgeData* edge : edges) {
        if (!isPickable(*edge) || !edgeNearPoint(point, *edge, tolerance))
            continue;
        if (id)
            *id = edge->id;
        return true;
    }
    return false;
}

bool Scene::selectAtPoint(QVector2D point, SelectMode mode, bool* changed, int tolerance)
{
    bool anyChange = false;
    bool nodeHit = false;
    const QList<NodeData*> painted = nodes.values();
    for (auto it = painted.crbegin(); it != painted.crend(); ++it) {
        NodeData& node = **it;
        if (!isPickable(node))
            continue;
        const bool hit = !nodeHit && nodeAtPoint(point, node, nodeTextShow);
        nodeHit = nodeHit || hit;
        const bool select = stateAfterClick(node.select, hit, mode);
        anyChange = setMirrored(node, &NodeData::select, select, selectedNodes) || anyChange;
        if (mode != SELECT_REPLACE && nodeHit)
            break;
    }

    bool anyHit = nodeHit;
    for (EdgeData* edge : qAsConst(edges)) {
        if (mode != SELECT_REPLACE && anyHit)
            break;
        if (!isPickable(*edge))
            continue;
        const bool hit = !anyHit && edgeNearPoint(point, *edge, tolerance);
        anyHit = anyHit || hit;
        const bool select = stateAfterClick(edge->select, hit, mode);
        anyChange = setMirrored(*edge, &EdgeData::select, select, selectedEdges) || anyChange;
    }

    if (anyChange) {
        *changed = true;
        emitSelectChanged();
    }
    return nodeHit;
}

void Scene::selectInFrame(QVector2D leftTop, QVector2D rightBottom, SelectMode mode)
{
    bool anyChange = false;
    for (NodeData* node : qAsConst(nodes)) {
        if (!isPickable(*node))
            continue;
        const bool hit = nodeInFrame(leftTop, rightBottom, *node, nodeTextShow);
        const bool select = stateAfterFrame(node->select, hit, mode);
        anyChange = setMirrored(*node, &NodeData::select, select, selectedNodes) || anyChange;
    }
    for (EdgeData* edge : qAsConst(edges)) {
        if (!isPickable(*edge))
            continue;
        const bool hit = edgeInFrame(leftTop, rightBottom, *edge);
        const bool select = stateAfterFrame(edge->select, hit, mode);
        anyChange = setMirrored(*edge, &EdgeData::select, select, selectedEdges) || anyChange;
    }
    if (anyChange)
        emitSelectChanged();
}

void Scene::emitSelectChanged()
{
    Q_EMIT signalSelectChanged(selectedNodes.keys(), selectedEdges.keys());
    Q_EMIT signalChanged({});
}

} // namespace NELK
