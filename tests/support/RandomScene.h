#pragma once

#include "support/MadeScene.h"
#include "support/RandomPlane.h"

#include <QList>

namespace NELK
{

inline QList<LabelLine> randomRows(RandomPlane& random)
{
    QList<LabelLine> rows;
    for (int row = random.whole(0, 3); row > 0; --row)
        rows.append(madeLine({random.whole(10, 70), random.whole(10, 70)}));
    return rows;
}

inline void dressAtRandom(Scene& scene, NodeData& node, RandomPlane& random)
{
    node.resize(random.floatNumber(0.1, 3.0));
    node.show = random.whole(0, 9) > 0;
    node.lock = random.coin();
    node.focus = random.coin();
    node.combined = random.coin();
    node.labelSize = random.floatNumber(1.0, 2.0);
    if (random.coin())
        showCircle(scene, node, random.whole(100, 900));
    if (random.coin())
        setLabel(scene, node, randomRows(random));
    if (random.coin())
        setNumbers(scene, node, randomRows(random));
    if (random.coin())
        select(scene, node);
}

inline void dressAtRandom(Scene& scene, EdgeData& edge, RandomPlane& random)
{
    edge.show = random.whole(0, 9) > 0;
    edge.rightAngle = random.coin();
    edge.edgeColor = {random.floatNumber(0.0, 1.0), random.floatNumber(0.0, 1.0), random.floatNumber(0.0, 1.0)};
    if (random.coin())
        showStartArrow(scene, edge);
    if (random.coin())
        showEndArrow(scene, edge);
    if (random.coin())
        setLabel(scene, edge, randomRows(random));
    if (random.coin())
        select(scene, edge);
}

/// Fills a scene with nodes and edges of all kinds. The ids of the edges follow on those of the nodes.
inline void fillAtRandom(Scene& scene, RandomPlane& random, int nodeCount, int edgeCount)
{
    QList<NodeData*> nodes;
    for (int id = 1; id <= nodeCount; ++id)
        nodes.append(&addNode(scene, id, random.point(50000.0)));
    const auto anyNode = [&] { return nodes.at(random.whole(0, nodeCount - 1)); };
    for (NodeData* node : qAsConst(nodes))
        dressAtRandom(scene, *node, random);

    EdgeData* base = nullptr;
    for (int id = nodeCount + 1; id <= nodeCount + edgeCount; ++id) {
        const int kind = base ? random.whole(0, 3) : 0;
        EdgeData* edge = nullptr;
        if (kind == 3) {
            edge = scene.createEdge(id, base, random.whole(1, 6));
        } else {
            NodeData* start = anyNode();
            edge = scene.createEdge(id, start, kind == 2 ? start : anyNode());
        }
        dressAtRandom(scene, *edge, random);
        if (kind < 2)
            base = edge;
    }
}

} // namespace NELK
