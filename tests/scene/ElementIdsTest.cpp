#include "scene/ElementIds.h"

#include <NELK/NELK>

#include <QtTest>

#include <limits>
#include <type_traits>

using namespace NELK;

static_assert(std::is_same_v<decltype(pickableIdLimit), const qint64>);
static_assert(std::is_same_v<decltype(floatIdLimit), const qint64>);

/// The running id belongs to the process: each of the first functions goes on where the one before has left it.
class ElementIdsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nodesAndEdgesCountOnTogetherFromOne();
    void allScenesCountOnTogether();
    void refusedCreationsLeaveAGap();
    void idsOfTheHostDoNotMoveTheCount();
    void clearedAndDeletedScenesDoNotMoveTheCount();

    void theCountGoesOnAtTheLowestAfterTheHighest();
    void idsAreWidenedWithTheirSign();
    void bothLimitsAreBeyondTheCount();
};

namespace
{

/// The next running id, by taking it.
qint64 nextId()
{
    return GraphScene().createNode().getId();
}

} // namespace

void ElementIdsTest::nodesAndEdgesCountOnTogetherFromOne()
{
    GraphScene scene;
    const GraphNode node = scene.createNode();
    QCOMPARE(node.getId(), qint64(1));
    QCOMPARE(scene.createEdge(node, node).getId(), qint64(2));
    const GraphNode other = scene.createNode();
    QCOMPARE(other.getId(), qint64(3));
    const GraphEdge edge = scene.createEdge(node, other);
    QCOMPARE(edge.getId(), qint64(4));
    QCOMPARE(scene.createEdge(edge, 1).getId(), qint64(5));
    QVERIFY(scene.getNode(3) == other);
    QVERIFY(scene.getEdge(4) == edge);
    QVERIFY(!scene.getNode(4).valid());
    QVERIFY(!scene.getEdge(3).valid());
}

void ElementIdsTest::allScenesCountOnTogether()
{
    GraphScene one;
    GraphScene other;
    QCOMPARE(one.createNode().getId(), qint64(6));
    QCOMPARE(other.createNode().getId(), qint64(7));
    QCOMPARE(one.createNode().getId(), qint64(8));
}

void ElementIdsTest::refusedCreationsLeaveAGap()
{
    GraphScene scene;
    const GraphNode node = scene.createNode();
    QCOMPARE(node.getId(), qint64(9));
    QVERIFY(!scene.createEdge(node, GraphNode()).valid());
    QVERIFY(!scene.createEdge(GraphEdge(), 1).valid());
    QCOMPARE(scene.createNode().getId(), qint64(12));
}

void ElementIdsTest::idsOfTheHostDoNotMoveTheCount()
{
    GraphScene scene;
    const GraphNode node = scene.createNode(500);
    const GraphEdge edge = scene.createEdge(501, node, scene.createNode(14));
    scene.createEdge(502, edge, 1);
    QVERIFY(!scene.createEdge(503, node, GraphNode()).valid());
    QVERIFY(!scene.createEdge(504, GraphEdge(), 1).valid());
    QCOMPARE(scene.createNode().getId(), qint64(13));
    // Nothing keeps the count from an id that the host has taken.
    QCOMPARE(scene.createNode().getId(), qint64(14));
}

void ElementIdsTest::clearedAndDeletedScenesDoNotMoveTheCount()
{
    GraphScene scene;
    QCOMPARE(scene.createNode().getId(), qint64(15));
    scene.clear();
    QCOMPARE(scene.createNode().getId(), qint64(16));
    scene.removeNode(16);
    QCOMPARE(nextId(), qint64(17));
    QCOMPARE(nextId(), qint64(18));
}

void ElementIdsTest::theCountGoesOnAtTheLowestAfterTheHighest()
{
    qint32 runningId = std::numeric_limits<qint32>::max() - 1;
    QCOMPARE(takeNextId(runningId), qint64(2147483646));
    QCOMPARE(takeNextId(runningId), qint64(2147483647));
    QCOMPARE(takeNextId(runningId), qint64(-2147483648LL));
    QCOMPARE(takeNextId(runningId), qint64(-2147483647));
    QCOMPARE(runningId, -2147483646);
}

void ElementIdsTest::idsAreWidenedWithTheirSign()
{
    qint32 runningId = -1;
    QCOMPARE(takeNextId(runningId), qint64(-1));
    QCOMPARE(takeNextId(runningId), qint64(0));
    QCOMPARE(takeNextId(runningId), qint64(1));
    QCOMPARE(runningId, 2);
}

void ElementIdsTest::bothLimitsAreBeyondTheCount()
{
    QCOMPARE(pickableIdLimit, qint64(12345678900));
    QCOMPARE(floatIdLimit, qint64(12345678900));
    QVERIFY(pickableIdLimit > std::numeric_limits<qint32>::max());
}

QTEST_APPLESS_MAIN(ElementIdsTest)

#include "ElementIdsTest.moc"
