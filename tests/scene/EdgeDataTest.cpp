#include "scene/EdgeData.h"

#include "scene/NodeData.h"
#include "support/PointText.h"

#include <QtTest>

#include <limits>
#include <type_traits>

using namespace NELK;

using EdgeList = QList<EdgeData*>;

static_assert(!std::is_polymorphic_v<EdgeData>);
static_assert(!std::is_copy_constructible_v<EdgeData> && !std::is_copy_assignable_v<EdgeData>);

class EdgeDataTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsShownAndUnmarked();
    void startsWithoutText();

    void aBaseEdgeRunsBetweenTheCentresOfItsNodes();
    void aBaseEdgeIsBuiltAtOnce();

    void aDerivedEdgeTakesNodesAndDirectionOfItsBase();
    void aDerivedEdgeStandsOnceInEachList();
    void aDerivedEdgeHasATrackOfAtLeastOne_data();
    void aDerivedEdgeHasATrackOfAtLeastOne();
    void aDerivedEdgeIsBuiltAtOnce();
    void maxIndexIsTheLargestNumberAsGiven_data();
    void maxIndexIsTheLargestNumberAsGiven();

    void aRingLeavesItsNodeOnceAndNeverArrives();
    void aRingIsWiderWithEachNumber_data();
    void aRingIsWiderWithEachNumber();
    void aRingIsBuiltAtOnce();

    void nodesListTheirEdgesInTheOrderOfCreation();
    void marginGrowsWithEachPairOfTracks_data();
    void marginGrowsWithEachPairOfTracks();
    void onlyBaseEdgesHaveAMargin();
};

namespace
{

constexpr int lastInt = std::numeric_limits<int>::max();
constexpr int firstInt = std::numeric_limits<int>::min();

struct TwoNodes
{
    TwoNodes()
    {
        start.x = 100.0f;
        start.y = 50.0f;
        end.x = 1100.0f;
        end.y = 50.0f;
    }

    NodeData start;
    NodeData end;
};

} // namespace

void EdgeDataTest::startsShownAndUnmarked()
{
    TwoNodes nodes;
    const EdgeData edge(nodes.start, nodes.end);
    QCOMPARE(edge.id, qint64(0));
    QVERIFY(edge.show);
    QVERIFY(!edge.select);
    QVERIFY(!edge.ring);
    QVERIFY(!edge.rightAngle);
    QVERIFY(!edge.startArrowShow);
    QVERIFY(!edge.endArrowShow);
    QVERIFY(!edge.baseEdge);
    QCOMPARE(edge.index, 0);
    QCOMPARE(edge.maxIndex, 0);
    QCOMPARE(edge.edgeWidth, 8);
    QCOMPARE(edge.edgeColor, (Rgb{0.0f, 0.0f, 0.0f}));
    QVERIFY(edge.zoomSpan == 1.0f);
    QCOMPARE(edge.ringDiameter, 10);
    QVERIFY(edge.ringScale == 1.0f);
}

void EdgeDataTest::startsWithoutText()
{
    TwoNodes nodes;
    const EdgeData edge(nodes.start, nodes.end);
    QVERIFY(edge.labelLines.isEmpty());
    QVERIFY(edge.labelSize == 1.0f);
    QCOMPARE(edge.labelColor, (Rgba{0.0f, 0.0f, 0.0f, 1.0f}));
    QCOMPARE(edge.labelBackColor, (Rgba{1.0f, 1.0f, 1.0f, 0.0f}));
}

void EdgeDataTest::aBaseEdgeRunsBetweenTheCentresOfItsNodes()
{
    TwoNodes nodes;
    EdgeData edge(nodes.start, nodes.end);
    QCOMPARE(edge.startNode, &nodes.start);
    QCOMPARE(edge.endNode, &nodes.end);
    QCOMPARE(edge.startPos, QVector2D(100.0f, 50.0f));
    QCOMPARE(edge.endPos, QVector2D(1100.0f, 50.0f));
    QCOMPARE(nodes.start.outEdges, EdgeList{&edge});
    QCOMPARE(nodes.end.inEdges, EdgeList{&edge});
    QVERIFY(nodes.start.inEdges.isEmpty());
    QVERIFY(nodes.end.outEdges.isEmpty());
}

void EdgeDataTest::aBaseEdgeIsBuiltAtOnce()
{
    TwoNodes nodes;
    const EdgeData edge(nodes.start, nodes.end);
    QCOMPARE(edge.centerPos, QVector2D(600.0f, 50.0f));
    QCOMPARE(edge.curveStartPos, QVector2D(228.0f, 50.0f));
    QCOMPARE(edge.curveEndPos, QVector2D(972.0f, 50.0f));
    const Mat4 unbuilt;
    QVERIFY(edge.lineMatrix != unbuilt);
    QVERIFY(edge.startArrowMatrix != unbuilt);
    QVERIFY(edge.endArrowMatrix != unbuilt);
    QVERIFY(edge.segmentMatrix1 == unbuilt);
}

void EdgeDataTest::aDerivedEdgeTakesNodesAndDirectionOfItsBase()
{
    TwoNodes nodes;
    EdgeData base(nodes.start, nodes.end);
    nodes.end.y = 60.0f; // the nodes count, not what the base edge last saw of them
    const EdgeData derived(base, 1);
    QCOMPARE(derived.baseEdge, &base);
    QVERIFY(!derived.ring);
    QCOMPARE(derived.startNode, &nodes.start);
    QCOMPARE(derived.endNode, &nodes.end);
    QCOMPARE(derived.startPos, QVector2D(100.0f, 50.0f));
    QCOMPARE(derived.endPos, QVector2D(1100.0f, 60.0f));
}

void EdgeDataTest::aDerivedEdgeStandsOnceInEachList()
{
    TwoNodes nodes;
    EdgeData base(nodes.start, nodes.end);
    EdgeData derived(base, 1);
    QCOMPARE(nodes.start.outEdges, (EdgeList{&base, &derived}));
    QCOMPARE(nodes.end.inEdges, (EdgeList{&base, &derived}));
    QVERIFY(nodes.start.inEdges.isEmpty());
    QVERIFY(nodes.end.outEdges.isEmpty());
}

void EdgeDataTest::aDerivedEdgeHasATrackOfAtLeastOne_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("index");
    QTest::newRow("7") << 7 << 7;
    QTest::newRow("2") << 2 << 2;
    QTest::newRow("1") << 1 << 1;
    QTest::newRow("0") << 0 << 1;
    QTest::newRow("-1") << -1 << 1;
    QTest::newRow("-3") << -3 << 1;
    QTest::newRow("lowest") << firstInt << 1;
    QTest::newRow("highest") << lastInt << lastInt;
}

void EdgeDataTest::aDerivedEdgeHasATrackOfAtLeastOne()
{
    QFETCH(int, number);
    TwoNodes nodes;
    EdgeData base(nodes.start, nodes.end);
    const EdgeData derived(base, number);
    QTEST(derived.index, "index");
    QCOMPARE(derived.maxIndex, 0);
}

void EdgeDataTest::aDerivedEdgeIsBuiltAtOnce()
{
    TwoNodes nodes;
    EdgeData base(nodes.start, nodes.end);
    const EdgeData derived(base, 1);
    // Track 1 lies 128 units to the right of a line that runs along x.
    QCOMPARE(derived.curveStartPos, QVector2D(228.0f, -78.0f));
    QCOMPARE(derived.curveEndPos, QVector2D(972.0f, -78.0f));
    QCOMPARE(derived.centerPos, QVector2D(600.0f, -78.0f));
    const Mat4 unbuilt;
    QVERIFY(derived.lineMatrix == unbuilt);
    QVERIFY(derived.segmentMatrix0 != unbuilt);
    QVERIFY(derived.segmentMatrix1 != unbuilt);
    QVERIFY(derived.segmentMatrix2 != unbuilt);
    QVERIFY(derived.startArrowMatrix != unbuilt);
    QVERIFY(derived.endArrowMatrix != unbuilt);
}

void EdgeDataTest::maxIndexIsTheLargestNumberAsGiven_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("second");
    QTest::addColumn<int>("maxIndex");
    QTest::newRow("rising") << 2 << 5 << 5;
    QTest::newRow("falling") << 5 << 2 << 5;
    QTest::newRow("equal") << 3 << 3 << 3;
    QTest::newRow("raised to 1, but not to 0, and not below") << 0 << -3 << 0;
    QTest::newRow("1 after 0") << 0 << 1 << 1;
    QTest::newRow("the extremes") << firstInt << lastInt << lastInt;
}

void EdgeDataTest::maxIndexIsTheLargestNumberAsGiven()
{
    QFETCH(int, first);
    QFETCH(int, second);
    TwoNodes nodes;
    EdgeData base(nodes.start, nodes.end);
    const EdgeData firstDerived(base, first);
    const EdgeData secondDerived(base, second);
    QTEST(base.maxIndex, "maxIndex");
}

void EdgeDataTest::aRingLeavesItsNodeOnceAndNeverArrives()
{
    NodeData node;
    EdgeData ring(node, 0);
    QVERIFY(ring.ring);
    QCOMPARE(ring.startNode, &node);
    QCOMPARE(ring.endNode, &node);
    QVERIFY(!ring.baseEdge);
    QCOMPARE(node.outEdges, EdgeList{&ring});
    QVERIFY(node.inEdges.isEmpty());
}

void EdgeDataTest::aRingIsWiderWithEachNumber_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("index");
    QTest::addColumn<float>("scale");
    QTest::newRow("0") << 0 << 0 << 1.0f;
    QTest::newRow("1") << 1 << 1 << 1.4f;
    QTest::newRow("2") << 2 << 2 << 1.8f;
    // Product and sum in floats would be off by one unit in the last place.
    QTest::newRow("9") << 9 << 9 << 4.6f;
    QTest::newRow("57") << 57 << 57 << 23.8f;
    QTest::newRow("-1") << -1 << 0 << 1.0f;
    QTest::newRow("-3") << -3 << 0 << 1.0f;
    QTest::newRow("lowest") << firstInt << 0 << 1.0f;
    QTest::newRow("highest") << lastInt << lastInt << 858993459.8f;
}

void EdgeDataTest::aRingIsWiderWithEachNumber()
{
    QFETCH(int, number);
    QFETCH(float, scale);
    NodeData node;
    const EdgeData ring(node, number);
    QTEST(ring.index, "index");
    QVERIFY(ring.ringScale == scale);
    QCOMPARE(ring.maxIndex, 0);
}

void EdgeDataTest::aRingIsBuiltAtOnce()
{
    NodeData node;
    node.x = 100.0f;
    node.y = 50.0f;
    const EdgeData ring(node, 2);
    // 1.8 times 362 is 651.6; the ring passes through the node's centre and stands above it.
    QCOMPARE(ring.ringDiameter, 651);
    QCOMPARE(ring.startPos, QVector2D(100.0f, 375.0f));
    QCOMPARE(ring.endPos, QVector2D(100.0f, 375.0f));
    QCOMPARE(ring.centerPos, QVector2D(100.0f, 701.0f));
    QVERIFY(ring.startArrowMatrix == Mat4());
    QVERIFY(ring.endArrowMatrix == Mat4());
}

void EdgeDataTest::nodesListTheirEdgesInTheOrderOfCreation()
{
    TwoNodes nodes;
    EdgeData base(nodes.start, nodes.end);
    EdgeData ring(nodes.start, 0);
    EdgeData derived(base, 1);
    EdgeData back(nodes.end, nodes.start);
    EdgeData another(nodes.start, nodes.end);
    QCOMPARE(nodes.start.outEdges, (EdgeList{&base, &ring, &derived, &another}));
    QCOMPARE(nodes.start.inEdges, EdgeList{&back});
    QCOMPARE(nodes.end.outEdges, EdgeList{&back});
    QCOMPARE(nodes.end.inEdges, (EdgeList{&base, &derived, &another}));
}

void EdgeDataTest::marginGrowsWithEachPairOfTracks_data()
{
    QTest::addColumn<int>("maxIndex");
    QTest::addColumn<int>("margin");
    QTest::newRow("no track") << 0 << 0;
    QTest::newRow("1") << 1 << 128;
    QTest::newRow("2") << 2 << 128;
    QTest::newRow("3") << 3 << 256;
    QTest::newRow("4") << 4 << 256;
    QTest::newRow("5") << 5 << 384;
    QTest::newRow("last that fits an int") << 33554430 << 2147483520;
    QTest::newRow("first that is held to int") << 33554431 << lastInt;
    QTest::newRow("highest") << lastInt << lastInt;
}

void EdgeDataTest::marginGrowsWithEachPairOfTracks()
{
    QFETCH(int, maxIndex);
    TwoNodes nodes;
    EdgeData base(nodes.start, nodes.end);
    base.maxIndex = maxIndex;
    QTEST(base.edgeMargin(), "margin");
}

void EdgeDataTest::onlyBaseEdgesHaveAMargin()
{
    TwoNodes nodes;
    EdgeData base(nodes.start, nodes.end);
    EdgeData derived(base, 5);
    derived.maxIndex = 5;
    QCOMPARE(derived.edgeMargin(), 0);
    QCOMPARE(base.edgeMargin(), 384);
    const EdgeData ring(nodes.start, 5);
    QCOMPARE(ring.edgeMargin(), 0);
}

QTEST_APPLESS_MAIN(EdgeDataTest)

#include "EdgeDataTest.moc"
