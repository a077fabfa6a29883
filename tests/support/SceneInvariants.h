#pragma once

#include "scene/Scene.h"

#include <QString>

namespace NELK
{

namespace SceneInvariants
{

template <typename Record>
using RecordSet = QHash<qint64, Record*>;

/// Whether `mirror` holds just those records of `all` for which `belongs` holds, each under its id.
template <typename Record, typename Belongs>
bool mirrors(const RecordSet<Record>& mirror, const RecordSet<Record>& all, Belongs belongs)
{
    int expected = 0;
    for (Record* record : all) {
        if (!belongs(*record))
            continue;
        ++expected;
        if (mirror.value(record->id) != record)
            return false;
    }
    return mirror.size() == expected;
}

/// Whether `some` holds nothing that `all` does not hold under the same id.
template <typename Record>
bool isPartOf(const RecordSet<Record>& some, const RecordSet<Record>& all)
{
    for (auto it = some.cbegin(); it != some.cend(); ++it) {
        if (all.value(it.key()) != it.value())
            return false;
    }
    return true;
}

template <typename Record>
bool keysAreIds(const RecordSet<Record>& all)
{
    for (auto it = all.cbegin(); it != all.cend(); ++it) {
        if (!it.value() || it.value()->id != it.key())
            return false;
    }
    return true;
}

inline QString brokenSet(const Scene& scene)
{
    const auto is = [](auto flag) { return [flag](const auto& record) { return record.*flag; }; };
    const auto isPlain = [](const EdgeData& edge) { return !edge.ring; };

    if (!keysAreIds(scene.nodes) || !keysAreIds(scene.edges))
        return QStringLiteral("a record stands under another id than its own");
    if (!mirrors(scene.circleNodes, scene.nodes, is(&NodeData::circleShow)))
        return QStringLiteral("circleNodes");
    if (!mirrors(scene.selectedNodes, scene.nodes, is(&NodeData::select)))
        return QStringLiteral("selectedNodes");
    if (!mirrors(scene.selectedEdges, scene.edges, is(&EdgeData::select)))
        return QStringLiteral("selectedEdges");
    if (!mirrors(scene.startArrowEdges, scene.edges, is(&EdgeData::startArrowShow)))
        return QStringLiteral("startArrowEdges");
    if (!mirrors(scene.endArrowEdges, scene.edges, is(&EdgeData::endArrowShow)))
        return QStringLiteral("endArrowEdges");
    if (!mirrors(scene.ringEdges, scene.edges, is(&EdgeData::ring)))
        return QStringLiteral("ringEdges");
    if (!mirrors(scene.plainEdges, scene.edges, isPlain))
        return QStringLiteral("plainEdges");
    if (!isPartOf(scene.labelNodes, scene.nodes) || !isPartOf(scene.setNumNodes, scene.nodes) ||
        !isPartOf(scene.labelEdges, scene.edges))
        return QStringLiteral("a label set holds what is not in the scene");
    return {};
}

inline QString brokenLink(const EdgeData& edge)
{
    if (edge.startNode->outEdges.count(const_cast<EdgeData*>(&edge)) != 1)
        return QStringLiteral("edge %1 does not leave its start node once").arg(edge.id);
    if (edge.endNode->inEdges.count(const_cast<EdgeData*>(&edge)) != (edge.ring ? 0 : 1))
        return QStringLiteral("edge %1 does not arrive at its end node as it should").arg(edge.id);
    if (edge.ring)
        return edge.startNode == edge.endNode && !edge.baseEdge ? QString() : QStringLiteral("ring %1").arg(edge.id);
    if (edge.startPos != edge.startNode->center() || edge.endPos != edge.endNode->center())
        return QStringLiteral("edge %1 has lost its nodes").arg(edge.id);

    const EdgeData* base = edge.baseEdge;
    if (base && !edge.startNode->outEdges.contains(edge.baseEdge))
        return QStringLiteral("edge %1 has a base edge that is gone").arg(edge.id);
    if (base && (base->startNode != edge.startNode || base->endNode != edge.endNode || base->baseEdge))
        return QStringLiteral("edge %1 has the wrong base edge").arg(edge.id);
    return {};
}

inline QString brokenList(const NodeData& node)
{
    for (const EdgeData* edge : node.outEdges) {
        if (edge->startNode != &node)
            return QStringLiteral("a foreign edge leaves node %1").arg(node.id);
        if (const QString broken = brokenLink(*edge); !broken.isEmpty())
            return broken;
    }
    for (const EdgeData* edge : node.inEdges) {
        if (edge->endNode != &node)
            return QStringLiteral("a foreign edge arrives at node %1").arg(node.id);
        if (const QString broken = brokenLink(*edge); !broken.isEmpty())
            return broken;
    }
    return {};
}

} // namespace SceneInvariants

/// Which of the promises that every operation keeps is broken, in words; empty if none. Walks all records by way of
/// sets and lists alike, and so reads whatever the scene might still hold on to by mistake.
inline QString brokenInvariant(const Scene& scene)
{
    if (const QString broken = SceneInvariants::brokenSet(scene); !broken.isEmpty())
        return broken;
    for (const NodeData* node : scene.nodes) {
        if (const QString broken = SceneInvariants::brokenList(*node); !broken.isEmpty())
            return broken;
    }
    for (const EdgeData* edge : scene.edges) {
        if (const QString broken = SceneInvariants::brokenLink(*edge); !broken.isEmpty())
            return broken;
    }
    return {};
}

} // namespace NELK
