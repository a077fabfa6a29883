#include "support/LookAt.h"
#include "support/OpenView.h"

#include <NELK/GraphScene.h>

#include <QCursor>
#include <QSignalSpy>
#include <QtTest>

#include <cstdlib>

using namespace NELK;

namespace
{

QPoint positionOf(const View& view)
{
    return {view.cameraX(false), view.cameraY(false)};
}

void addNode(GraphScene& graph, QPoint position, int labelBoundWidth, bool shown, bool selected)
{
    GraphNode node = graph.createNode();
    node.setPos(position);
    node.setShow(shown);
    node.setSelect(selected);
    sceneOf(graph).getNode(node.getId())->labelBoundWidth = labelBoundWidth;
}

/// Two shown nodes are selected, one is not; a selected one far away is hidden.
void addFourNodes(GraphScene& graph)
{
    addNode(graph, {-1000, 500}, 301, true, false);
    addNode(graph, {3000, -700}, 1000, true, true);
    addNode(graph, {1500, 100}, 0, true, true);
    addNode(graph, {-3900, 2300}, 900, false, true);
}

} // namespace

class ViewZoomTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fitsTheShownNodesWithTheirLabels();
    void fitsTheSelectedNodesByTheirCentres();
    void fitsTheHeightAndKeepsX();
    void fitsByTheTighterSide_data();
    void fitsByTheTighterSide();
    void fitsNothingIntoTheMiddle_data();
    void fitsNothingIntoTheMiddle();
    void fitsNothingSelectedIntoTheMiddle();
    void fitsNoHeightAtTheMiddle();
    void takesTheLimitOfTheNewScale();
    void fitsARectangleByItsWidth_data();
    void fitsARectangleByItsWidth();
    void goesToARectangleByTheLimitOfTheOldScale();
    void showsTheWholeScene();
    void zoomsToAFrame_data();
    void zoomsToAFrame();
    void refreshesNothingForAFrameInTheMiddle();
    void zoomsByATwentieth();
    void zoomsInNoFartherThanItsRange_data();
    void zoomsInNoFartherThanItsRange();
    void zoomsAtTheCursor_data();
    void zoomsAtTheCursor();
    void keepsWhatIsUnderTheCursorThere();
};

void ViewZoomTest::fitsTheShownNodesWithTheirLabels()
{
    GraphScene graph;
    addFourNodes(graph);
    OpenView view(graph, {800, 600});
    view.fitToView();
    // From -1000 - 150 to 3000 + 500, and 512 of margin.
    QCOMPARE(view.cameraScale(), 800.0f / 5162.0f);
    QCOMPARE(positionOf(view), QPoint(1175, -100));
}

void ViewZoomTest::fitsTheSelectedNodesByTheirCentres()
{
    GraphScene graph;
    addFourNodes(graph);
    OpenView view(graph, {800, 600});
    view.selectedViewMax();
    QCOMPARE(view.cameraScale(), 800.0f / 2012.0f);
    QCOMPARE(positionOf(view), QPoint(2250, -300));
}

void ViewZoomTest::fitsTheHeightAndKeepsX()
{
    GraphScene graph;
    addFourNodes(graph);
    OpenView view(graph, {800, 600});
    lookAt(view, {-77.0, 1000.0});
    view.fitHeight();
    QCOMPARE(view.cameraScale(), 600.0f / 1712.0f);
    QCOMPARE(positionOf(view), QPoint(-77, -100));
}

void ViewZoomTest::fitsByTheTighterSide_data()
{
    QTest::addColumn<QPoint>("corner");
    QTest::addColumn<float>("scale");

    QTest::newRow("wide") << QPoint(2000, 500) << 800.0f / 4512.0f;
    QTest::newRow("high") << QPoint(500, 2000) << 600.0f / 4512.0f;
    QTest::newRow("more than the scene") << QPoint(9000, 0) << 0.1f;
    QTest::newRow("one point") << QPoint(0, 0) << 1.0f;
}

void ViewZoomTest::fitsByTheTighterSide()
{
    QFETCH(QPoint, corner);
    QFETCH(float, scale);

    GraphScene graph;
    addNode(graph, corner, 0, true, true);
    addNode(graph, -corner, 0, true, true);
    OpenView view(graph, {800, 600});
    view.fitToView();
    QCOMPARE(view.cameraScale(), scale);
    view.setCameraScale(0.75f);
    view.selectedViewMax();
    QCOMPARE(view.cameraScale(), scale);
}

void ViewZoomTest::fitsNothingIntoTheMiddle_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<float>("scale");

    QTest::newRow("height is tighter") << QSize(400, 300) << 300.0f / 512.0f;
    QTest::newRow("width is tighter") << QSize(300, 400) << 300.0f / 512.0f;
    QTest::newRow("clamped") << QSize(800, 600) << 1.0f;
    QTest::newRow("larger than the scene") << QSize(10000, 6000) << 6000.0f / 512.0f;
}

void ViewZoomTest::fitsNothingIntoTheMiddle()
{
    QFETCH(QSize, size);
    QFETCH(float, scale);

    GraphScene graph;
    addNode(graph, {1000, 1000}, 300, false, false);
    OpenView view(graph, size);
    lookAt(view, {100.0, 200.0});
    view.fitToView();
    QCOMPARE(view.cameraScale(), scale);
    QCOMPARE(positionOf(view), QPoint(0, 0));
}

void ViewZoomTest::fitsNothingSelectedIntoTheMiddle()
{
    GraphScene graph;
    addNode(graph, {1000, 1000}, 300, true, false);
    addNode(graph, {2000, 1000}, 300, false, true);
    OpenView view(graph, {400, 300});
    lookAt(view, {100.0, 200.0});
    QSignalSpy changes(&view, SIGNAL(signalViewWatchedChanged(QRect, float)));
    view.selectedViewMax();
    QCOMPARE(view.cameraScale(), 300.0f / 512.0f);
    QCOMPARE(positionOf(view), QPoint(0, 0));
    QCOMPARE(changes.count(), 1);
}

void ViewZoomTest::fitsNoHeightAtTheMiddle()
{
    GraphScene graph;
    OpenView view(graph, {400, 300});
    lookAt(view, {100.0, 200.0});
    view.fitHeight();
    QCOMPARE(view.cameraScale(), 300.0f / 512.0f);
    QCOMPARE(positionOf(view), QPoint(100, 0));
}

void ViewZoomTest::takesTheLimitOfTheNewScale()
{
    GraphScene graph;
    addNode(graph, {3500, 2000}, 0, true, true);
    OpenView view(graph, {800, 600});
    // Where the whole scene is in sight there is little room to move; where 800 by 600 units are, there is more.
    for (void (View::*fit)() : {&View::fitToView, &View::selectedViewMax}) {
        view.fitOriginalSize();
        (view.*fit)();
        QCOMPARE(positionOf(view), QPoint(3500, 2000));
    }
    view.fitOriginalSize();
    view.fitHeight();
    QCOMPARE(positionOf(view), QPoint(0, 2000));
}

void ViewZoomTest::fitsARectangleByItsWidth_data()
{
    QTest::addColumn<QRectF>("rect");
    QTest::addColumn<float>("scale");
    QTest::addColumn<QPoint>("position");

    QTest::newRow("flat") << QRectF(1000.0, 600.0, 2000.0, 400.0) << 0.4f << QPoint(2000, 400);
    QTest::newRow("higher than what is shown") << QRectF(-500.0, 1600.0, 1000.0, 3000.0) << 0.8f << QPoint(0, 100);
    QTest::newRow("parts of units") << QRectF(0.5, 0.5, 1601.0, 3.0) << 800.0f / 1601.0f << QPoint(801, -1);
    QTest::newRow("narrower than can be shown") << QRectF(10.0, 10.0, 80.0, 20.0) << 1.0f << QPoint(50, 0);
}

void ViewZoomTest::fitsARectangleByItsWidth()
{
    QFETCH(QRectF, rect);
    QFETCH(float, scale);
    QFETCH(QPoint, position);

    GraphScene graph;
    OpenView view(graph, {800, 600});
    view.fitInView(rect);
    QCOMPARE(view.cameraScale(), scale);
    QCOMPARE(positionOf(view), position);
}

void ViewZoomTest::goesToARectangleByTheLimitOfTheOldScale()
{
    GraphScene graph;
    OpenView view(graph, {800, 600});
    view.fitOriginalSize(); // shows 8000 by 6000 units: no room in x, 600 in y
    view.fitInView({1000.0, 1200.0, 2000.0, 400.0});
    QCOMPARE(view.cameraScale(), 0.4f);
    QCOMPARE(positionOf(view), QPoint(0, 600));
}

void ViewZoomTest::showsTheWholeScene()
{
    GraphScene graph;
    OpenView view(graph, {800, 600});
    for (void (View::*showAll)() : {&View::fitOriginalSize, &View::showFullEye}) {
        lookAt(view, {500.0, 400.0}, 0.7f);
        (view.*showAll)();
        QCOMPARE(view.cameraScale(), 0.1f);
        QCOMPARE(positionOf(view), QPoint(0, 0));
    }
}

void ViewZoomTest::zoomsToAFrame_data()
{
    QTest::addColumn<QRect>("frame");
    QTest::addColumn<float>("scale");
    QTest::addColumn<QPoint>("position");

    // From a scale of 0.2 around the middle, which is pixel (399, 299).
    QTest::newRow("a quarter") << QRect(100, 150, 200, 150) << 0.8f << QPoint(-1000, 375);
    QTest::newRow("width is tighter") << QRect(0, 0, 400, 150) << 0.4f << QPoint(-1000, 1125);
    QTest::newRow("height is tighter") << QRect(600, 300, 100, 300) << 0.4f << QPoint(1250, -750);
    QTest::newRow("rounded way") << QRect(0, 0, 600, 100) << 0.2f / 0.75f << QPoint(-498, 1248);
    QTest::newRow("nearer than can be") << QRect(440, 300, 80, 60) << 1.0f << QPoint(800, -300);
    QTest::newRow("all") << QRect(0, 0, 800, 600) << 0.2f << QPoint(0, 0);
}

void ViewZoomTest::zoomsToAFrame()
{
    QFETCH(QRect, frame);
    QFETCH(float, scale);
    QFETCH(QPoint, position);

    GraphScene graph;
    OpenView view(graph, {800, 600});
    lookAt(view, {0.0, 0.0}, 0.2f);
    view.zoomToFrame(frame);
    QCOMPARE(view.cameraScale(), scale);
    QCOMPARE(positionOf(view), position);
}

void ViewZoomTest::refreshesNothingForAFrameInTheMiddle()
{
    GraphScene graph;
    OpenView view(graph, {800, 600});
    lookAt(view, {0.0, 0.0}, 0.2f);
    QSignalSpy changes(&view, SIGNAL(signalViewWatchedChanged(QRect, float)));
    view.zoomToFrame({300, 225, 200, 150});
    QCOMPARE(view.cameraScale(), 0.8f);
    QCOMPARE(changes.count(), 0);
    view.zoomToFrame({301, 225, 200, 150});
    QCOMPARE(changes.count(), 1);
}

void ViewZoomTest::zoomsByATwentieth()
{
    GraphScene graph;
    OpenView view(graph, {800, 600});
    lookAt(view, {100.0, -50.0}, 0.5f);
    view.zoom(true);
    QCOMPARE(view.cameraScale(), 0.525f);
    view.zoomAt(true, false);
    QCOMPARE(view.cameraScale(), 0.55125f);
    view.zoomAt(false, false);
    view.zoom(false);
    QCOMPARE(view.cameraScale(), 0.5f);
    QCOMPARE(positionOf(view), QPoint(100, -50));
}

void ViewZoomTest::zoomsInNoFartherThanItsRange_data()
{
    QTest::addColumn<bool>("in");
    QTest::addColumn<float>("scale");

    QTest::newRow("greatest") << true << 1.0f;
    QTest::newRow("least") << false << 0.1f;
}

void ViewZoomTest::zoomsInNoFartherThanItsRange()
{
    QFETCH(bool, in);
    QFETCH(float, scale);

    GraphScene graph;
    OpenView view(graph, {800, 600});
    lookAt(view, {0.0, 100.0}, scale);
    QSignalSpy changes(&view, SIGNAL(signalViewWatchedChanged(QRect, float)));
    QCursor::setPos(view.mapToGlobal({700, 100}));
    view.zoom(in);
    view.zoomAt(in, false);
    view.zoomAt(in, true);
    QCOMPARE(changes.count(), 0);
    QVERIFY(view.cameraScale() == scale);
    QCOMPARE(positionOf(view), QPoint(0, 100));
}

void ViewZoomTest::zoomsAtTheCursor_data()
{
    QTest::addColumn<bool>("in");
    QTest::addColumn<QPoint>("cursor");
    QTest::addColumn<QPoint>("position");

    // From (100.75, -50.5), 200 pixels off the middle are 400 units. Inward these become 210 pixels, so the camera
    // follows by 10; outward they become 190.
    QTest::newRow("in, right and up") << true << QPoint(600, 100) << QPoint(119, -31);
    QTest::newRow("in, left and down") << true << QPoint(200, 500) << QPoint(81, -69);
    QTest::newRow("out, right and up") << false << QPoint(600, 100) << QPoint(79, -71);
    QTest::newRow("out, left and down") << false << QPoint(200, 500) << QPoint(121, -29);
    QTest::newRow("in, right") << true << QPoint(600, 300) << QPoint(119, -50);
    QTest::newRow("in, less than a pixel") << true << QPoint(404, 296) << QPoint(100, -50);
}

void ViewZoomTest::zoomsAtTheCursor()
{
    QFETCH(bool, in);
    QFETCH(QPoint, cursor);
    QFETCH(QPoint, position);

    GraphScene graph;
    OpenView view(graph, {800, 600});
    lookAt(view, {100.75, -50.5}, 0.5f);
    QSignalSpy changes(&view, SIGNAL(signalViewWatchedChanged(QRect, float)));
    QCursor::setPos(view.mapToGlobal(cursor));
    view.zoomAt(in, true);
    QCOMPARE(view.cameraScale(), in ? 0.525f : 0.5f / 1.05f);
    QCOMPARE(positionOf(view), position);
    QCOMPARE(changes.count(), 1);
}

void ViewZoomTest::keepsWhatIsUnderTheCursorThere()
{
    GraphScene graph;
    OpenView view(graph, {800, 600});
    for (int x = 20; x < 800; x += 190) {
        for (int y = 20; y < 600; y += 140) {
            lookAt(view, {100.75, -50.5}, 0.4f);
            const QPoint cursor(x, y);
            QCursor::setPos(view.mapToGlobal(cursor));
            const QPoint anchor = view.viewToScene(cursor);
            view.zoomAt(true, true);
            // Whole units and pixels are rounded and cut in between, and less than a pixel is left as it is.
            const QPoint off = view.sceneToView(anchor) - cursor;
            QVERIFY2(std::abs(off.x()) <= 2 && std::abs(off.y()) <= 2,
                     qPrintable(QStringLiteral("(%1, %2) moved by (%3, %4)").arg(x).arg(y).arg(off.x()).arg(off.y())));
        }
    }
}

QTEST_MAIN(ViewZoomTest)

#include "ViewZoomTest.moc"
