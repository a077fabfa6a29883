#pragma once

#include <NELK/GraphScene.h>

#include <QPoint>

#include <cmath>
#include <random>
#include <vector>

namespace NELK
{

/// The shape of a network to measure on: nodes in a square that grows with their number, one on every 500 by 500 units,
/// and twice as many edges. The same numbers come at every run.
class NetworkPlan
{
public:
    struct Link
    {
        std::size_t start;
        std::size_t end;
    };

    /// Nodes scattered at random; half of the edges join nodes in the order of creation, and half any two nodes. No
    /// order helps whoever walks it, and edges cross all of the picture.
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

    /// Nodes on a grid, a little off it, and edges to the neighbours to the right and below, as they lie in a network
    /// that somebody has laid out.
    static NetworkPlan laidOut(std::size_t nodeCount)
    {
        NetworkPlan plan;
        std::mt19937 random(20'21);
        std::uniform_int_distribution<int> offset(-100, 100);
        const auto columns = static_cast<std::size_t>(std::ceil(std::sqrt(static_cast<double>(nodeCount))));
        const int middle = static_cast<int>(columns) * 250;
        for (std::size_t node = 0; node < nodeCount; ++node) {
            plan.positions.emplace_back(static_cast<int>(node % columns) * 500 - middle + offset(random),
                                        static_cast<int>(node / columns) * 500 - middle + offset(random));
            plan.links.push_back({node, (node + 1) % nodeCount});
            plan.links.push_back({node, (node + columns) % nodeCount});
        }
        return plan;
    }

    std::vector<QPoint> positions;
    std::vector<Link> links;

private:
    NetworkPlan() = default;
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
