#include "support/EdgeShapeBits.h"
#include "support/EmissionCounter.h"
#include "support/PointText.h"
#include "support/SceneInvariants.h"
#include "support/SceneOf.h"

#include <NELK/NELK>

#include <QColor>
#include <QtTest>

#include <cmath>
#include <limits>

using namespace NELK;

class GraphEdgeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void endsAreToldInTheGraphPlane();
    void innerCornersOfAStraightEdgeAre128FromItsEnds();
    void innerCornersOfAParallelEdgeLieBesideTheLine();
    void allPointsOfARingAreItsCentre();
    void pointsAreCutTowardZero_data();
    void pointsAreCutTowardZero();
    void ringTellsKindsApartAndIsFalseOnNull();

    void setSelectKeepsOneEntryInTheSet();
    void arrowsKeepOneEntryEachInTheirSets();
    void anEqualValueDoesNothingAtAll();
    void marksAreForgottenOnRemoval();
    void setShowStoresTheFlagAndNothingElse();
    void setEdgeColorTakesTheChannelsOver255();

    void aWidthHasAFloor_data();
    void aWidthHasAFloor();
    void anEqualWidthBuildsNothing_data();
    void anEqualWidthBuildsNothing();
    void aNewWidthShowsInTheShape();
    void settersBuildTheirOwnEdgeAlone();

    void setRightAngleBuildsOnlyOnAChange();
    void setRightAngleBendsTheEdgeAndBack();
    void setRightAngleLeavesARingAsItIs();

    void setZoomSpanTakesAnyNumber_data();
    void setZoomSpanTakesAnyNumber();
    void setZoomSpanBuildsAlways();
    void setZoomSpanDoesNothingOnNull();

    void settersEmitNothing();
};

namespace
{

/// A level edge of 1000 units, an edge on track 1 beside it, and a ring around its start.
struct ThreeEdges
{
    ThreeEdges()
    {
        end.setPos(1000, 0);
        base = scene.createEdge(10, start, end);
        derived = scene.createEdge(11, base, 1);
        ring = scene.createEdge(12, start, start);
    }

    Scene& model() { return sceneOf(scene); }
    EdgeData& record(const GraphEdge& edge) { return *model().getEdge(edge.getId()); }

    GraphScene scene;
    GraphNode start = scene.createNode(1);
    GraphNode end = scene.createNode(2);
    GraphEdge base;
    GraphEdge derived;
    GraphEdge ring;
};

/// Puts a mark on the shape of an edge that the next build wipes out.
void markShape(EdgeData& edge)
{
    edge.centerPos = {-12345.0f, 54321.0f};
}

bool isMarked(const EdgeData& edge)
{
    return edge.centerPos == QVector2D(-12345.0f, 54321.0f);
}

} // namespace

void GraphEdgeTest::endsAreToldInTheGraphPlane()
{
    ThreeEdges edges;
    edges.start.setPosGraph(10, 20);
    edges.end.setPos(-30, 40);
    QCOMPARE(edges.base.startPos(), QPoint(10, 20));
    QCOMPARE(edges.base.endPos(), QPoint(-30, -40));
    QCOMPARE(edges.derived.startPos(), QPoint(10, 20));
    QCOMPARE(edges.derived.endPos(), QPoint(-30, -40));
}

void GraphEdgeTest::innerCornersOfAStraightEdgeAre128FromItsEnds()
{
    ThreeEdges edges;
    QCOMPARE(edges.base.curveStartPos(), QPoint(128, 0));
    QCOMPARE(edges.base.curveEndPos(), QPoint(872, 0));
}

void GraphEdgeTest::innerCornersOfAParallelEdgeLieBesideTheLine()
{
    ThreeEdges edges;
    QCOMPARE(edges.derived.curveStartPos(), QPoint(128, 128));
    QCOMPARE(edges.derived.curveEndPos(), QPoint(872, 128));
}

void GraphEdgeTest::allPointsOfARingAreItsCentre()
{
    ThreeEdges edges;
    edges.start.setPos(40, 30);
    const QPoint centre(40, -211);
    QCOMPARE(edges.ring.startPos(), centre);
    QCOMPARE(edges.ring.endPos(), centre);
    QCOMPARE(edges.ring.curveStartPos(), centre);
    QCOMPARE(edges.ring.curveEndPos(), centre);
}

void GraphEdgeTest::pointsAreCutTowardZero_data()
{
    QTest::addColumn<QVector2D>("scenePoint");
    QTest::addColumn<QPoint>("graphPoint");
    QTest::newRow("positive") << QVector2D(10.9f, 20.9f) << QPoint(10, -20);
    QTest::newRow("negative") << QVector2D(-10.9f, -20.9f) << QPoint(-10, 20);
    QTest::newRow("about zero") << QVector2D(-0.9f, 0.9f) << QPoint(0, 0);
    QTest::newRow("one ulp below") << QVector2D(std::nextafter(5.0f, 0.0f), std::nextafter(5.0f, 0.0f))
                                   << QPoint(4, -4);
}

void GraphEdgeTest::pointsAreCutTowardZero()
{
    QFETCH(QVector2D, scenePoint);
    QFETCH(QPoint, graphPoint);
    using Getter = QPoint (GraphEdge::*)() const;
    const QVector<QPair<QVector2D EdgeData::*, Getter>> points{{&EdgeData::startPos, &GraphEdge::startPos},
                                                               {&EdgeData::endPos, &GraphEdge::endPos},
                                                               {&EdgeData::curveStartPos, &GraphEdge::curveStartPos},
                                                               {&EdgeData::curveEndPos, &GraphEdge::curveEndPos}};
    for (const auto& point : points) {
        ThreeEdges edges;
        edges.record(edges.base).*point.first = scenePoint;
        QCOMPARE((edges.base.*point.second)(), graphPoint);
    }
}

void GraphEdgeTest::ringTellsKindsApartAndIsFalseOnNull()
{
    ThreeEdges edges;
    QVERIFY(edges.ring.ring());
    QVERIFY(!edges.base.ring());
    QVERIFY(!edges.derived.ring());
    QVERIFY(!GraphEdge().ring());
    QVERIFY(!edges.scene.getEdge(99).ring());
}

void GraphEdgeTest::setSelectKeepsOneEntryInTheSet()
{
    ThreeEdges edges;
    QVERIFY(!edges.base.select());
    edges.base.setSelect(true);
    edges.base.setSelect(true);
    QVERIFY(edges.base.select());
    QVERIFY(edges.record(edges.base).select);
    QCOMPARE(edges.model().selectedEdges, (Scene::EdgeSet{{10, &edges.record(edges.base)}}));
    edges.base.setSelect(false);
    edges.base.setSelect(false);
    QVERIFY(!edges.base.select());
    QVERIFY(edges.model().selectedEdges.isEmpty());
}

void GraphEdgeTest::arrowsKeepOneEntryEachInTheirSets()
{
    ThreeEdges edges;
    EdgeData& record = edges.record(edges.derived);
    edges.derived.setStartArrowShow(true);
    edges.derived.setStartArrowShow(true);
    QVERIFY(record.startArrowShow && !record.endArrowShow);
    QCOMPARE(edges.model().startArrowEdges, (Scene::EdgeSet{{11, &record}}));
    QVERIFY(edges.model().endArrowEdges.isEmpty());
    edges.derived.setEndArrowShow(true);
    edges.derived.setEndArrowShow(true);
    QVERIFY(record.startArrowShow && record.endArrowShow);
    QCOMPARE(edges.model().endArrowEdges, (Scene::EdgeSet{{11, &record}}));
    edges.derived.setStartArrowShow(false);
    QVERIFY(!record.startArrowShow && record.endArrowShow);
    QVERIFY(edges.model().startArrowEdges.isEmpty());
    edges.derived.setEndArrowShow(false);
    QVERIFY(!record.endArrowShow);
    QVERIFY(edges.model().endArrowEdges.isEmpty());
}

void GraphEdgeTest::anEqualValueDoesNothingAtAll()
{
    ThreeEdges edges;
    edges.base.setSelect(true);
    edges.base.setStartArrowShow(true);
    edges.base.setEndArrowShow(true);
    edges.model().selectedEdges.clear();
    edges.model().startArrowEdges.clear();
    edges.model().endArrowEdges.clear();
    edges.base.setSelect(true);
    edges.base.setStartArrowShow(true);
    edges.base.setEndArrowShow(true);
    QVERIFY(edges.model().selectedEdges.isEmpty());
    QVERIFY(edges.model().startArrowEdges.isEmpty());
    QVERIFY(edges.model().endArrowEdges.isEmpty());
}

void GraphEdgeTest::marksAreForgottenOnRemoval()
{
    ThreeEdges edges;
    for (GraphEdge* edge : {&edges.base, &edges.derived, &edges.ring}) {
        edge->setSelect(true);
        edge->setStartArrowShow(true);
        edge->setEndArrowShow(true);
    }
    QCOMPARE(brokenInvariant(edges.model()), QString());
    edges.scene.removeEdge(11);
    QCOMPARE(brokenInvariant(edges.model()), QString());
    edges.scene.removeNode(1);
    QVERIFY(edges.model().selectedEdges.isEmpty());
    QVERIFY(edges.model().startArrowEdges.isEmpty());
    QVERIFY(edges.model().endArrowEdges.isEmpty());
}

void GraphEdgeTest::setShowStoresTheFlagAndNothingElse()
{
    ThreeEdges edges;
    edges.base.setSelect(true);
    markShape(edges.record(edges.base));
    edges.base.setShow(false);
    QVERIFY(!edges.record(edges.base).show);
    QVERIFY(edges.record(edges.derived).show);
    QVERIFY(edges.base.select());
    QVERIFY(isMarked(edges.record(edges.base)));
    QCOMPARE(brokenInvariant(edges.model()), QString());
    edges.base.setShow(true);
    QVERIFY(edges.record(edges.base).show);
}

void GraphEdgeTest::setEdgeColorTakesTheChannelsOver255()
{
    ThreeEdges edges;
    edges.base.setEdgeColor(QColor(51, 102, 204, 7));
    QCOMPARE(edges.record(edges.base).edgeColor, (Rgb{0.2f, 0.4f, 0.8f}));
    QCOMPARE(edges.record(edges.derived).edgeColor, (Rgb{0.0f, 0.0f, 0.0f}));
}

void GraphEdgeTest::aWidthHasAFloor_data()
{
    constexpr int lastInt = std::numeric_limits<int>::max();
    constexpr int firstInt = std::numeric_limits<int>::min();
    QTest::addColumn<int>("asked");
    QTest::addColumn<int>("width");
    QTest::newRow("9") << 9 << 9;
    QTest::newRow("8") << 8 << 8;
    QTest::newRow("7") << 7 << 8;
    QTest::newRow("0") << 0 << 8;
    QTest::newRow("lowest") << firstInt << 8;
    QTest::newRow("highest") << lastInt << lastInt;
}

void GraphEdgeTest::aWidthHasAFloor()
{
    QFETCH(int, asked);
    ThreeEdges edges;
    edges.base.setEdgeWidth(20);
    markShape(edges.record(edges.base));
    edges.base.setEdgeWidth(asked);
    QTEST(edges.record(edges.base).edgeWidth, "width");
    QVERIFY(!isMarked(edges.record(edges.base)));
}

void GraphEdgeTest::anEqualWidthBuildsNothing_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("second");
    QTest::newRow("3 on a fresh edge") << 8 << 3;
    QTest::newRow("8 on a fresh edge") << 8 << 8;
    QTest::newRow("20 again") << 20 << 20;
    QTest::newRow("one thing below the floor after another") << 3 << -5;
}

void GraphEdgeTest::anEqualWidthBuildsNothing()
{
    QFETCH(int, first);
    QFETCH(int, second);
    ThreeEdges edges;
    edges.base.setEdgeWidth(first);
    const int width = edges.record(edges.base).edgeWidth;
    markShape(edges.record(edges.base));
    edges.base.setEdgeWidth(second);
    QCOMPARE(edges.record(edges.base).edgeWidth, width);
    QVERIFY(isMarked(edges.record(edges.base)));
}

void GraphEdgeTest::aNewWidthShowsInTheShape()
{
    ThreeEdges edges;
    edges.base.setEdgeWidth(20);
    // A level quad of 1000 by 20, and arrow heads 20 * 1.25 + 88 wide.
    const float* line = edges.record(edges.base).lineMatrix.data();
    QVERIFY(line[0] == 1000.0f);
    QVERIFY(line[5] == 20.0f);
    QVERIFY(edges.record(edges.base).endArrowMatrix.data()[0] == 113.0f);
    QCOMPARE(edges.record(edges.derived).edgeWidth, 8);

    edges.derived.setEdgeWidth(30);
    QVERIFY(edges.record(edges.derived).segmentMatrix1.data()[5] == 30.0f);
    edges.ring.setEdgeWidth(30);
    QCOMPARE(edges.record(edges.ring).edgeWidth, 30);
    QCOMPARE(edges.record(edges.ring).ringDiameter, 362);
}

void GraphEdgeTest::settersBuildTheirOwnEdgeAlone()
{
    ThreeEdges edges;
    markShape(edges.record(edges.derived));
    markShape(edges.record(edges.ring));
    edges.base.setEdgeWidth(20);
    edges.base.setZoomSpan(2.0f);
    edges.base.setRightAngle(true);
    QVERIFY(isMarked(edges.record(edges.derived)));
    QVERIFY(isMarked(edges.record(edges.ring)));
}

void GraphEdgeTest::setRightAngleBuildsOnlyOnAChange()
{
    ThreeEdges edges;
    EdgeData& record = edges.record(edges.base);
    markShape(record);
    edges.base.setRightAngle(false);
    QVERIFY(isMarked(record));
    edges.base.setRightAngle(true);
    QVERIFY(record.rightAngle);
    QVERIFY(!isMarked(record));
    markShape(record);
    edges.base.setRightAngle(true);
    QVERIFY(isMarked(record));
    edges.base.setRightAngle(false);
    QVERIFY(!record.rightAngle);
    QVERIFY(!isMarked(record));
}

void GraphEdgeTest::setRightAngleBendsTheEdgeAndBack()
{
    ThreeEdges edges;
    edges.end.setPos(1000, 400); // the upper end, so the level piece lies a quarter of the way down from there
    edges.base.setRightAngle(true);
    QCOMPARE(edges.base.curveStartPos(), QPoint(1000, -300));
    QCOMPARE(edges.base.curveEndPos(), QPoint(0, -300));
    edges.end.setPos(1000, 0);
    edges.base.setRightAngle(false);
    QCOMPARE(edges.base.curveStartPos(), QPoint(128, 0));
    QCOMPARE(edges.base.curveEndPos(), QPoint(872, 0));
}

void GraphEdgeTest::setRightAngleLeavesARingAsItIs()
{
    ThreeEdges edges;
    const QByteArray shape = shapeBits(edges.record(edges.ring));
    edges.ring.setRightAngle(true);
    QVERIFY(edges.record(edges.ring).rightAngle);
    QCOMPARE(shapeBits(edges.record(edges.ring)), shape);
    edges.ring.setEdgeWidth(20);
    QCOMPARE(shapeBits(edges.record(edges.ring)), shape);
}

void GraphEdgeTest::setZoomSpanTakesAnyNumber_data()
{
    QTest::addColumn<float>("span");
    QTest::addColumn<int>("graphY");
    QTest::newRow("2") << 2.0f << 256;
    QTest::newRow("0") << 0.0f << 0;
    QTest::newRow("half") << 0.5f << 64;
    QTest::newRow("negative") << -1.0f << -128;
    QTest::newRow("1000") << 1000.0f << 128000;
}

void GraphEdgeTest::setZoomSpanTakesAnyNumber()
{
    QFETCH(float, span);
    QFETCH(int, graphY);
    ThreeEdges edges;
    edges.derived.setZoomSpan(span);
    QVERIFY(edges.record(edges.derived).zoomSpan == span);
    QCOMPARE(edges.derived.curveStartPos(), QPoint(128, graphY));
    QCOMPARE(edges.derived.curveEndPos(), QPoint(872, graphY));
}

void GraphEdgeTest::setZoomSpanBuildsAlways()
{
    ThreeEdges edges;
    for (GraphEdge* edge : {&edges.base, &edges.derived, &edges.ring}) {
        markShape(edges.record(*edge));
        edge->setZoomSpan(1.0f);
        QVERIFY(!isMarked(edges.record(*edge)));
    }
    // The span is read from the edge that is built, and from no other.
    edges.base.setZoomSpan(3.0f);
    edges.derived.setZoomSpan(1.0f);
    QCOMPARE(edges.derived.curveStartPos(), QPoint(128, 128));
}

void GraphEdgeTest::setZoomSpanDoesNothingOnNull()
{
    ThreeEdges edges;
    GraphEdge null;
    null.setZoomSpan(2.0f);
    QVERIFY(null == GraphEdge());
    GraphEdge absent = edges.scene.getEdge(99);
    absent.setZoomSpan(2.0f);
    QVERIFY(!absent.valid());
    QVERIFY(edges.record(edges.derived).zoomSpan == 1.0f);
}

void GraphEdgeTest::settersEmitNothing()
{
    ThreeEdges edges;
    const EmissionCounter emissions(edges.scene);
    const EmissionCounter emissionsOfTheModel(edges.model());
    QCOMPARE(emissions.signalsWatched() + emissionsOfTheModel.signalsWatched(), 6);
    for (GraphEdge* edge : {&edges.base, &edges.derived, &edges.ring}) {
        edge->setSelect(true);
        edge->setSelect(true);
        edge->setSelect(false);
        edge->setShow(false);
        edge->setEdgeColor(Qt::red);
        edge->setEdgeWidth(20);
        edge->setRightAngle(true);
        edge->setZoomSpan(2.0f);
        edge->setStartArrowShow(true);
        edge->setEndArrowShow(true);
    }
    QCOMPARE(emissions.count(), 0);
    QCOMPARE(emissionsOfTheModel.count(), 0);
}

QTEST_APPLESS_MAIN(GraphEdgeTest)

#include "GraphEdgeTest.moc"
