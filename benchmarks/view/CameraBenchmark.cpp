// What a change of the camera costs before the repaint, on scenes of a thousand and of a million nodes. Run it on a
// display.

#include "support/FilledScene.h"
#include "support/RunBenchmarks.h"

#include <NELK/GraphView.h>

#include <QApplication>
#include <QMouseEvent>
#include <QOpenGLWidget>

#include <benchmark/benchmark.h>

using namespace NELK;

namespace
{

/// A view of which no event is handled, so that it is never repainted.
std::unique_ptr<GraphView> viewOn(benchmark::State& state)
{
    FilledScene& filled = FilledScene::ofSize(static_cast<std::size_t>(state.range(0)));
    auto view = std::make_unique<GraphView>(&filled.graphScene);
    view->show();
    return view;
}

void pan(benchmark::State& state)
{
    const auto view = viewOn(state);
    int x = 0;
    for ([[maybe_unused]] auto iteration : state)
        view->setCameraX(x = 100 - x);
}

void zoomStep(benchmark::State& state)
{
    const auto view = viewOn(state);
    bool in = false;
    for ([[maybe_unused]] auto iteration : state)
        view->zoom(in = !in);
}

/// The mouse drags the rectangle of the overview to and fro.
void eyeDrag(benchmark::State& state)
{
    const auto view = viewOn(state);
    view->zoom(true);
    // The overview is made after the main view.
    QOpenGLWidget* eye = view->findChildren<QOpenGLWidget*>().last();
    const auto sendMouse = [eye](QEvent::Type type, QPoint position) {
        QMouseEvent event(type, position, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(eye, &event);
    };
    const QPoint middle = eye->rect().center();
    sendMouse(QEvent::MouseButtonPress, middle);
    int offset = 0;
    for ([[maybe_unused]] auto iteration : state)
        sendMouse(QEvent::MouseMove, middle + QPoint(offset = 1 - offset, 0));
}

// In this order, since only the last scene is kept.
BENCHMARK(pan)->Arg(1'000)->Iterations(100'000);
BENCHMARK(zoomStep)->Arg(1'000)->Iterations(100'000);
BENCHMARK(eyeDrag)->Arg(1'000)->Iterations(100'000);
BENCHMARK(pan)->Arg(1'000'000)->Iterations(100'000);
BENCHMARK(zoomStep)->Arg(1'000'000)->Iterations(100'000);
BENCHMARK(eyeDrag)->Arg(1'000'000)->Iterations(100'000);

} // namespace

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    return runBenchmarks(argc, argv);
}
