#include "scene/NodeData.h"
#include "support/HostedGraphView.h"
#include "support/SceneOf.h"
#include "support/WidgetInput.h"

#include <cmath>
#include <functional>
#include <vector>

using namespace NELK;

namespace
{

const QColor ground(242, 242, 242);
const QColor plainNode(89, 184, 69);

/// A call that a host may make at any time.
struct CameraCall
{
    const char* name;
    void (*call)(GraphView& view);
};

const std::vector<CameraCall> cameraCalls{
    {"fitToView", [](GraphView& view) { view.fitToView(); }},
    {"fitHeight", [](GraphView& view) { view.fitHeight(); }},
    {"fitOriginalSize", [](GraphView& view) { view.fitOriginalSize(); }},
    {"showFullEye", [](GraphView& view) { view.showFullEye(); }},
    {"selectedViewMax", [](GraphView& view) { view.selectedViewMax(); }},
    {"fitInView",
     [](GraphView& view) {
         view.fitInView({0.0, 0.0, 1000.0, 500.0});
     }},
    {"zoom in", [](GraphView& view) { view.zoom(true); }},
    {"zoom out", [](GraphView& view) { view.zoom(false); }},
    {"setCameraScale", [](GraphView& view) { view.setCameraScale(0.5f); }},
    {"setCameraX", [](GraphView& view) { view.setCameraX(100); }},
    {"setCameraY", [](GraphView& view) { view.setCameraY(100); }},
    {"NelkUpdate", [](GraphView& view) { view.NelkUpdate(); }},
};

/// What makes a view emit, in the end a signal that a host hears of.
struct Action
{
    const char* name;
    std::function<void(HostedGraphView& host)> act;
};

const std::vector<Action> emittingActions{
    {"camera call", [](HostedGraphView& host) { host.view->setCameraX(10); }},
    {"bar", [](HostedGraphView& host) { host.view->horizontalBar()->setValue(100); }},
    {"key",
     [](HostedGraphView& host) {
         QKeyEvent key(QEvent::KeyPress, Qt::Key_Left, Qt::NoModifier);
         QCoreApplication::sendEvent(host.view, &key);
     }},
    {"key in the network",
     [](HostedGraphView& host) {
         QKeyEvent key(QEvent::KeyPress, Qt::Key_Left, Qt::NoModifier);
         QCoreApplication::sendEvent(host.view->network(), &key);
     }},
    {"scroll bars hidden", [](HostedGraphView& host) { host.view->setScrollBarShow(false); }},
    {"scene size", [](HostedGraphView& host) { host.graph.setSize(9000, 9000); }},
    {"eye jump",
     [](HostedGraphView& host) {
         press(host.view->eyeSurface(), {5, 5});
     }},
    {"eye wheel",
     [](HostedGraphView& host) {
         turnWheel(host.view->eyeSurface(), {80, 48}, {0, 120});
     }},
    {"eye drag",
     [](HostedGraphView& host) {
         press(host.view->eyeSurface(), {80, 48});
         moveTo(host.view->eyeSurface(), {85, 48});
     }},
    {"wheel",
     [](HostedGraphView& host) {
         turnWheel(host.view->network(), {400, 300}, {0, 120});
     }},
    {"hand",
     [](HostedGraphView& host) {
         host.view->setOperateMode(2, 0);
         press(host.view->network(), {100, 100});
         moveTo(host.view->network(), {150, 100});
     }},
    {"zoom frame",
     [](HostedGraphView& host) {
         host.view->setOperateMode(3, 0);
         drag(host.view->network(), {100, 100}, {250, 250});
     }},
    {"line",
     [](HostedGraphView& host) {
         host.view->setOperateMode(5, 0);
         drag(host.view->network(), {100, 100}, {250, 250});
     }},
    {"right click",
     [](HostedGraphView& host) {
         press(host.view->network(), {100, 100}, Qt::RightButton);
     }},
    {"double click",
     [](HostedGraphView& host) {
         QTest::mouseDClick(host.view->network(), Qt::LeftButton, Qt::NoModifier, {400, 300});
     }},
    {"click",
     [](HostedGraphView& host) {
         press(host.view->network(), {400, 300});
     }},
    {"selection frame",
     [](HostedGraphView& host) {
         drag(host.view->network(), {300, 200}, {500, 400});
     }},
    {"node drag",
     [](HostedGraphView& host) {
         host.graph.getNode(1).setSelect(true);
         press(host.view->network(), {400, 300});
         moveTo(host.view->network(), {410, 300});
     }},
};

/// What leaves a gesture unfinished.
const std::vector<Action> gestures{
    {"node drag",
     [](HostedGraphView& host) {
         press(host.view->network(), {400, 300});
         moveTo(host.view->network(), {420, 310});
     }},
    {"selection frame",
     [](HostedGraphView& host) {
         press(host.view->network(), {100, 100});
         moveTo(host.view->network(), {220, 310});
     }},
    {"line",
     [](HostedGraphView& host) {
         host.view->setOperateMode(5, 3);
         press(host.view->network(), {100, 100});
         moveTo(host.view->network(), {220, 310});
     }},
    {"pan",
     [](HostedGraphView& host) {
         host.view->setOperateMode(2, 0);
         press(host.view->network(), {100, 100});
         moveTo(host.view->network(), {220, 310});
     }},
    {"eye drag",
     [](HostedGraphView& host) {
         press(host.view->eyeSurface(), {80, 48});
         moveTo(host.view->eyeSurface(), {85, 48});
     }},
    {"bar drag",
     [](HostedGraphView& host) {
         host.view->horizontalBar()->setSliderDown(true);
         host.view->horizontalBar()->setSliderPosition(200);
     }},
};

template <typename Row>
void addRows(const std::vector<Row>& rows)
{
    QTest::addColumn<int>("index");
    for (std::size_t i = 0; i < rows.size(); ++i)
        QTest::newRow(rows[i].name) << static_cast<int>(i);
}

/// A node of 1000 by 1000 units halfway to the upper right corner of a scene of 16000 by 9600.
void fill(GraphScene& graph)
{
    graph.setSize(16000, 9600);
    GraphNode node = graph.createNode(1);
    node.setPos(4000, 2400);
    node.setSize(3.90625f);
}

/// The whole of that scene in an eye of 160 by 96, and nothing that OpenGL complains of.
void verifyProjection(const OpenGraphView& view)
{
    const QImage picture = view.saveEyeImage();
    QCOMPARE(picture.size(), QSize(160, 96));
    for (const QPoint corner : {QPoint(115, 19), QPoint(124, 19), QPoint(115, 28), QPoint(124, 28)})
        QCOMPARE(picture.pixelColor(corner), plainNode);
    for (const QPoint outside : {QPoint(114, 24), QPoint(125, 24), QPoint(120, 18), QPoint(120, 29)})
        QCOMPARE(picture.pixelColor(outside), ground);
    QCOMPARE(view.takeErrors(), QList<GLenum>());
}

} // namespace

/// A graph view that is used before it is shown, while parts of it are hidden, and until it is deleted.
class GraphViewLifeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesASceneSizeBeforeItIsShown();
    void takesASceneSizeWhileTheEyeIsFolded();
    void unfoldsAnEyeThatWasHiddenAtFirst();
    void showsTheSceneInAnotherWindow();
    void takesASceneSizeBetweenTwoWindows();

    void staysSoundBeforeItIsShown_data();
    void staysSoundBeforeItIsShown();
    void isPutRightByTheFirstResize();

    void outlivesNoSlotThatDeletesIt_data();
    void outlivesNoSlotThatDeletesIt();
    void outlivesNoGestureThatItIsDeletedIn_data();
    void outlivesNoGestureThatItIsDeletedIn();
    void outlivesNoSceneThatIsClearedInAGesture_data();
    void outlivesNoSceneThatIsClearedInAGesture();
    void leavesTheSceneToOtherViews();
};

void GraphViewLifeTest::takesASceneSizeBeforeItIsShown()
{
    HostedGraphView host;
    fill(host.graph);
    QCOMPARE(host.view->takeErrors(), QList<GLenum>());
    QVERIFY(host.show());
    verifyProjection(*host.view);
}

void GraphViewLifeTest::takesASceneSizeWhileTheEyeIsFolded()
{
    HostedGraphView host;
    QVERIFY(host.show());
    host.view->slotViewEyeOn(false);
    fill(host.graph);
    host.view->NelkUpdate();
    host.view->slotViewEyeOn(true);
    QCoreApplication::processEvents();
    verifyProjection(*host.view);
}

void GraphViewLifeTest::unfoldsAnEyeThatWasHiddenAtFirst()
{
    HostedGraphView host;
    host.view->slotViewEyeOn(false);
    QVERIFY(host.show());
    fill(host.graph);
    host.view->NelkUpdate();
    QVERIFY(!host.view->isViewEyeVisible());
    host.view->slotViewEyeOn(true);
    QCoreApplication::processEvents();
    verifyProjection(*host.view);
}

void GraphViewLifeTest::showsTheSceneInAnotherWindow()
{
    HostedGraphView host;
    fill(host.graph);
    QVERIFY(host.show());
    verifyProjection(*host.view);

    QWidget window;
    host.view->setParent(&window);
    window.resize(host.view->size());
    host.view->show();
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    verifyProjection(*host.view);
}

void GraphViewLifeTest::takesASceneSizeBetweenTwoWindows()
{
    HostedGraphView host;
    QVERIFY(host.show());
    host.view->saveEyeImage();

    QWidget window;
    host.view->setParent(&window);
    fill(host.graph);
    QCOMPARE(host.view->takeErrors(), QList<GLenum>());
    window.resize(host.view->size());
    host.view->show();
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    host.view->NelkUpdate();
    verifyProjection(*host.view);
}

void GraphViewLifeTest::staysSoundBeforeItIsShown_data()
{
    addRows(cameraCalls);
}

void GraphViewLifeTest::staysSoundBeforeItIsShown()
{
    QFETCH(int, index);

    HostedGraphView host;
    host.graph.createNode().setPos(1000, 500);
    QSignalSpy ratios(host.view, SIGNAL(signalZoomRatioChanged(double)));
    cameraCalls[static_cast<std::size_t>(index)].call(*host.view);

    QVERIFY(std::isfinite(host.view->cameraScale()) && host.view->cameraScale() > 0.0f);
    QVERIFY(std::isfinite(host.view->getZoomRatio()) && host.view->getZoomRatio() > 0.0);
    for (const int length : {host.view->cameraX(), host.view->cameraY(), host.view->viewRect().width(),
                             host.view->viewRect().height(), host.view->watched()->width()})
        QVERIFY(qAbs(length) <= 8000);
    for (const QList<QVariant>& ratio : qAsConst(ratios)) {
        const double share = ratio.first().toDouble();
        QVERIFY(share > 0.0 && share <= 1.0);
    }
}

/// Whatever was asked for before.
void GraphViewLifeTest::isPutRightByTheFirstResize()
{
    HostedGraphView host;
    GraphNode node = host.graph.createNode(1);
    node.setCircleShow(true);
    node.setCircleColor(Qt::blue);
    sceneOf(host.graph).nodes[1]->imageHidden = true;
    for (const CameraCall& call : cameraCalls)
        call.call(*host.view);
    QSignalSpy ratios(host.view, SIGNAL(signalZoomRatioChanged(double)));

    QVERIFY(host.show());
    const float scale = host.view->cameraScale();
    QVERIFY(scale >= 0.1f && scale <= 1.0f);
    QCOMPARE(float(ratios.last().first().toDouble()), 0.1f / scale);
    host.view->fitToView();
    const QColor middle = host.view->saveImage().pixelColor(400, 300);
    QVERIFY(middle.blue() > 200 && middle.red() < 100);
    QCOMPARE(host.view->watched()->geometry(), QRect(72, 42, 16, 12));
    QCOMPARE(host.view->takeErrors(), QList<GLenum>());
}

void GraphViewLifeTest::outlivesNoSlotThatDeletesIt_data()
{
    addRows(emittingActions);
}

/// A slot deletes the view at the first signal that it or the scene emits.
void GraphViewLifeTest::outlivesNoSlotThatDeletesIt()
{
    QFETCH(int, index);

    HostedGraphView host;
    host.graph.createNode(1).setSize(2.0f);
    QVERIFY(host.show());
    QObject listener;
    const auto deleteView = [&host] { delete host.view.data(); };
    connect(host.view.data(), &GraphView::signalZoomRatioChanged, &listener, deleteView);
    connect(host.view.data(), &GraphView::signalProcessLine, &listener, deleteView);
    connect(host.view.data(), &GraphView::signalRightMouseButtonClicked, &listener, deleteView);
    connect(host.view.data(), &GraphView::signalLeftMouseButtonDblClicked, &listener, deleteView);
    connect(&host.graph, &GraphScene::signalSelectChanged, &listener, deleteView);
    connect(&host.graph, &GraphScene::changed, &listener, deleteView);

    emittingActions[static_cast<std::size_t>(index)].act(host);
    QVERIFY(!host.view);
    QCoreApplication::processEvents();
    host.graph.setSize(10000, 10000);
}

void GraphViewLifeTest::outlivesNoGestureThatItIsDeletedIn_data()
{
    addRows(gestures);
}

void GraphViewLifeTest::outlivesNoGestureThatItIsDeletedIn()
{
    QFETCH(int, index);

    HostedGraphView host;
    host.graph.createNode(1).setSize(2.0f);
    QVERIFY(host.show());
    gestures[static_cast<std::size_t>(index)].act(host);
    delete host.view.data();
    QCoreApplication::processEvents();
    QTest::mouseRelease(&host.window, Qt::LeftButton);
    host.graph.setSize(10000, 10000);
    QVERIFY(host.graph.getNode(1).valid());
}

void GraphViewLifeTest::outlivesNoSceneThatIsClearedInAGesture_data()
{
    addRows(gestures);
}

void GraphViewLifeTest::outlivesNoSceneThatIsClearedInAGesture()
{
    QFETCH(int, index);

    HostedGraphView host;
    host.graph.createNode(1).setSize(2.0f);
    QVERIFY(host.show());
    gestures[static_cast<std::size_t>(index)].act(host);
    host.graph.clear();
    moveTo(host.view->network(), {430, 320});
    release(host.view->network(), {430, 320});
    host.view->NelkUpdate();
    host.view->overlay()->hide();
    QVERIFY(!host.graph.getNode(1).valid());
    QCOMPARE(host.view->saveImage().pixelColor(400, 300), QColor(Qt::white));
    QCOMPARE(host.view->takeErrors(), QList<GLenum>());
}

void GraphViewLifeTest::leavesTheSceneToOtherViews()
{
    HostedGraphView host;
    fill(host.graph);
    QVERIFY(host.show());
    {
        OpenGraphView other(&host.graph);
        other.show();
        QVERIFY(QTest::qWaitForWindowExposed(&other));
    }
    verifyProjection(*host.view);
}

QTEST_MAIN(GraphViewLifeTest)

#include "GraphViewLifeTest.moc"
