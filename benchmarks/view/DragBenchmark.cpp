// One step of a drag of a thousand selected nodes in a scene of 100,000 nodes and 200,000 edges, taken apart. Run it on
// a display.

#include "render/InstanceRebuild.h"
#include "startup/AtlasStart.h"
#include "support/FilledScene.h"
#include "support/RunBenchmarks.h"
#include "support/Timing.h"
#include "view/View.h"

#include <QApplication>

#include <benchmark/benchmark.h>

using namespace NELK;

namespace
{

class PaintedView : public View
{
public:
    using View::View;

    /// A repaint until OpenGL is done with it, but for putting the picture into the window.
    void paint()
    {
        makeCurrent();
        View::paintGL();
        glFinish();
    }
};

void dragStep(benchmark::State& state)
{
    FilledScene filled(NetworkPlan::laidOut(100'000));
    Scene& scene = filled.scene();
    for (std::size_t i = 0; i < 1000; ++i)
        filled.network.nodes[i * 100].setSelect(true);
    PaintedView view(&scene);
    view.resize(1280, 800);
    view.setViewSize(1280, 800);
    view.show();
    view.paint();

    double shapes = 0.0;
    double move = 0.0;
    double rebuild = 0.0;
    double repaint = 0.0;
    float direction = 1.0f;
    for ([[maybe_unused]] auto iteration : state) {
        shapes += secondsOf([&scene] {
            for (NodeData* node : qAsConst(scene.selectedNodes))
                node->updateAttachedEdges();
        });
        move += secondsOf([&] { scene.moveSelected({direction, direction}); });
        rebuild += secondsOf([&view] { view.rebuildAll(); });
        repaint += secondsOf([&view] { view.paint(); });
        direction = -direction;
    }
    const double milliseconds = 1e3 / static_cast<double>(state.iterations());
    state.counters["positions_ms"] = (move - shapes) * milliseconds;
    state.counters["shapes_ms"] = shapes * milliseconds;
    state.counters["rebuild_ms"] = rebuild * milliseconds;
    state.counters["repaint_ms"] = repaint * milliseconds;
}

BENCHMARK(dragStep)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(20);

} // namespace

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    startAtlases();
    QCoreApplication::processEvents();
    return runBenchmarks(argc, argv);
}
