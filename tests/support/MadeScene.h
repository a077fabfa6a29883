#pragma once

#include "scene/MirroredFlag.h"
#include "scene/Scene.h"
#include "support/MadeLabel.h"

#include <QVector2D>

namespace NELK
{

// Elements put together by hand, with the sets of the scene in step.

inline NodeData& addNode(Scene& scene, qint64 id, QVector2D center)
{
    NodeData& node = *scene.createNode(id);
    node.x = center.x();
    node.y = center.y();
    return node;
}

inline void select(Scene& scene, NodeData& node)
{
    setMirrored(node, &NodeData::select, true, scene.selectedNodes);
}

inline void select(Scene& scene, EdgeData& edge)
{
    setMirrored(edge, &EdgeData::select, true, scene.selectedEdges);
}

inline void showCircle(Scene& scene, NodeData& node, qint32 diameter = 362)
{
    node.circleDiameter = diameter;
    setMirrored(node, &NodeData::circleShow, true, scene.circleNodes);
}

inline void showStartArrow(Scene& scene, EdgeData& edge)
{
    setMirrored(edge, &EdgeData::startArrowShow, true, scene.startArrowEdges);
}

inline void showEndArrow(Scene& scene, EdgeData& edge)
{
    setMirrored(edge, &EdgeData::endArrowShow, true, scene.endArrowEdges);
}

inline void setLabel(Scene& scene, NodeData& node, const QList<LabelLine>& rows)
{
    node.labelLines = rows;
    node.labelLineCount = rows.size();
    node.updateLabelSize();
    setMember(scene.labelNodes, node, true);
}

inline void setLabel(Scene& scene, EdgeData& edge, const QList<LabelLine>& rows)
{
    edge.labelLines = rows;
    setMember(scene.labelEdges, edge, true);
}

inline void setNumbers(Scene& scene, NodeData& node, const QList<LabelLine>& boxes)
{
    node.setNumLines = boxes;
    node.updateLabelSize();
    setMember(scene.setNumNodes, node, true);
}

/// A scene with a node at the origin.
struct OneNode
{
    Scene scene;
    NodeData& node = addNode(scene, 1, {0.0f, 0.0f});
};

/// A scene with an edge between two nodes, whose label is centred on the origin.
struct OneEdge
{
    OneEdge() { edge.centerPos = {0.0f, 0.0f}; }

    Scene scene;
    NodeData& start = addNode(scene, 1, {-1000.0f, 300.0f});
    NodeData& end = addNode(scene, 2, {2000.0f, 700.0f});
    EdgeData& edge = *scene.createEdge(11, &start, &end);
};

/// Switches on all that a node can show but its selection.
inline void dressUp(Scene& scene, NodeData& node)
{
    node.lock = node.focus = node.combined = true;
    showCircle(scene, node);
    setLabel(scene, node, {madeLine({30, 41}), madeLine({25})});
    setNumbers(scene, node, {madeLine({17, 33, 17})});
}

/// The same for an edge. The arrow heads of a ring are drawn too, at the origin.
inline void dressUp(Scene& scene, EdgeData& edge)
{
    showStartArrow(scene, edge);
    showEndArrow(scene, edge);
    setLabel(scene, edge, {madeLine({44, 28})});
}

/// Fills a scene with something for each of its lists: nodes 1 and 2, the latter selected, a line 11 between them, an
/// edge 12 parallel to it, and a ring 13.
inline void fillWithOneOfEach(Scene& scene)
{
    NodeData& start = addNode(scene, 1, {-700.0f, 250.0f});
    NodeData& end = addNode(scene, 2, {900.0f, -350.0f});
    EdgeData* line = scene.createEdge(11, &start, &end);
    for (EdgeData* edge : {line, scene.createEdge(12, line, 1), scene.createEdge(13, &start, &start)})
        dressUp(scene, *edge);
    for (NodeData* node : {&start, &end})
        dressUp(scene, *node);
    select(scene, end);
}

} // namespace NELK
