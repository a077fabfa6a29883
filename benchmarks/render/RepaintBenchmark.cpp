// Complete redraws of a view of 1280 by 800: every node with an icon and a label, every edge with an arrow. Run it on a
// display, in the folder that holds entity/, with a data home that has a font.

#include "startup/AtlasStart.h"
#include "support/DrawCalls.h"
#include "support/FilledScene.h"
#include "support/RunBenchmarks.h"
#include "support/Timing.h"
#include "view/View.h"

#include <QApplication>

#include <benchmark/benchmark.h>

using namespace NELK;

namespace
{

constexpr QSize viewSize(1280, 800);

class MeasuredView : public View
{
public:
    explicit MeasuredView(Scene& shownScene) : View(&shownScene)
    {
        resize(viewSize);
        setViewSize(viewSize.width(), viewSize.height());
        show();
        redraw();
    }

    /// A repaint with all that it takes to be seen, until OpenGL is done with it.
    void redraw()
    {
        m_painted = false;
        update();
        while (!m_painted)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        makeCurrent();
        glFinish();
    }

    /// How long drawing alone has taken, before Qt puts the picture into the window.
    double drawingSeconds() const { return m_drawingSeconds; }

    /// A repaint as far as the processor has to ask for it.
    void issue() { View::paintGL(); }

    /// Hands the bytes of all lists that are painted to OpenGL, and does nothing else.
    void uploadAlone()
    {
        const InstanceList* const lists[] = {&scene->circleItems,   &scene->ringItems,      &scene->imageItems,
                                             &scene->textItems,     &scene->selCircleItems, &scene->selRingItems,
                                             &scene->selImageItems, &scene->frameItems,     &scene->selTextItems,
                                             &scene->edgeLineItems, &scene->edgeCurveItems, &scene->arrowItems,
                                             &scene->edgeRingItems, &scene->edgeTextItems};
        for (const InstanceList* list : lists)
            uploadInstances(imageMesh.instances, *list);
    }

protected:
    void paintGL() override
    {
        m_drawingSeconds += secondsOf([this] {
            View::paintGL();
            glFinish();
        });
        m_painted = true;
    }

private:
    bool m_painted = false;
    double m_drawingSeconds = 0.0;
};

/// A network in a view, with all that a label and an icon cost.
struct DressedScene
{
    explicit DressedScene(NetworkPlan plan) : filled(std::move(plan))
    {
        static const QStringList icons{"person", "company", "bank", "phone", "city", "flight", "key", "server"};
        for (GraphNode& node : filled.network.nodes) {
            node.setImage(icons.at(static_cast<int>(node.getId() % icons.size())), false);
            node.setLabel(QStringLiteral("node %1").arg(node.getId()), {});
        }
        for (GraphEdge& edge : filled.network.edges)
            edge.setEndArrowShow(true);
        const QRect bounds = filled.graphScene.boundingRect(false);
        filled.graphScene.setSize(bounds.width() + 1000, bounds.height() + 1000);
        view = std::make_unique<MeasuredView>(filled.scene());
        view->rebuildAll();
    }

    FilledScene filled;
    std::unique_ptr<MeasuredView> view;
};

enum Layout
{
    LAID_OUT,
    SCATTERED
};

/// Only the last one is kept.
DressedScene& dressedScene(std::size_t nodeCount, Layout layout)
{
    static std::unique_ptr<DressedScene> last;
    static Layout lastLayout = LAID_OUT;
    if (!last || last->filled.network.nodes.size() != nodeCount || lastLayout != layout) {
        last.reset();
        last = std::make_unique<DressedScene>(layout == LAID_OUT ? NetworkPlan::laidOut(nodeCount)
                                                                 : NetworkPlan(nodeCount));
        lastLayout = layout;
    }
    return *last;
}

template <typename Aim>
void redrawn(benchmark::State& state, Layout layout, Aim aim)
{
    DressedScene& dressed = dressedScene(static_cast<std::size_t>(state.range(0)), layout);
    aim(*dressed.view);
    const double before = dressed.view->drawingSeconds();
    for ([[maybe_unused]] auto iteration : state)
        dressed.view->redraw();
    const double drawing = dressed.view->drawingSeconds() - before;
    state.counters["drawing_ms"] = drawing / static_cast<double>(state.iterations()) * 1e3;
    state.counters["scale"] = static_cast<double>(dressed.view->cameraScale());
}

void fitted(benchmark::State& state, Layout layout)
{
    redrawn(state, layout, [](MeasuredView& view) { view.fitToView(); });
}

/// About 200 nodes in sight.
void near(benchmark::State& state, Layout layout)
{
    redrawn(state, layout, [](MeasuredView& view) {
        constexpr double shownArea = 200.0 * 500.0 * 500.0;
        const double width = std::sqrt(shownArea * viewSize.width() / viewSize.height());
        view.fitInView({-width / 2, width / 2, width, width});
    });
}

/// Everything of a repaint but what OpenGL does to draw, in turns with handing over the same bytes.
void issued(benchmark::State& state, Layout layout)
{
    DressedScene& dressed = dressedScene(static_cast<std::size_t>(state.range(0)), layout);
    MeasuredView& view = *dressed.view;
    view.setCameraScale(1.0f); // text is drawn
    view.makeCurrent();
    DrawCalls calls([](const DrawCall&) {});
    calls.swallowsInstances = true;
    double uploadSeconds = 0.0;
    double issueSeconds = 0.0;
    for ([[maybe_unused]] auto iteration : state) {
        uploadSeconds += secondsOf([&view] { view.uploadAlone(); });
        issueSeconds += secondsOf([&view] { view.issue(); });
    }
    state.counters["issue_ms"] = issueSeconds / static_cast<double>(state.iterations()) * 1e3;
    state.counters["ratio_to_upload"] = issueSeconds / uploadSeconds;
}

void overSizes(benchmark::internal::Benchmark* measured)
{
    measured->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime()->UseRealTime()->Iterations(10);
    measured->Arg(1'000)->Arg(10'000)->Arg(100'000);
}

BENCHMARK_CAPTURE(fitted, laid out, LAID_OUT)->Apply(overSizes);
BENCHMARK_CAPTURE(issued, laid out, LAID_OUT)->Apply(overSizes);
BENCHMARK_CAPTURE(near, laid out, LAID_OUT)->Apply(overSizes);
BENCHMARK_CAPTURE(fitted, scattered, SCATTERED)->Apply(overSizes);
BENCHMARK_CAPTURE(near, scattered, SCATTERED)->Apply(overSizes);

} // namespace

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    startAtlases();
    QCoreApplication::processEvents();
    return runBenchmarks(argc, argv);
}
