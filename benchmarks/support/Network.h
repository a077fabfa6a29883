#pragma once

#include <NELK/GraphScene.h>

#include <QPoint>

#include <cmath>
#include <random>
#include <vector>

namespace NELK
{

/// The shape of a network to measure on: nodes scattered over a square that grows with their number, and twice as many
/// edges, half of them between neighbours and half between any two nodes. The same numbers come at every run.
class NetworkPlan
{
public:
    struct Link
    {
        std::size_t start;
        std::size_t end;
    };

    explicit NetworkPlan(std::size_t nodeCount)
    {
        std::mt19937 random(20'21);
        const auto side = static_cast<int>(500.0 * std::sqrt(static_cast<double>(nodeCount)));
        std::uniform_int_distribution<int> coordinate(-side / 2, side / 2);
        std::uniform_int_distribution<std::size_t> anyOther(1, nodeCount - 1);
        for (std::size_t node = 0; node < nodeCount; ++node)
            positions.emplace_back(coordinate(random), coordinate(random));
        for (std::size_t node = 0; node < nodeCount; ++node) {
            links.push_back({node, (node + 1) % nodeCount});
            links.push_back({node, (node + anyOther(random)) % nodeCount});
        }
    }

    std::vector<QPoint> positions;
    std::vector<Link> links;
};

/// The nodes and edges of a plan, as a host has them.
struct Network
{
    std::vector<GraphNode> nodes;
    std::vector<GraphEdge> edges;
};

inline void createNodes(GraphScene& scene, const NetworkPlan& plan, Network& network)
{
    network.nodes.reserve(plan.positions.size());
    for (const QPoint& position : plan.positions) {
        network.nodes.push_back(scene.createNode());
        network.nodes.back().setPos(position);
    }
}

inline void createEdges(GraphScene& scene, const NetworkPlan& plan, Network& network)
{
    network.edges.reserve(plan.links.size());
    for (const NetworkPlan::Link& link : plan.links)
        network.edges.push_back(scene.createEdge(network.nodes[link.start], network.nodes[link.end]));
}

} // namespace NELK
