// What a label pays for its characters: known ones, in atlases of several sizes, and new ones while a repaint is under
// way. Run it with a font where the library looks for it.

#include "atlas/ImageManager.h"
#include "atlas/TextImageManagerThread.h"
#include "support/RunBenchmarks.h"
#include "support/Timing.h"

#include <NELK/GraphScene.h>

#include <QCoreApplication>
#include <QEventLoop>

#include <benchmark/benchmark.h>

#include <sys/resource.h>

#include <algorithm>
#include <ctime>

using namespace NELK;

namespace
{

constexpr qint32 firstIdeograph = 0x4e00;

/// Starts a repaint as a tick of the manager's timer does.
void tick(ImageManager& manager)
{
    QMetaObject::invokeMethod(&manager, "slotUpdateTimerEvent");
}

void waitForImage(ImageManager& manager)
{
    QEventLoop loop;
    QObject::connect(&manager, SIGNAL(signalImageChanged()), &loop, SLOT(quit()));
    tick(manager);
    loop.exec();
}

/// Fills the atlas up with code units until it has about so many cells, and has them painted.
void growTo(ImageManager& manager, qint64 cells)
{
    bool anyNew = false;
    for (qint32 code = firstIdeograph; code < firstIdeograph + cells; ++code)
        anyNew = !manager.requestWord(code).painted || anyNew;
    if (anyNew)
        waitForImage(manager);
}

void build(ImageManager& manager)
{
    manager.startInitial();
    QCoreApplication::processEvents();
}

void knownCharacter(benchmark::State& state)
{
    ImageManager manager(new TextImageManagerThread);
    build(manager);
    growTo(manager, state.range(0));
    qint32 offset = 0;
    for ([[maybe_unused]] auto iteration : state) {
        benchmark::DoNotOptimize(manager.requestWord(firstIdeograph + offset));
        offset = (offset + 617) % 3000;
    }
    state.SetComplexityN(state.range(0));
}

void labelOfEightKnownCharacters(benchmark::State& state)
{
    ImageManager& manager = *ImageManager::instance(1);
    build(manager);
    growTo(manager, state.range(0));
    GraphScene scene;
    GraphNode node = scene.createNode();
    const QString label = QStringLiteral("一丁七万丈三上下");
    for ([[maybe_unused]] auto iteration : state)
        node.setLabel(label, QString());
    state.SetComplexityN(state.range(0));
}

/// What the calls of one kind took.
struct Costs
{
    double total = 0.0;
    double worst = 0.0;

    void add(double seconds)
    {
        total += seconds;
        worst = std::max(worst, seconds);
    }
};

/// What this thread has worked so far, without the time that it waited or another had its core.
double workedSeconds()
{
    timespec worked{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &worked);
    return static_cast<double>(worked.tv_sec) + static_cast<double>(worked.tv_nsec) * 1e-9;
}

/// How often this thread has given up its core to wait for something, such as a lock.
long waits()
{
    rusage usage{};
    getrusage(RUSAGE_THREAD, &usage);
    return usage.ru_nvcsw;
}

void newCharacter(benchmark::State& state, bool isBesideRepaints)
{
    constexpr qint32 misses = 10'000;
    Costs byTheClock;
    Costs worked;
    long waitCount = 0;
    for ([[maybe_unused]] auto iteration : state) {
        ImageManager manager(new TextImageManagerThread);
        build(manager);
        for (qint32 miss = 0; miss < misses; ++miss) {
            if (isBesideRepaints)
                tick(manager); // a repaint is always under way, or starts now
            const long waitsBefore = waits();
            const double workedBefore = workedSeconds();
            byTheClock.add(secondsOf([&] { manager.requestWord(0xac00 + miss); }));
            worked.add(workedSeconds() - workedBefore);
            waitCount += waits() - waitsBefore;
            QCoreApplication::processEvents();
        }
    }
    state.SetIterationTime(byTheClock.total);
    state.counters["average_ns"] = byTheClock.total / misses * 1e9;
    state.counters["worst_ns"] = byTheClock.worst * 1e9;
    state.counters["worst_worked_ns"] = worked.worst * 1e9;
    state.counters["waits"] = static_cast<double>(waitCount);
}

void newCharacterBesideRepaints(benchmark::State& state)
{
    newCharacter(state, true);
}

void newCharacterWithoutRepaint(benchmark::State& state)
{
    newCharacter(state, false);
}

void overSizes(benchmark::internal::Benchmark* measured)
{
    measured->Arg(3'600)->Arg(10'000)->Arg(40'000)->Complexity(benchmark::oLogN);
}

BENCHMARK(knownCharacter)->Apply(overSizes);
BENCHMARK(labelOfEightKnownCharacters)->Apply(overSizes);
BENCHMARK(newCharacterBesideRepaints)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(newCharacterWithoutRepaint)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    return runBenchmarks(argc, argv);
}
