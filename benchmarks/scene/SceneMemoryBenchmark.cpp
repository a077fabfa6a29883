// What a node and an edge cost in memory, all sets included, as the process sees it. Run in a process of its own, since
// memory that an earlier measurement gave back would be used again unseen.

#include "support/Network.h"
#include "support/ProcessMemory.h"

#include <benchmark/benchmark.h>

using namespace NELK;

namespace
{

void bytesOfElements(benchmark::State& state)
{
    const NetworkPlan plan(1'000'000);
    for ([[maybe_unused]] auto iteration : state) {
        Network network;
        network.nodes.resize(plan.positions.size()); // the host's own handles are not the scene's cost
        network.nodes.clear();
        network.edges.resize(plan.links.size());
        network.edges.clear();

        GraphScene scene;
        const double before = residentBytes();
        createNodes(scene, plan, network);
        const double withNodes = residentBytes();
        createEdges(scene, plan, network);
        const double withEdges = residentBytes();
        state.counters["bytes_per_node"] = (withNodes - before) / static_cast<double>(plan.positions.size());
        state.counters["bytes_per_edge"] = (withEdges - withNodes) / static_cast<double>(plan.links.size());
    }
}

BENCHMARK(bytesOfElements)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
