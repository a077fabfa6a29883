// Rebuilding the lists of a scene, beside a plain copy of the bytes that the rebuild writes, and on one thread beside
// several. Text needs the font: run it with a data home that has one.

#include "atlas/ImageManager.h"
#include "render/InstanceBuilders.h"
#include "render/InstanceRebuild.h"
#include "support/FilledScene.h"
#include "support/RunBenchmarks.h"
#include "support/Timing.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>

#include <functional>

using namespace NELK;

namespace
{

constexpr qint32 textCols = 60;

using Builders = std::function<void(Scene&)>;

/// Everything but text.
void buildElements(Scene& scene)
{
    buildCircles(scene);
    buildRings(scene);
    buildImages(scene);
    buildEyeNodes(scene);
    buildFrames(scene);
    buildEdges(scene);
    buildArrows(scene);
    buildEdgeRings(scene);
}

void buildTexts(Scene& scene)
{
    buildLabels(scene, textCols);
}

/// What rebuildParallel does, on one thread.
void buildAllButEye(Scene& scene)
{
    buildCircles(scene);
    buildRings(scene);
    buildImages(scene);
    buildFrames(scene);
    buildEdges(scene);
    buildArrows(scene);
    buildTexts(scene);
    buildEdgeRings(scene);
}

const std::vector<InstanceList Scene::*> allLists{&Scene::circleItems,  &Scene::ringItems,     &Scene::imageItems,
                                                  &Scene::eyeItems,     &Scene::textItems,     &Scene::selCircleItems,
                                                  &Scene::selRingItems, &Scene::selImageItems, &Scene::frameItems,
                                                  &Scene::selTextItems, &Scene::edgeLineItems, &Scene::edgeCurveItems,
                                                  &Scene::arrowItems,   &Scene::edgeRingItems, &Scene::edgeTextItems};

void emptyLists(Scene& scene)
{
    for (const auto list : allLists)
        scene.*list = {};
}

std::vector<std::vector<InstanceRecord>> copiesOfLists(const Scene& scene)
{
    std::vector<std::vector<InstanceRecord>> copies;
    for (const auto list : allLists)
        copies.push_back((scene.*list).records);
    return copies;
}

/// Takes a rebuild and a copy of what it writes in turns, into memory that both have touched before.
void besideCopy(benchmark::State& state, Scene& scene, const Builders& build)
{
    emptyLists(scene);
    build(scene);
    auto copies = copiesOfLists(scene);
    double copySeconds = 0.0;
    double buildSeconds = 0.0;
    for ([[maybe_unused]] auto iteration : state) {
        copySeconds += secondsOf([&] {
            for (std::size_t i = 0; i < allLists.size(); ++i) {
                const auto& records = (scene.*allLists[i]).records;
                std::copy(records.begin(), records.end(), copies[i].begin());
            }
            benchmark::ClobberMemory();
        });
        const double seconds = secondsOf([&] { build(scene); });
        buildSeconds += seconds;
        state.SetIterationTime(seconds);
    }
    std::size_t written = 0;
    for (const auto& copy : copies)
        written += copy.size() * sizeof(InstanceRecord);
    state.counters["MB"] = static_cast<double>(written) / 1e6;
    state.counters["ratio_to_copy"] = buildSeconds / copySeconds;
}

void elementsBesideCopy(benchmark::State& state)
{
    besideCopy(state, FilledScene::ofSize(static_cast<std::size_t>(state.range(0))).scene(), buildElements);
}

void addLabels(FilledScene& filled)
{
    for (GraphNode& node : filled.network.nodes)
        node.setLabel(QStringLiteral("node %1").arg(node.getId() % 1000, 3), {});
}

void removeLabels(FilledScene& filled)
{
    for (GraphNode& node : filled.network.nodes)
        node.setLabel({}, {});
}

void glyphsBesideCopy(benchmark::State& state)
{
    FilledScene& filled = FilledScene::ofSize(static_cast<std::size_t>(state.range(0)));
    addLabels(filled);
    besideCopy(state, filled.scene(), buildTexts);
    removeLabels(filled);
}

/// Takes the rebuild on a team and the same on one thread in turns.
void teamBesideOne(benchmark::State& state, Scene& scene)
{
    rebuildAll(scene, textCols);
    double oneSeconds = 0.0;
    double teamSeconds = 0.0;
    for ([[maybe_unused]] auto iteration : state) {
        oneSeconds += secondsOf([&] { buildAllButEye(scene); });
        const double seconds = secondsOf([&] { rebuildParallel(scene, textCols); });
        teamSeconds += seconds;
        state.SetIterationTime(seconds);
    }
    state.counters["ratio_to_one"] = teamSeconds / oneSeconds;
}

void teamOnEdges(benchmark::State& state)
{
    teamBesideOne(state, FilledScene::ofSize(static_cast<std::size_t>(state.range(0))).scene());
}

void teamOnText(benchmark::State& state)
{
    FilledScene& filled = FilledScene::ofSize(static_cast<std::size_t>(state.range(0)));
    addLabels(filled);
    for (GraphEdge& edge : filled.network.edges)
        edge.setShow(false);
    teamBesideOne(state, filled.scene());
    for (GraphEdge& edge : filled.network.edges)
        edge.setShow(true);
    removeLabels(filled);
}

/// Circles, icons and edges in about equal parts.
void teamOnBoth(benchmark::State& state)
{
    FilledScene& filled = FilledScene::ofSize(static_cast<std::size_t>(state.range(0)));
    for (GraphNode& node : filled.network.nodes)
        node.setCircleShow(true);
    teamBesideOne(state, filled.scene());
    for (GraphNode& node : filled.network.nodes)
        node.setCircleShow(false);
}

void inMilliseconds(benchmark::internal::Benchmark* measured)
{
    measured->UseManualTime()->Unit(benchmark::kMillisecond);
}

BENCHMARK(teamOnEdges)->Apply(inMilliseconds)->Arg(100'000);
BENCHMARK(teamOnText)->Apply(inMilliseconds)->Arg(100'000);
BENCHMARK(teamOnBoth)->Apply(inMilliseconds)->Arg(100'000);
BENCHMARK(glyphsBesideCopy)->Apply(inMilliseconds)->Arg(10'000)->Arg(100'000);
BENCHMARK(elementsBesideCopy)->Apply(inMilliseconds)->RangeMultiplier(10)->Range(10'000, 1'000'000);

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    ImageManager::instance(ImageManager::wordIndex)->startInitial();
    QCoreApplication::processEvents();
    return runBenchmarks(argc, argv);
}
