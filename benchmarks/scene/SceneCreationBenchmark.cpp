// How long it takes to fill a scene, from nothing to the last finished shape, beside the same in QGraphicsScene, which
// is what a Qt application would use instead.

#include "support/Network.h"
#include "support/RunBenchmarks.h"

#include <QApplication>
#include <QGraphicsLineItem>
#include <QGraphicsRectItem>
#include <QGraphicsScene>

#include <benchmark/benchmark.h>

#include <memory>
#include <optional>

using namespace NELK;

namespace
{

void reportElements(benchmark::State& state, std::size_t nodeCount)
{
    state.SetComplexityN(static_cast<benchmark::IterationCount>(nodeCount));
    state.counters["per_element"] =
        benchmark::Counter(static_cast<double>(3 * nodeCount),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void createNetwork(benchmark::State& state)
{
    const NetworkPlan plan(static_cast<std::size_t>(state.range(0)));
    for ([[maybe_unused]] auto iteration : state) {
        std::optional<GraphScene> scene(std::in_place);
        Network network;
        createNodes(*scene, plan, network);
        createEdges(*scene, plan, network);
        state.PauseTiming();
        scene.reset();
        network = {};
        state.ResumeTiming();
    }
    reportElements(state, plan.positions.size());
}

void createGraphicsItems(benchmark::State& state)
{
    const NetworkPlan plan(static_cast<std::size_t>(state.range(0)));
    for ([[maybe_unused]] auto iteration : state) {
        auto scene = std::make_unique<QGraphicsScene>();
        for (const QPoint& position : plan.positions)
            scene->addRect(-128.0, -128.0, 256.0, 256.0)->setPos(position);
        for (const NetworkPlan::Link& link : plan.links)
            scene->addLine(QLineF(plan.positions[link.start], plan.positions[link.end]));
        QCoreApplication::processEvents(); // items are indexed and made ready to be shown with the first events
        state.PauseTiming();
        scene.reset();
        state.ResumeTiming();
    }
    reportElements(state, plan.positions.size());
}

void destroyNetwork(benchmark::State& state)
{
    const NetworkPlan plan(static_cast<std::size_t>(state.range(0)));
    for ([[maybe_unused]] auto iteration : state) {
        state.PauseTiming();
        std::optional<GraphScene> scene(std::in_place);
        Network network;
        createNodes(*scene, plan, network);
        createEdges(*scene, plan, network);
        state.ResumeTiming();
        scene.reset();
    }
    reportElements(state, plan.positions.size());
}

void overSizes(benchmark::internal::Benchmark* measured)
{
    measured->RangeMultiplier(10)->Range(1'000, 1'000'000)->Unit(benchmark::kMillisecond)->Complexity(benchmark::oN);
}

BENCHMARK(createNetwork)->Apply(overSizes);
BENCHMARK(createGraphicsItems)->Apply(overSizes);
BENCHMARK(destroyNetwork)->Apply(overSizes);

} // namespace

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen"); // QGraphicsScene asks for an application, not for a display
    const QApplication application(argc, argv);
    return runBenchmarks(argc, argv);
}
