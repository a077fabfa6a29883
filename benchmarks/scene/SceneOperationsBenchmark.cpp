// Single operations, whose cost must not depend on how many elements the scene holds, and the step of a drag.

#include "support/FilledScene.h"
#include "support/RunBenchmarks.h"

#include <QColor>

#include <benchmark/benchmark.h>

using namespace NELK;

namespace
{

/// A setter with arguments that change from one round over all elements to the next.
template <typename Element>
struct Setter
{
    const char* name;
    void (*call)(Element& element, int round);
};

bool isOdd(int round)
{
    return round % 2 != 0;
}

const Setter<GraphNode> nodeSetters[] = {
    {"setPos", [](GraphNode& node, int round) { node.setPos(round, -round); }},
    {"setSelect", [](GraphNode& node, int round) { node.setSelect(isOdd(round)); }},
    {"setShow", [](GraphNode& node, int round) { node.setShow(isOdd(round)); }},
    {"setLock", [](GraphNode& node, int round) { node.setLock(isOdd(round)); }},
    {"setFocus", [](GraphNode& node, int round) { node.setFocus(isOdd(round)); }},
    {"setCombined", [](GraphNode& node, int round) { node.setCombined(isOdd(round)); }},
    {"setSize", [](GraphNode& node, int round) { node.setSize(static_cast<float>(round)); }},
    {"setCircleShow", [](GraphNode& node, int round) { node.setCircleShow(isOdd(round)); }},
    {"setCircleSize", [](GraphNode& node, int round) { node.setCircleSize(static_cast<float>(round)); }},
    {"setCircleColor", [](GraphNode& node, int round) { node.setCircleColor(isOdd(round) ? Qt::red : Qt::blue); }},
};

const Setter<GraphEdge> edgeSetters[] = {
    {"setSelect", [](GraphEdge& edge, int round) { edge.setSelect(isOdd(round)); }},
    {"setShow", [](GraphEdge& edge, int round) { edge.setShow(isOdd(round)); }},
    {"setEdgeColor", [](GraphEdge& edge, int round) { edge.setEdgeColor(isOdd(round) ? Qt::red : Qt::blue); }},
    {"setEdgeWidth", [](GraphEdge& edge, int round) { edge.setEdgeWidth(8 + round); }},
    {"setRightAngle", [](GraphEdge& edge, int round) { edge.setRightAngle(isOdd(round)); }},
    {"setZoomSpan", [](GraphEdge& edge, int round) { edge.setZoomSpan(static_cast<float>(round)); }},
    {"setStartArrowShow", [](GraphEdge& edge, int round) { edge.setStartArrowShow(isOdd(round)); }},
    {"setEndArrowShow", [](GraphEdge& edge, int round) { edge.setEndArrowShow(isOdd(round)); }},
};

/// Calls the setter for one element after the other, round after round.
template <typename Element>
void callInTurn(benchmark::State& state, std::vector<Element>& elements, const Setter<Element>& setter)
{
    std::size_t position = 0;
    int round = 1;
    for ([[maybe_unused]] auto iteration : state) {
        setter.call(elements[position], round);
        if (++position == elements.size()) {
            position = 0;
            ++round;
        }
    }
    state.SetComplexityN(state.range(0));
}

void createAndRemoveNode(benchmark::State& state)
{
    FilledScene& filled = FilledScene::ofSize(static_cast<std::size_t>(state.range(0)));
    for ([[maybe_unused]] auto iteration : state)
        filled.graphScene.removeNode(filled.graphScene.createNode().getId());
    state.SetComplexityN(state.range(0));
}

void removeAndCreateEdge(benchmark::State& state)
{
    FilledScene& filled = FilledScene::ofSize(static_cast<std::size_t>(state.range(0)));
    std::size_t position = 0;
    for ([[maybe_unused]] auto iteration : state) {
        GraphEdge& edge = filled.network.edges[position];
        const NetworkPlan::Link& link = filled.plan.links[position];
        filled.graphScene.removeEdge(edge.getId());
        edge = filled.graphScene.createEdge(edge.getId(), filled.network.nodes[link.start],
                                            filled.network.nodes[link.end]);
        position = (position + 1) % filled.network.edges.size();
    }
    state.SetComplexityN(state.range(0));
}

/// 1,000 nodes, each with an edge to and from four others of them, dragged as one.
void dragStep(benchmark::State& state)
{
    constexpr std::size_t nodeCount = 1'000;
    constexpr std::size_t edgesPerNode = 4;
    const NetworkPlan plan(nodeCount);
    GraphScene graphScene;
    Network network;
    createNodes(graphScene, plan, network);
    for (std::size_t node = 0; node < nodeCount; ++node) {
        network.nodes[node].setSelect(true);
        for (std::size_t distance = 1; distance <= edgesPerNode; ++distance)
            graphScene.createEdge(network.nodes[node], network.nodes[(node + distance) % nodeCount]);
    }

    Scene& scene = sceneOf(graphScene);
    for ([[maybe_unused]] auto iteration : state)
        scene.moveSelected({1.0f, -1.0f});

    constexpr auto shapes = static_cast<double>(2 * edgesPerNode * nodeCount); // each edge is built from both ends
    state.counters["per_shape"] =
        benchmark::Counter(shapes, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void overSizes(benchmark::internal::Benchmark* measured)
{
    measured->RangeMultiplier(10)->Range(1'000, 1'000'000)->Complexity(benchmark::o1);
}

template <typename Element, std::size_t count>
void registerSetters(const std::string& kind, const Setter<Element> (&setters)[count],
                     std::vector<Element> Network::*elements)
{
    for (const Setter<Element>& setter : setters) {
        const auto measure = [&setter, elements](benchmark::State& state) {
            FilledScene& filled = FilledScene::ofSize(static_cast<std::size_t>(state.range(0)));
            callInTurn(state, filled.network.*elements, setter);
        };
        benchmark::RegisterBenchmark((kind + "/" + setter.name).c_str(), measure)->Apply(overSizes);
    }
}

BENCHMARK(createAndRemoveNode)->Apply(overSizes);
BENCHMARK(removeAndCreateEdge)->Apply(overSizes);
BENCHMARK(dragStep)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char* argv[])
{
    registerSetters("GraphNode", nodeSetters, &Network::nodes);
    registerSetters("GraphEdge", edgeSetters, &Network::edges);
    return runBenchmarks(argc, argv);
}
