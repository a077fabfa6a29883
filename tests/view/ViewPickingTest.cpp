#include "support/LookAt.h"
#include "support/MadeScene.h"
#include "support/OpenView.h"
#include "support/SceneLists.h"
#include "support/SignalLog.h"

#include <NELK/NELK>

#include <QtTest>

using namespace NELK;

/// What points of the widget mean in the scene, at any scale.
class ViewPickingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void picksEdgesWithinFourPixels_data();
    void picksEdgesWithinFourPixels();
    void takesTheRadiusThatItIsGiven();
    void picksNodesToThePixel_data();
    void picksNodesToThePixel();
    void picksSelectedNodesOnly();
    void prefersNodesToEdges();
    void framesToThePixel();
    void pressesNodesOnly();
    void movesBySceneUnits_data();
    void movesBySceneUnits();
    void tellsOfFramesFromNinePixelsOn_data();
    void tellsOfFramesFromNinePixelsOn();
};

namespace
{

/// A view of odd size, so that halves of it are cut.
struct Picked
{
    GraphScene graph;
    Scene& scene = sceneOf(graph);
    OpenView view{graph, {401, 301}};

    /// The pixel to the right of and below which the middle of the view lies.
    static constexpr QPoint middle{200, 150};
};

/// The ends of the row of pixels along `step` from the middle on which `isHit` holds: first and last, counted from
/// there.
template <typename Test>
std::pair<int, int> hitRange(QPoint step, Test isHit)
{
    std::pair<int, int> range{1000, -1000};
    for (int i = -150; i <= 150; ++i) {
        if (isHit(Picked::middle + i * step))
            range = {std::min(range.first, i), std::max(range.second, i)};
    }
    return range;
}

using Range = std::pair<int, int>;

} // namespace

void ViewPickingTest::picksEdgesWithinFourPixels_data()
{
    QTest::addColumn<float>("scale");
    QTest::addColumn<int>("radius");
    QTest::newRow("1") << 1.0f << 4;
    QTest::newRow("0.75, 5.33 units") << 0.75f << 5;
    QTest::newRow("0.5") << 0.5f << 8;
    QTest::newRow("0.3, 13.33 units") << 0.3f << 13;
    QTest::newRow("0.125") << 0.125f << 32;
    QTest::newRow("0.07, 57.14 units") << 0.07f << 57;
}

void ViewPickingTest::picksEdgesWithinFourPixels()
{
    QFETCH(float, scale);
    QFETCH(int, radius);

    Picked picked;
    GraphNode start = picked.graph.createNode(1);
    GraphNode end = picked.graph.createNode(2);
    start.setPos(-3000, 0);
    end.setPos(3000, 0);
    picked.graph.createEdge(12, start, end);
    QList<qint64> clicked;
    for (const auto signal : {&View::signalRightMouseButtonClicked, &View::signalLeftMouseButtonDblClicked})
        connect(&picked.view, signal, [&clicked](E_ELEMENTS_TYPE, qint64 id) { clicked.append(id); });

    // An edge of the default width reaches 8 units to each side by itself.
    const double reach = 8 + radius;
    for (const double side : {1.0, -1.0}) {
        lookAt(picked.view, {0.0, side * (reach - 0.25)}, scale);
        QVERIFY(picked.view.hitEdge(Picked::middle, nullptr, View::clickRadius));
        picked.view.doubleClick(Picked::middle);
        picked.view.rightPress(Picked::middle);
        QVERIFY(!picked.view.clickSelect(Picked::middle, false, View::clickRadius));
        QCOMPARE(picked.scene.selectedEdges.keys(), QList<qint64>{12});
        QCOMPARE(clicked, (QList<qint64>{12, 12}));
        clicked.clear();

        lookAt(picked.view, {0.0, side * (reach + 0.25)}, scale);
        qint64 id = -7;
        QVERIFY(!picked.view.hitEdge(Picked::middle, &id, View::clickRadius));
        QCOMPARE(id, -7);
        picked.view.doubleClick(Picked::middle);
        picked.view.rightPress(Picked::middle);
        QVERIFY(!picked.view.clickSelect(Picked::middle, false, View::clickRadius));
        QCOMPARE(picked.scene.selectedEdges.keys(), QList<qint64>{});
        QCOMPARE(clicked, QList<qint64>{-1});
        clicked.clear();
    }
}

void ViewPickingTest::takesTheRadiusThatItIsGiven()
{
    Picked picked;
    GraphNode start = picked.graph.createNode(1);
    GraphNode end = picked.graph.createNode(2);
    start.setPos(-3000, 0);
    end.setPos(3000, 0);
    picked.graph.createEdge(12, start, end);
    lookAt(picked.view, {0.0, 27.5}, 0.5f);
    QVERIFY(!picked.view.hitEdge(Picked::middle, nullptr, 9));
    QVERIFY(picked.view.hitEdge(Picked::middle, nullptr, 10));
    picked.view.clickSelect(Picked::middle, true, 9);
    QVERIFY(picked.scene.selectedEdges.isEmpty());
    picked.view.clickSelect(Picked::middle, true, 10);
    QCOMPARE(picked.scene.selectedEdges.keys(), QList<qint64>{12});
}

void ViewPickingTest::picksNodesToThePixel_data()
{
    QTest::addColumn<float>("scale");
    QTest::addColumn<QPointF>("camera");
    QTest::addColumn<Range>("columns");
    QTest::addColumn<Range>("rows");
    // The node reaches from -32 to 32 both ways, without its rim.
    QTest::newRow("in the middle") << 1.0f << QPointF(0.0, 0.0) << Range(-31, 31) << Range(-31, 31);
    QTest::newRow("off by parts of a unit") << 1.0f << QPointF(10.5, -20.25) << Range(-42, 21) << Range(-52, 11);
    QTest::newRow("at half size") << 0.5f << QPointF(0.0, 0.0) << Range(-15, 15) << Range(-15, 15);
    QTest::newRow("at half size, off") << 0.5f << QPointF(-11.0, 3.0) << Range(-10, 21) << Range(-14, 17);
    QTest::newRow("at an eighth") << 0.125f << QPointF(100.0, 1.0) << Range(-16, -9) << Range(-3, 4);
}

void ViewPickingTest::picksNodesToThePixel()
{
    QFETCH(float, scale);
    QFETCH(QPointF, camera);

    Picked picked;
    picked.graph.createNode(7).setSize(0.25f);
    lookAt(picked.view, camera, scale);
    const QPoint center(qRound(-camera.x() * double(scale)), qRound(camera.y() * double(scale)));
    const auto isHit = [&](QPoint pixel) {
        qint64 id = -7;
        const bool hit = picked.view.hitNode(pixel, &id, false);
        return hit && id == 7;
    };
    QTEST(hitRange({1, 0}, [&](QPoint pixel) { return isHit(pixel + QPoint(0, center.y())); }), "columns");
    QTEST(hitRange({0, 1}, [&](QPoint pixel) { return isHit(pixel + QPoint(center.x(), 0)); }), "rows");
}

void ViewPickingTest::picksSelectedNodesOnly()
{
    Picked picked;
    GraphNode node = picked.graph.createNode(7);
    QVERIFY(picked.view.hitNode(Picked::middle, nullptr, false));
    QVERIFY(!picked.view.hitNode(Picked::middle, nullptr, true));
    node.setSelect(true);
    QVERIFY(picked.view.hitNode(Picked::middle, nullptr, true));
}

void ViewPickingTest::prefersNodesToEdges()
{
    Picked picked;
    GraphNode start = picked.graph.createNode(1);
    GraphNode end = picked.graph.createNode(2);
    end.setPos(3000, 0);
    picked.graph.createEdge(12, start, end);
    QStringList told;
    connect(&picked.view, &View::signalRightMouseButtonClicked,
            [&](E_ELEMENTS_TYPE type, qint64 id) { told.append(QStringLiteral("right %1 %2").arg(type).arg(id)); });
    connect(&picked.view, &View::signalLeftMouseButtonDblClicked,
            [&](E_ELEMENTS_TYPE type, qint64 id) { told.append(QStringLiteral("double %1 %2").arg(type).arg(id)); });
    for (const QPoint place : {QPoint(200, 150), QPoint(390, 150), QPoint(390, 20)}) {
        picked.view.rightPress(place);
        picked.view.doubleClick(place);
    }
    QCOMPARE(told, (QStringList{"right 1 1", "double 1 1", "right 2 12", "double 2 12", "right 0 -1"}));
}

void ViewPickingTest::framesToThePixel()
{
    Picked picked;
    picked.graph.createNode(7).setSize(0.25f);
    lookAt(picked.view, {0.5, 0.5}, 0.5f);
    const auto isFramed = [&](QPoint leftTop, QPoint rightBottom) {
        picked.view.frameSelect({Picked::middle + leftTop, Picked::middle + rightBottom}, false);
        return !picked.scene.selectedNodes.isEmpty();
    };
    // Sides at the outermost pixels that lie on the node, and one pixel further out.
    QVERIFY(isFramed({-90, -90}, {-16, 90}));
    QVERIFY(!isFramed({-90, -90}, {-17, 90}));
    QVERIFY(isFramed({15, -90}, {90, 90}));
    QVERIFY(!isFramed({16, -90}, {90, 90}));
    QVERIFY(isFramed({-90, -90}, {90, -15}));
    QVERIFY(!isFramed({-90, -90}, {90, -16}));
    QVERIFY(isFramed({-90, 16}, {90, 90}));
    QVERIFY(!isFramed({-90, 17}, {90, 90}));
}

void ViewPickingTest::pressesNodesOnly()
{
    Picked picked;
    GraphNode start = picked.graph.createNode(1);
    GraphNode end = picked.graph.createNode(2);
    end.setPos(3000, 0);
    picked.graph.createEdge(12, start, end);
    SignalLog log(picked.scene);

    QVERIFY(!picked.view.pressSelect({390, 150}, false));
    QVERIFY(!picked.view.pressSelect({390, 20}, false));
    QCOMPARE(log.take(), QStringList());
    QVERIFY(picked.view.pressSelect(Picked::middle, false));
    QCOMPARE(log.take(), SignalLog::selectionChangedTo({1}, {}));
    QVERIFY(!filledLists(picked.scene).isEmpty());

    // Nothing changes, and nothing is rebuilt. A node is hit all the same.
    picked.scene.selImageItems = InstanceList();
    picked.scene.frameItems = InstanceList();
    QVERIFY(picked.view.pressSelect(Picked::middle, false));
    QVERIFY(picked.view.clickSelect(Picked::middle, false, View::clickRadius));
    QVERIFY(picked.scene.frameItems.records.empty());
    QVERIFY(picked.view.pressSelect(Picked::middle, true));
    QCOMPARE(log.take(), SignalLog::selectionChangedTo({}, {}));
    QVERIFY(!picked.view.clickSelect({390, 150}, true, View::clickRadius));
    QCOMPARE(log.take(), SignalLog::selectionChangedTo({}, {12}));
}

void ViewPickingTest::movesBySceneUnits_data()
{
    QTest::addColumn<float>("scale");
    QTest::addColumn<QPoint>("way");
    QTest::addColumn<QVector2D>("place");
    QTest::newRow("right and down") << 1.0f << QPoint(3, 7) << QVector2D(3.0f, -7.0f);
    QTest::newRow("at half size") << 0.5f << QPoint(3, 7) << QVector2D(6.0f, -14.0f);
    QTest::newRow("left and up") << 0.25f << QPoint(-1, -2) << QVector2D(-4.0f, 8.0f);
    QTest::newRow("by parts of units") << 0.75f << QPoint(1, 0) << QVector2D(1.0f / 0.75f, 0.0f);
}

void ViewPickingTest::movesBySceneUnits()
{
    QFETCH(float, scale);
    QFETCH(QPoint, way);

    Picked picked;
    picked.graph.createNode(7).setSelect(true);
    lookAt(picked.view, {0.0, 0.0}, scale);
    picked.view.moveSelected(way);
    QTEST(picked.scene.getNode(7)->center(), "place");
}

void ViewPickingTest::tellsOfFramesFromNinePixelsOn_data()
{
    QTest::addColumn<QPoint>("way");
    QTest::addColumn<bool>("told");
    QTest::newRow("none") << QPoint(0, 0) << false;
    for (const QPoint way : {QPoint(8, 0), QPoint(0, -8), QPoint(-4, 4), QPoint(7, 1)})
        QTest::addRow("%d,%d", way.x(), way.y()) << way << false;
    for (const QPoint way : {QPoint(9, 0), QPoint(0, -9), QPoint(-5, 4), QPoint(7, -2)})
        QTest::addRow("%d,%d", way.x(), way.y()) << way << true;
}

void ViewPickingTest::tellsOfFramesFromNinePixelsOn()
{
    QFETCH(QPoint, way);
    QFETCH(bool, told);

    Picked picked;
    QSignalSpy frames(&picked.view, &View::signalFrameSizeChanged);
    const QPoint start(50, 60);
    for (const bool show : {true, false}) {
        frames.clear();
        picked.view.frameChanged(show, start, start + way);
        QCOMPARE(frames.count(), told ? 1 : 0);
        if (told)
            QCOMPARE(frames.first(), (QVariantList{show, start, start + way}));
    }
}

QTEST_MAIN(ViewPickingTest)

#include "ViewPickingTest.moc"
