#include "scene/EdgeShape.h"
#include "scene/ElementIds.h"
#include "scene/MirroredFlag.h"
#include "scene/ModelMatrices.h"
#include "scene/Scene.h"
#include "support/MatrixText.h"
#include "support/PointText.h"
#include "support/RandomPlane.h"
#include "support/SceneOf.h"
#include "support/ShapeDifferences.h"
#include "support/SignalLog.h"

#include <NELK/GraphScene.h>

#include <QRegularExpression>
#include <QStringList>
#include <QtTest>

#include <limits>

using namespace NELK;

namespace
{

constexpr int largestInt = std::numeric_limits<int>::max();

void place(NodeData& node, QVector2D position)
{
    node.x = position.x();
    node.y = position.y();
}

void setSelected(Scene& scene, NodeData& node, bool selected)
{
    setMirrored(node, &NodeData::select, selected, scene.selectedNodes);
}

NodeData* addNode(Scene& scene, qint64 id, QVector2D position)
{
    NodeData* node = scene.createNode(id);
    place(*node, position);
    return node;
}

NodeData* addSelectedNode(Scene& scene, qint64 id, QVector2D position)
{
    NodeData* node = addNode(scene, id, position);
    setSelected(scene, *node, true);
    return node;
}

/// Two nodes with every kind of edge between them and around the first.
struct Family
{
    Family(QVector2D first, QVector2D second) : a(addNode(scene, 1, first)), b(addNode(scene, 2, second))
    {
        EdgeData* base = scene.createEdge(10, a, b);
        scene.createEdge(11, base, 1);
        scene.createEdge(12, base, 2);
        scene.createEdge(13, base, 5)->zoomSpan = 1.5f;
        scene.createEdge(14, b, a);
        EdgeData* rightAngled = scene.createEdge(15, a, b);
        rightAngled->rightAngle = true;
        EdgeData* ring = scene.createEdge(16, a, a);
        scene.createEdge(17, ring, 2);
        for (const qint64 id : {13, 15})
            rebuildShape(*scene.getEdge(id));
    }

    Scene scene;
    NodeData* a;
    NodeData* b;
};

/// Names what is not alike in the edges of two scenes; empty if nothing is.
QString differences(const Scene& one, const Scene& other)
{
    QString names;
    for (const EdgeData* edge : one.edges) {
        QString ofEdge = shapeDifferences(*edge, *other.getEdge(edge->id));
        // What a right-angled edge leaves alone is that of the straight line that it once was.
        if (edge->rightAngle)
            ofEdge.remove(QRegularExpression("(line|offset|arrow)\\w+ "));
        if (!ofEdge.isEmpty())
            names += QStringLiteral("edge %1: %2").arg(edge->id).arg(ofEdge);
    }
    return names;
}

const QStringList movedThenChanged{SignalLog::elementsMoved(), SignalLog::changed()};

} // namespace

class SceneMovementTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void movesSelectedNodesWithTheirEdges();
    void movesOnlyWhatIsSelectedShownAndNotLocked_data();
    void movesOnlyWhatIsSelectedShownAndNotLocked();
    void stretchesEdgesToLockedNodes();
    void leavesSelectedEdgesWithTheirNodes();
    void movesNodesThatCannotBePicked();
    void movesByFractions();
    void movesOutOfTheScene();
    void changesNothingButPlaces();
    void tellsOfAMoveOnceWhenAllIsDone();
    void tellsOfAMoveThatMovesNothing_data();
    void tellsOfAMoveThatMovesNothing();
    void relaysAMoveToTheHostAsOneChange();

    void takesEveryKindOfEdgeAlong_data();
    void takesEveryKindOfEdgeAlong();
    void takesTracksAlongWithTheirBaseEdge();
    void takesLeavingEdgesAlongBeforeArrivingOnes();
    void takesEdgesAlongWhoseBaseEdgeIsGone();
    void leavesEdgesOfOtherNodesAlone();
    void fitsRingsToAChangedCircleOnTheNextMove();
    void keepsEdgesAttachedThroughAnyMoves();
    void movesSilentlyForTheHost();

    void boundsAnEmptySceneByTheDefaultArea();
    void boundsNodeCentresOnly();
    void boundsCutTowardZero();
    void boundsLeaveHiddenNodesOut();
    void boundsWidenByTheOutermostTrack_data();
    void boundsWidenByTheOutermostTrack();
    void boundsTakeTheWidestFanForAllSides();
    void boundsLeaveHiddenFansOut();
    void boundsFollowTheRemovalOfTracks();
    void boundsTakeNoRoomForRings();
    void boundsHoldLargestNumbers_data();
    void boundsHoldLargestNumbers();
    void boundsAreTakenSilently();

    void marginGrowsWithEverySecondTrack_data();
    void marginGrowsWithEverySecondTrack();
    void marginBelongsToBaseEdges();

    void alignsTheMiddleOfAllNodesToTheOrigin();
    void alignsByTheBoxAndNotByTheCrowd();
    void alignsLockedAndHiddenNodesToo();
    void alignsEdgesWithTheirNodes();
    void alignsSilently();
};

void SceneMovementTest::movesSelectedNodesWithTheirEdges()
{
    Scene scene;
    NodeData* left = addSelectedNode(scene, 1, {0.0f, 0.0f});
    NodeData* right = addSelectedNode(scene, 2, {1000.0f, 0.0f});
    const EdgeData* edge = scene.createEdge(10, left, right);

    scene.moveSelected({100.0f, -50.0f});
    QCOMPARE(left->center(), QVector2D(100.0f, -50.0f));
    QCOMPARE(right->center(), QVector2D(1100.0f, -50.0f));
    QCOMPARE(edge->startPos, QVector2D(100.0f, -50.0f));
    QCOMPARE(edge->endPos, QVector2D(1100.0f, -50.0f));
    QCOMPARE(edge->centerPos, QVector2D(600.0f, -50.0f));
    QCOMPARE(edge->curveStartPos, QVector2D(228.0f, -50.0f));
    QCOMPARE(edge->lineMatrix, lineModel({100.0f, -50.0f}, {1100.0f, -50.0f}, 8, false));
}

void SceneMovementTest::movesOnlyWhatIsSelectedShownAndNotLocked_data()
{
    QTest::addColumn<bool>("selected");
    QTest::addColumn<bool>("shown");
    QTest::addColumn<bool>("locked");
    QTest::addColumn<bool>("moves");

    QTest::newRow("selected") << true << true << false << true;
    QTest::newRow("selected, locked") << true << true << true << false;
    QTest::newRow("selected, hidden") << true << false << false << false;
    QTest::newRow("selected, hidden, locked") << true << false << true << false;
    QTest::newRow("not selected") << false << true << false << false;
    QTest::newRow("not selected, locked") << false << true << true << false;
    QTest::newRow("not selected, hidden") << false << false << false << false;
}

void SceneMovementTest::movesOnlyWhatIsSelectedShownAndNotLocked()
{
    QFETCH(bool, selected);
    QFETCH(bool, shown);
    QFETCH(bool, locked);
    QFETCH(bool, moves);

    Scene scene;
    NodeData* node = addNode(scene, 1, {10.0f, 20.0f});
    setSelected(scene, *node, selected);
    node->show = shown;
    node->lock = locked;
    const NodeData* other = addSelectedNode(scene, 2, {0.0f, 0.0f});

    scene.moveSelected({1.0f, 2.0f});
    QCOMPARE(node->center(), moves ? QVector2D(11.0f, 22.0f) : QVector2D(10.0f, 20.0f));
    QCOMPARE(other->center(), QVector2D(1.0f, 2.0f));
}

void SceneMovementTest::stretchesEdgesToLockedNodes()
{
    Scene scene;
    NodeData* moving = addSelectedNode(scene, 1, {0.0f, 0.0f});
    NodeData* locked = addSelectedNode(scene, 2, {1000.0f, 0.0f});
    locked->lock = true;
    const EdgeData* leaving = scene.createEdge(10, moving, locked);
    const EdgeData* arriving = scene.createEdge(11, locked, moving);

    scene.moveSelected({-500.0f, 0.0f});
    QCOMPARE(leaving->startPos, QVector2D(-500.0f, 0.0f));
    QCOMPARE(leaving->endPos, QVector2D(1000.0f, 0.0f));
    QCOMPARE(leaving->centerPos, QVector2D(250.0f, 0.0f));
    QCOMPARE(leaving->lineMatrix, lineModel({-500.0f, 0.0f}, {1000.0f, 0.0f}, 8, false));
    QCOMPARE(arriving->startPos, QVector2D(1000.0f, 0.0f));
    QCOMPARE(arriving->endPos, QVector2D(-500.0f, 0.0f));
    QCOMPARE(arriving->curveEndPos, QVector2D(-372.0f, 0.0f));
}

void SceneMovementTest::leavesSelectedEdgesWithTheirNodes()
{
    Scene scene;
    NodeData* left = addNode(scene, 1, {0.0f, 0.0f});
    NodeData* right = addNode(scene, 2, {1000.0f, 0.0f});
    addSelectedNode(scene, 3, {50.0f, 50.0f});
    EdgeData* edge = scene.createEdge(10, left, right);
    setMirrored(*edge, &EdgeData::select, true, scene.selectedEdges);

    scene.moveSelected({100.0f, 100.0f});
    QCOMPARE(edge->startPos, QVector2D(0.0f, 0.0f));
    QCOMPARE(edge->centerPos, QVector2D(500.0f, 0.0f));
    QVERIFY(edge->select);
}

void SceneMovementTest::movesNodesThatCannotBePicked()
{
    Scene scene;
    const NodeData* node = addSelectedNode(scene, pickableIdLimit, {0.0f, 0.0f});
    scene.moveSelected({1.0f, 1.0f});
    QCOMPARE(node->center(), QVector2D(1.0f, 1.0f));
}

void SceneMovementTest::movesByFractions()
{
    Scene scene;
    const NodeData* node = addSelectedNode(scene, 1, {0.5f, -0.5f});
    scene.moveSelected({0.0625f, 0.03125f});
    QCOMPARE(node->center(), QVector2D(0.5625f, -0.46875f));
    scene.moveSelected({-0.00390625f, 7.75f});
    QCOMPARE(node->center(), QVector2D(0.55859375f, 7.28125f));
}

void SceneMovementTest::movesOutOfTheScene()
{
    Scene scene;
    const NodeData* node = addSelectedNode(scene, 1, {3999.0f, -2399.0f});
    scene.moveSelected({1000000.0f, -1000000.0f});
    QCOMPARE(node->center(), QVector2D(1003999.0f, -1002399.0f));
    QCOMPARE(scene.width, 8000);
    QCOMPARE(scene.height, 4800);
}

void SceneMovementTest::changesNothingButPlaces()
{
    Scene scene;
    NodeData* node = addSelectedNode(scene, 1, {0.0f, 0.0f});
    EdgeData* edge = scene.createEdge(10, node, addNode(scene, 2, {500.0f, 500.0f}));
    node->circleColor = {0.25f, 0.5f, 0.75f};
    node->labelLines.append(LabelLine());
    node->labelWidth = 77;
    edge->edgeColor = {0.75f, 0.5f, 0.25f};
    edge->labelLines.append(LabelLine());
    edge->edgeWidth = 20;

    scene.moveSelected({100.0f, 100.0f});
    QVERIFY(node->select);
    QCOMPARE(scene.selectedNodes.size(), 1);
    QCOMPARE(node->lockBadgePos, QVector2D(-96.0f, 96.0f));
    QCOMPARE(node->cornerBadgePos, QVector2D(96.0f, 96.0f));
    QCOMPARE(node->circleColor, (Rgb{0.25f, 0.5f, 0.75f}));
    QCOMPARE(node->labelLines.size(), 1);
    QCOMPARE(node->labelWidth, 77);
    QVERIFY(!edge->select);
    QCOMPARE(edge->edgeColor, (Rgb{0.75f, 0.5f, 0.25f}));
    QCOMPARE(edge->labelLines.size(), 1);
    QCOMPARE(edge->edgeWidth, 20);
    QCOMPARE(node->outEdges, QList<EdgeData*>{edge});
}

void SceneMovementTest::tellsOfAMoveOnceWhenAllIsDone()
{
    Scene scene;
    NodeData* left = addSelectedNode(scene, 1, {0.0f, 0.0f});
    NodeData* right = addSelectedNode(scene, 2, {1000.0f, 0.0f});
    const EdgeData* edge = scene.createEdge(10, left, right);

    SignalLog log(scene);
    QVector<QVector2D> places;
    connect(&scene, &Scene::signalElementsMoved, this,
            [&] { places << left->center() << right->center() << edge->startPos << edge->endPos; });
    scene.moveSelected({10.0f, 20.0f});
    QCOMPARE(log.take(), movedThenChanged);
    const QVector<QVector2D> expected{{10.0f, 20.0f}, {1010.0f, 20.0f}, {10.0f, 20.0f}, {1010.0f, 20.0f}};
    QCOMPARE(places, expected);

    scene.moveSelected({10.0f, 20.0f});
    QCOMPARE(log.take(), movedThenChanged);
}

void SceneMovementTest::tellsOfAMoveThatMovesNothing_data()
{
    QTest::addColumn<bool>("anyNode");
    QTest::addColumn<bool>("selected");
    QTest::addColumn<bool>("locked");
    QTest::addColumn<QVector2D>("delta");

    QTest::newRow("empty scene") << false << false << false << QVector2D(5.0f, 5.0f);
    QTest::newRow("nothing selected") << true << false << false << QVector2D(5.0f, 5.0f);
    QTest::newRow("all locked") << true << true << true << QVector2D(5.0f, 5.0f);
    QTest::newRow("by nothing") << true << true << false << QVector2D(0.0f, 0.0f);
}

void SceneMovementTest::tellsOfAMoveThatMovesNothing()
{
    QFETCH(bool, anyNode);
    QFETCH(bool, selected);
    QFETCH(bool, locked);
    QFETCH(QVector2D, delta);

    Scene scene;
    if (anyNode) {
        NodeData* node = addNode(scene, 1, {0.0f, 0.0f});
        setSelected(scene, *node, selected);
        node->lock = locked;
    }
    SignalLog log(scene);
    scene.moveSelected(delta);
    QCOMPARE(log.take(), movedThenChanged);
    if (anyNode)
        QCOMPARE(scene.getNode(1)->center(), QVector2D(0.0f, 0.0f));
}

void SceneMovementTest::relaysAMoveToTheHostAsOneChange()
{
    GraphScene graphScene;
    SignalLog log(graphScene);
    sceneOf(graphScene).moveSelected({1.0f, 1.0f});
    QCOMPARE(log.take(), QStringList{SignalLog::changed()});
}

void SceneMovementTest::takesEveryKindOfEdgeAlong_data()
{
    QTest::addColumn<QVector2D>("first");
    QTest::addColumn<QVector2D>("second");

    QTest::newRow("nowhere") << QVector2D(0.0f, 0.0f) << QVector2D(1000.0f, 300.0f);
    QTest::newRow("first node") << QVector2D(-321.0f, 77.5f) << QVector2D(1000.0f, 300.0f);
    QTest::newRow("second node") << QVector2D(0.0f, 0.0f) << QVector2D(1234.5f, -4000.0f);
    QTest::newRow("both nodes") << QVector2D(55.0f, 66.0f) << QVector2D(-2000.0f, 33.0f);
    QTest::newRow("past each other") << QVector2D(1000.0f, 300.0f) << QVector2D(0.0f, 0.0f);
    QTest::newRow("onto each other") << QVector2D(400.0f, 400.0f) << QVector2D(400.0f, 400.0f);
}

void SceneMovementTest::takesEveryKindOfEdgeAlong()
{
    QFETCH(QVector2D, first);
    QFETCH(QVector2D, second);

    Family moved({0.0f, 0.0f}, {1000.0f, 300.0f});
    place(*moved.a, first);
    place(*moved.b, second);
    moved.a->updateAttachedEdges();
    moved.b->updateAttachedEdges();

    // As if the nodes had been there from the start.
    const Family settled(first, second);
    QCOMPARE(differences(moved.scene, settled.scene), QString());
    const EdgeData* base = moved.scene.getEdge(10);
    QCOMPARE(base->startPos, first);
    QCOMPARE(base->endPos, second);
    QCOMPARE(moved.scene.getEdge(14)->startPos, second);
    QCOMPARE(moved.scene.getEdge(14)->endPos, first);
    QCOMPARE(moved.scene.getEdge(16)->startPos, first + QVector2D(0.0f, 181.0f));
}

void SceneMovementTest::takesTracksAlongWithTheirBaseEdge()
{
    Scene scene;
    NodeData* left = addNode(scene, 1, {0.0f, 0.0f});
    NodeData* right = addNode(scene, 2, {1000.0f, 0.0f});
    EdgeData* base = scene.createEdge(10, left, right);
    const EdgeData* track = scene.createEdge(11, base, 1);

    // The line now runs upward, so that its right is at greater x.
    place(*right, {0.0f, 1000.0f});
    right->updateAttachedEdges();
    QCOMPARE(track->curveStartPos, QVector2D(128.0f, 128.0f));
    QCOMPARE(track->curveEndPos, QVector2D(128.0f, 872.0f));

    place(*left, {1000.0f, 1000.0f});
    left->updateAttachedEdges();
    QCOMPARE(track->startPos, QVector2D(1000.0f, 1000.0f));
    QCOMPARE(track->curveStartPos, QVector2D(872.0f, 1128.0f));
    QCOMPARE(track->curveEndPos, QVector2D(128.0f, 1128.0f));
    QCOMPARE(track->segmentMatrix2, lineModel({128.0f, 1128.0f}, {0.0f, 1000.0f}, 8, false));
}

void SceneMovementTest::takesLeavingEdgesAlongBeforeArrivingOnes()
{
    NodeData node;
    NodeData source;
    NodeData target;
    place(source, {-1000.0f, 0.0f});
    place(target, {1000.0f, 0.0f});
    EdgeData arriving(source, node);
    EdgeData leaving(node, target);
    // No scene makes such a pair. It shows which one is built first: the other's frame is still the old one then.
    leaving.baseEdge = &arriving;
    leaving.index = 1;

    place(node, {0.0f, 500.0f});
    node.updateAttachedEdges();
    QCOMPARE(leaving.curveStartPos, QVector2D(-872.0f, -128.0f));
    QCOMPARE(arriving.endPos, QVector2D(0.0f, 500.0f));
}

void SceneMovementTest::takesEdgesAlongWhoseBaseEdgeIsGone()
{
    Scene scene;
    NodeData* left = addSelectedNode(scene, 1, {0.0f, 0.0f});
    NodeData* right = addNode(scene, 2, {1000.0f, 0.0f});
    EdgeData* base = scene.createEdge(10, left, right);
    const EdgeData* rightTrack = scene.createEdge(11, base, 1);
    const EdgeData* leftTrack = scene.createEdge(12, base, 4);
    scene.removeEdge(10);
    QCOMPARE(rightTrack->curveStartPos, QVector2D(128.0f, -128.0f));
    QCOMPARE(leftTrack->curveEndPos, QVector2D(872.0f, 256.0f));

    place(*right, {0.0f, 1000.0f});
    right->updateAttachedEdges();
    QCOMPARE(rightTrack->curveStartPos, QVector2D(128.0f, 128.0f));
    QCOMPARE(rightTrack->curveEndPos, QVector2D(128.0f, 872.0f));
    QCOMPARE(leftTrack->curveStartPos, QVector2D(-256.0f, 128.0f));
    QCOMPARE(leftTrack->centerPos, QVector2D(-256.0f, 500.0f));

    scene.moveSelected({0.0f, 3000.0f});
    QCOMPARE(rightTrack->startPos, QVector2D(0.0f, 3000.0f));
    QCOMPARE(rightTrack->curveStartPos, QVector2D(-128.0f, 2872.0f));
    QCOMPARE(rightTrack->segmentMatrix2, lineModel({-128.0f, 1128.0f}, {0.0f, 1000.0f}, 8, false));
    QCOMPARE(leftTrack->curveEndPos, QVector2D(256.0f, 1128.0f));
}

void SceneMovementTest::leavesEdgesOfOtherNodesAlone()
{
    const Family untouched({0.0f, 0.0f}, {1000.0f, 300.0f});
    Family family({0.0f, 0.0f}, {1000.0f, 300.0f});
    NodeData* third = addSelectedNode(family.scene, 3, {500.0f, 500.0f});
    EdgeData* edge = family.scene.createEdge(20, third, family.a);

    family.scene.moveSelected({10.0f, 10.0f});
    QCOMPARE(edge->startPos, QVector2D(510.0f, 510.0f));
    QCOMPARE(differences(untouched.scene, family.scene), QString());
}

void SceneMovementTest::fitsRingsToAChangedCircleOnTheNextMove()
{
    GraphScene graphScene;
    GraphNode node = graphScene.createNode();
    const GraphEdge first = graphScene.createEdge(node, node);
    const GraphEdge second = graphScene.createEdge(first, 1);
    const Scene& scene = sceneOf(graphScene);
    const EdgeData* ring = scene.getEdge(first.getId());
    const EdgeData* outerRing = scene.getEdge(second.getId());

    node.setCircleSize(2.0f);
    QCOMPARE(ring->ringDiameter, 362);
    QCOMPARE(outerRing->ringDiameter, 506);

    // 256 x 1.4142 x 2, and 1.4 times that.
    node.setPos(10, 20);
    QCOMPARE(ring->ringDiameter, 724);
    QCOMPARE(ring->startPos, QVector2D(10.0f, 382.0f));
    QCOMPARE(ring->centerPos, QVector2D(10.0f, 744.0f));
    QCOMPARE(outerRing->ringDiameter, 1013);

    node.setCircleSize(1.0f);
    node.setSelect(true);
    sceneOf(graphScene).moveSelected({0.0f, 0.0f});
    QCOMPARE(ring->ringDiameter, 362);
    QCOMPARE(ring->startPos, QVector2D(10.0f, 201.0f));
}

void SceneMovementTest::keepsEdgesAttachedThroughAnyMoves()
{
    RandomPlane random(71);
    for (int round = 0; round < 200; ++round) {
        Family family(random.point(5000.0), random.point(5000.0));
        for (int step = 0; step < 10; ++step) {
            setSelected(family.scene, *family.a, random.coin());
            setSelected(family.scene, *family.b, random.coin());
            family.b->lock = random.coin();
            family.scene.moveSelected(random.point(2000.0));
            if (random.whole(0, 4) == 0)
                family.scene.elementsAlignToCenter();
        }
        const Family settled(family.a->center(), family.b->center());
        QCOMPARE(differences(family.scene, settled.scene), QString());
    }
}

void SceneMovementTest::movesSilentlyForTheHost()
{
    GraphScene graphScene;
    GraphNode node = graphScene.createNode();
    const GraphNode other = graphScene.createNode();
    const GraphEdge edge = graphScene.createEdge(node, other);
    SignalLog log(sceneOf(graphScene));
    SignalLog hostLog(graphScene);

    node.setPos(1, 2);
    QCOMPARE(edge.startPos(), QPoint(1, -2));
    node.setPos(QPoint(3, 4));
    QCOMPARE(edge.startPos(), QPoint(3, -4));
    node.setPosGraph(5, 6);
    QCOMPARE(edge.startPos(), QPoint(5, 6));
    node.setPosGraph(QPoint(7, 8));
    QCOMPARE(edge.startPos(), QPoint(7, 8));
    QCOMPARE(log.take(), QStringList());
    QCOMPARE(hostLog.take(), QStringList());
}

void SceneMovementTest::boundsAnEmptySceneByTheDefaultArea()
{
    Scene scene;
    for (const bool visibleOnly : {false, true}) {
        const QRect rect = scene.boundingRect(visibleOnly);
        QCOMPARE(rect.left(), -4000);
        QCOMPARE(rect.top(), 2400);
        QCOMPARE(rect.width(), 8000);
        QCOMPARE(rect.height(), -4800);
    }
    // The area is fixed.
    scene.setSize(20000, 20000);
    QCOMPARE(scene.boundingRect(false), QRect(-4000, 2400, 8000, -4800));
}

void SceneMovementTest::boundsNodeCentresOnly()
{
    Scene scene;
    NodeData* node = addNode(scene, 1, {100.0f, 50.0f});
    node->circleShow = true;
    node->labelWidth = node->labelHeight = 500;
    const QRect single = scene.boundingRect(false);
    QCOMPARE(single.left(), 100);
    QCOMPARE(single.top(), 50);
    QCOMPARE(single.width(), 0);
    QCOMPARE(single.height(), 0);
    QCOMPARE(scene.boundingRect(true), single);

    addNode(scene, 2, {-300.0f, 75.0f});
    addNode(scene, 3, {20.0f, -25.0f});
    // The top is the largest y, and the height counts downward from there.
    const QRect rect = scene.boundingRect(false);
    QCOMPARE(rect.left(), -300);
    QCOMPARE(rect.top(), 75);
    QCOMPARE(rect.width(), 400);
    QCOMPARE(rect.height(), 100);
}

void SceneMovementTest::boundsCutTowardZero()
{
    Scene scene;
    addNode(scene, 1, {-10.75f, -20.25f});
    addNode(scene, 2, {30.5f, -0.75f});
    const QRect rect = scene.boundingRect(false);
    QCOMPARE(rect.left(), -10);
    QCOMPARE(rect.top(), 0);
    // 41.25 and 19.5: the difference is cut, not made of what was cut.
    QCOMPARE(rect.width(), 41);
    QCOMPARE(rect.height(), 19);

    place(*scene.getNode(1), {-10.25f, 0.25f});
    place(*scene.getNode(2), {-0.5f, 99.9375f});
    QCOMPARE(scene.boundingRect(false), QRect(-10, 99, 9, 99));
}

void SceneMovementTest::boundsLeaveHiddenNodesOut()
{
    Scene scene;
    NodeData* inner = addNode(scene, 1, {0.0f, 0.0f});
    NodeData* outer = addNode(scene, 2, {1000.0f, 600.0f});
    addNode(scene, 3, {10.0f, 20.0f});
    outer->show = false;
    QCOMPARE(scene.boundingRect(true), QRect(0, 20, 10, 20));
    QCOMPARE(scene.boundingRect(false), QRect(0, 600, 1000, 600));

    inner->show = false;
    scene.getNode(3)->show = false;
    QCOMPARE(scene.boundingRect(true), QRect(-4000, 2400, 8000, -4800));
    QCOMPARE(scene.boundingRect(false), QRect(0, 600, 1000, 600));
}

void SceneMovementTest::boundsWidenByTheOutermostTrack_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("margin");

    QTest::newRow("1") << 1 << 128;
    QTest::newRow("2") << 2 << 128;
    QTest::newRow("3") << 3 << 256;
    QTest::newRow("4") << 4 << 256;
    QTest::newRow("5") << 5 << 384;
    QTest::newRow("100") << 100 << 6400;
    // The base edge never heard of a number below 1.
    QTest::newRow("0") << 0 << 0;
    QTest::newRow("-3") << -3 << 0;
}

void SceneMovementTest::boundsWidenByTheOutermostTrack()
{
    QFETCH(int, index);
    QFETCH(int, margin);

    Scene scene;
    NodeData* left = addNode(scene, 1, {0.0f, 0.0f});
    NodeData* right = addNode(scene, 2, {1000.0f, 600.0f});
    EdgeData* base = scene.createEdge(10, left, right);
    QCOMPARE(scene.boundingRect(false), QRect(0, 600, 1000, 600));

    EdgeData* track = scene.createEdge(11, base, index);
    const QRect widened(-margin, 600 + margin, 1000 + 2 * margin, 600 + 2 * margin);
    QCOMPARE(scene.boundingRect(false), widened);
    QCOMPARE(scene.boundingRect(true), widened);

    track->zoomSpan = base->zoomSpan = 4.0f;
    QCOMPARE(scene.boundingRect(false), widened);
}

void SceneMovementTest::boundsTakeTheWidestFanForAllSides()
{
    Scene scene;
    NodeData* left = addNode(scene, 1, {0.0f, 0.0f});
    NodeData* right = addNode(scene, 2, {1000.0f, 0.0f});
    NodeData* far = addNode(scene, 3, {90000.0f, 0.0f});
    scene.createEdge(11, scene.createEdge(10, left, right), 5);
    scene.createEdge(13, scene.createEdge(12, left, far), 1);
    scene.createEdge(14, far, right);
    QCOMPARE(scene.boundingRect(false), QRect(-384, 384, 90768, 768));
}

void SceneMovementTest::boundsLeaveHiddenFansOut()
{
    Scene scene;
    NodeData* left = addNode(scene, 1, {0.0f, 0.0f});
    NodeData* right = addNode(scene, 2, {1000.0f, 0.0f});
    EdgeData* wide = scene.createEdge(10, left, right);
    EdgeData* track = scene.createEdge(11, wide, 5);
    scene.createEdge(13, scene.createEdge(12, left, right), 1);

    // The base edge alone speaks for its tracks.
    track->show = false;
    QCOMPARE(scene.boundingRect(true), QRect(-384, 384, 1768, 768));
    track->show = true;
    wide->show = false;
    QCOMPARE(scene.boundingRect(true), QRect(-128, 128, 1256, 256));
    QCOMPARE(scene.boundingRect(false), QRect(-384, 384, 1768, 768));
    // Hidden nodes do not hide their edges.
    right->show = false;
    QCOMPARE(scene.boundingRect(true), QRect(-128, 128, 256, 256));
}

void SceneMovementTest::boundsFollowTheRemovalOfTracks()
{
    Scene scene;
    NodeData* left = addNode(scene, 1, {0.0f, 0.0f});
    NodeData* right = addNode(scene, 2, {1000.0f, 0.0f});
    EdgeData* base = scene.createEdge(10, left, right);
    scene.createEdge(11, base, 1);
    scene.createEdge(12, base, 5);

    // The number goes down by one, to 4, however far below the next track is.
    scene.removeEdge(12);
    QCOMPARE(scene.boundingRect(false), QRect(-256, 256, 1512, 512));

    // A track that has outlived its base edge still needs its room.
    scene.createEdge(13, base, 3);
    scene.removeEdge(10);
    QCOMPARE(scene.boundingRect(false), QRect(-256, 256, 1512, 512));
    scene.removeEdge(13);
    QCOMPARE(scene.boundingRect(false), QRect(-128, 128, 1256, 256));
    scene.removeEdge(11);
    QCOMPARE(scene.boundingRect(false), QRect(0, 0, 1000, 0));
}

void SceneMovementTest::boundsTakeNoRoomForRings()
{
    Scene scene;
    NodeData* node = addNode(scene, 1, {100.0f, 50.0f});
    EdgeData* ring = scene.createEdge(10, node, node);
    scene.createEdge(11, ring, 9);
    QCOMPARE(scene.boundingRect(false), QRect(100, 50, 0, 0));
}

void SceneMovementTest::boundsHoldLargestNumbers_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QVector2D>("position");
    QTest::addColumn<int>("left");
    QTest::addColumn<int>("top");

    constexpr int lowestInt = std::numeric_limits<int>::min();
    QTest::newRow("many tracks") << 20000000 << QVector2D(0.0f, 0.0f) << -1280000000 << 1280000000;
    QTest::newRow("as many tracks as there are numbers")
        << largestInt << QVector2D(0.0f, 0.0f) << lowestInt << largestInt;
    QTest::newRow("node far left and above") << 0 << QVector2D(-3e9f, 3e9f) << lowestInt << largestInt;
    QTest::newRow("node far right and below") << 0 << QVector2D(3e9f, -3e9f) << largestInt << lowestInt;
}

void SceneMovementTest::boundsHoldLargestNumbers()
{
    QFETCH(int, index);
    QFETCH(QVector2D, position);
    QFETCH(int, left);
    QFETCH(int, top);

    Scene scene;
    NodeData* one = addNode(scene, 1, position);
    NodeData* other = addNode(scene, 2, position);
    scene.createEdge(11, scene.createEdge(10, one, other), index);
    const QRect rect = scene.boundingRect(false);
    QCOMPARE(rect.left(), left);
    QCOMPARE(rect.top(), top);
}

void SceneMovementTest::boundsAreTakenSilently()
{
    Family family({0.0f, 0.0f}, {1000.0f, 300.0f});
    SignalLog log(family.scene);
    family.scene.boundingRect(false);
    family.scene.boundingRect(true);
    QCOMPARE(log.take(), QStringList());

    const Family untouched({0.0f, 0.0f}, {1000.0f, 300.0f});
    QCOMPARE(differences(family.scene, untouched.scene), QString());
}

void SceneMovementTest::marginGrowsWithEverySecondTrack_data()
{
    QTest::addColumn<int>("maxIndex");
    QTest::addColumn<int>("margin");

    QTest::newRow("no tracks") << 0 << 0;
    QTest::newRow("1") << 1 << 128;
    QTest::newRow("2") << 2 << 128;
    QTest::newRow("3") << 3 << 256;
    QTest::newRow("4") << 4 << 256;
    QTest::newRow("5") << 5 << 384;
    QTest::newRow("last that an int can hold") << 33554430 << 2147483520;
    QTest::newRow("first beyond int") << 33554431 << largestInt;
    QTest::newRow("largest") << largestInt << largestInt;
}

void SceneMovementTest::marginGrowsWithEverySecondTrack()
{
    QFETCH(int, maxIndex);
    QFETCH(int, margin);

    NodeData start;
    NodeData end;
    EdgeData edge(start, end);
    edge.maxIndex = maxIndex;
    QCOMPARE(edge.edgeMargin(), margin);
}

void SceneMovementTest::marginBelongsToBaseEdges()
{
    NodeData start;
    NodeData end;
    EdgeData base(start, end);
    EdgeData track(base, 7);
    track.maxIndex = 7;
    QCOMPARE(base.edgeMargin(), 512);
    QCOMPARE(track.edgeMargin(), 0);
    QCOMPARE(EdgeData(start, 7).edgeMargin(), 0);
}

void SceneMovementTest::alignsTheMiddleOfAllNodesToTheOrigin()
{
    Scene scene;
    NodeData* lower = addNode(scene, 1, {0.0f, 0.0f});
    NodeData* upper = addNode(scene, 2, {100.0f, 200.0f});
    const EdgeData* edge = scene.createEdge(10, lower, upper);

    scene.elementsAlignToCenter();
    QCOMPARE(lower->center(), QVector2D(-50.0f, -100.0f));
    QCOMPARE(upper->center(), QVector2D(50.0f, 100.0f));
    QCOMPARE(edge->startPos, QVector2D(-50.0f, -100.0f));
    QCOMPARE(edge->endPos, QVector2D(50.0f, 100.0f));
    QCOMPARE(edge->centerPos, QVector2D(0.0f, 0.0f));
    QCOMPARE(edge->lineMatrix, lineModel({-50.0f, -100.0f}, {50.0f, 100.0f}, 8, false));

    // What is centred stays.
    scene.elementsAlignToCenter();
    QCOMPARE(lower->center(), QVector2D(-50.0f, -100.0f));
    QCOMPARE(upper->center(), QVector2D(50.0f, 100.0f));
}

void SceneMovementTest::alignsByTheBoxAndNotByTheCrowd()
{
    Scene scene;
    const NodeData* crowd1 = addNode(scene, 1, {-1000.0f, -8.0f});
    const NodeData* crowd2 = addNode(scene, 2, {-999.0f, -7.0f});
    const NodeData* crowd3 = addNode(scene, 3, {-998.0f, -6.0f});
    const NodeData* loner = addNode(scene, 4, {-499.0f, 1.0f});

    // The middle lies at (-749.5, -3.5).
    scene.elementsAlignToCenter();
    QCOMPARE(crowd1->center(), QVector2D(-250.5f, -4.5f));
    QCOMPARE(crowd2->center(), QVector2D(-249.5f, -3.5f));
    QCOMPARE(crowd3->center(), QVector2D(-248.5f, -2.5f));
    QCOMPARE(loner->center(), QVector2D(250.5f, 4.5f));
}

void SceneMovementTest::alignsLockedAndHiddenNodesToo()
{
    Scene scene;
    NodeData* hidden = addNode(scene, 1, {0.0f, 0.0f});
    NodeData* locked = addNode(scene, 2, {100.0f, 200.0f});
    hidden->show = false;
    locked->lock = true;
    scene.elementsAlignToCenter();
    QCOMPARE(hidden->center(), QVector2D(-50.0f, -100.0f));
    QCOMPARE(locked->center(), QVector2D(50.0f, 100.0f));
}

void SceneMovementTest::alignsEdgesWithTheirNodes()
{
    Family family({100.0f, 200.0f}, {1100.0f, 1200.0f});
    family.scene.elementsAlignToCenter();
    const Family settled({-500.0f, -500.0f}, {500.0f, 500.0f});
    QCOMPARE(differences(family.scene, settled.scene), QString());
}

void SceneMovementTest::alignsSilently()
{
    Scene scene;
    SignalLog log(scene);
    scene.elementsAlignToCenter();
    const NodeData* node = addNode(scene, 1, {17.0f, -4.0f});
    scene.elementsAlignToCenter();
    QCOMPARE(node->center(), QVector2D(0.0f, 0.0f));
    QCOMPARE(log.take(), QStringList());
}

QTEST_APPLESS_MAIN(SceneMovementTest)

#include "SceneMovementTest.moc"
