// Clicks and frames over a whole scene, each beside a bare walk over the same records that reads one field of each:
// what no test of every element can be faster than. The ratio of the two is what counts.

#include "support/FilledScene.h"
#include "support/Timing.h"

#include <benchmark/benchmark.h>

using namespace NELK;

namespace
{

/// A place beside the network, where nothing is hit.
const QVector2D emptyBackground(3.0e6f, 3.0e6f);
const QVector2D everythingLeftTop(-1.0e7f, 1.0e7f);
const QVector2D everythingRightBottom(1.0e7f, -1.0e7f);

int bareWalk(const Scene& scene)
{
    int shown = 0;
    for (const NodeData* node : scene.nodes)
        shown += node->show ? 1 : 0;
    for (const EdgeData* edge : scene.edges)
        shown += edge->show ? 1 : 0;
    return shown;
}

/// Takes `operation` and the bare walk in turns. The time told is that of the operation, after `prepare`.
template <typename Prepare, typename Operation>
void besideBareWalk(benchmark::State& state, Prepare prepare, Operation operation)
{
    FilledScene& filled = FilledScene::ofSize(static_cast<std::size_t>(state.range(0)));
    Scene& scene = filled.scene();
    double walkSeconds = 0.0;
    double operationSeconds = 0.0;
    for ([[maybe_unused]] auto iteration : state) {
        prepare(scene);
        walkSeconds += secondsOf([&scene] { benchmark::DoNotOptimize(bareWalk(scene)); });
        const double seconds = secondsOf([&] { operation(scene); });
        operationSeconds += seconds;
        state.SetIterationTime(seconds);
    }
    state.counters["ratio_to_walk"] = operationSeconds / walkSeconds;
    state.SetComplexityN(state.range(0));
}

void click(Scene& scene, QVector2D point)
{
    bool changed = false;
    scene.selectAtPoint(point, SELECT_REPLACE, &changed, 4);
    benchmark::DoNotOptimize(changed);
}

void clickBesideNetwork(benchmark::State& state)
{
    const auto nothing = [](Scene&) {};
    besideBareWalk(state, nothing, [](Scene& scene) { click(scene, emptyBackground); });
}

void clickWithinNetwork(benchmark::State& state)
{
    // Half a unit off the grid of whole numbers is no node's centre; an edge that is hit stays selected at first.
    const auto nothing = [](Scene&) {};
    besideBareWalk(state, nothing, [](Scene& scene) { click(scene, {0.5f, 0.5f}); });
}

void frameOverEverythingSelected(benchmark::State& state)
{
    const auto selectAll = [](Scene& scene) {
        scene.selectInFrame(everythingLeftTop, everythingRightBottom, SELECT_REPLACE);
    };
    besideBareWalk(state, selectAll, selectAll);
}

void frameThatSelectsEverything(benchmark::State& state)
{
    const auto clearSelection = [](Scene& scene) { click(scene, emptyBackground); };
    besideBareWalk(state, clearSelection,
                   [](Scene& scene) { scene.selectInFrame(everythingLeftTop, everythingRightBottom, SELECT_REPLACE); });
}

void overSizes(benchmark::internal::Benchmark* measured)
{
    measured->RangeMultiplier(10)
        ->Range(1'000, 1'000'000)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Complexity(benchmark::oN);
}

BENCHMARK(clickBesideNetwork)->Apply(overSizes);
BENCHMARK(clickWithinNetwork)->Apply(overSizes);
BENCHMARK(frameOverEverythingSelected)->Apply(overSizes);
BENCHMARK(frameThatSelectsEverything)->Apply(overSizes);

} // namespace

BENCHMARK_MAIN();
