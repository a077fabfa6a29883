#pragma once

#include "scene/NodeData.h"
#include "scene/Scene.h"
#include "support/SceneOf.h"

#include <NELK/NELK>

#include <QColor>

namespace NELK
{

/// Two nodes without icons and a red edge between them, along the x axis. The left node is a blue disc, the right one
/// is selected and shows as an empty frame.
struct SmallNetwork
{
    static constexpr int nodeX = 100;
    /// From the middle of the right node to the sides of its frame.
    static constexpr int frameHalf = 32;
    static constexpr int edgeHalf = 4;

    SmallNetwork()
    {
        for (GraphNode* node : {&left, &right}) {
            node->setSize(0.25f);
            sceneOf(graph).nodes[node->getId()]->imageHidden = true;
        }
        left.setPos(-nodeX, 0);
        left.setCircleShow(true);
        left.setCircleColor(Qt::blue);
        right.setPos(nodeX, 0);
        right.setSelect(true);
        GraphEdge edge = graph.createEdge(left, right);
        edge.setEdgeColor(Qt::red);
        edge.setEdgeWidth(2 * edgeHalf);
    }

    GraphScene graph;
    GraphNode left = graph.createNode();
    GraphNode right = graph.createNode();
};

} // namespace NELK
