#include "scene/Scene.h"

#include "scene/EdgeShape.h"
#include "scene/MirroredFlag.h"
#include "support/EdgeShapeBits.h"
#include "support/EmissionCounter.h"
#include "support/PointText.h"
#include "support/SceneInvariants.h"

#include <QSet>
#include <QSignalSpy>
#include <QtTest>

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <random>

using namespace NELK;

class SceneTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsInTheSmallestSizeWithTextOn();
    void startsEmpty();
    void startsInItsColors();
    void declaresItsSignalsInOrder();
    void sizeHasAFloor_data();
    void sizeHasAFloor();

    void aNewNodeIsInNoMirrorSet();
    void twoNodesMakeAPlainEdge();
    void oneNodeMakesARing();
    void aBaseEdgeMakesDerivedEdges();
    void aRingMakesRingsThatArePeers();
    void lookUpLeavesTheMapsShared();

    void noEdgeComesOfNull();
    void noEdgeComesOfUnknownNodes();
    void noEdgeComesOfADerivedEdge();
    void noEdgeComesOfAnUnknownBase();
    void onlyTheIdOfAForeignNodeIsCompared();
    void onlyTheIdOfAForeignBaseIsCompared();

    void aRemovedEdgeLeavesAllSetsAndLists_data();
    void aRemovedEdgeLeavesAllSetsAndLists();
    void removalOfTheLastTrackLowersMaxIndexByOne();
    void removalOfATrackBelowOneLeavesMaxIndex();
    void aRemovedNodeTakesItsEdgesAlong();
    void aRemovedNodeLeavesAllSets();
    void aRemovedHubLeavesItsNeighboursWithoutEdges();
    void aCircleOfNodesCanBeTakenDownNodeByNode();
    void removedRecordsAreFreed();

    void everyOrderOfRemovalLeavesTheRestAsItWas();
    void removalOfTheBaseChangesNoBitOfThePicture_data();
    void removalOfTheBaseChangesNoBitOfThePicture();
    void survivorsFollowTheirNodesAsIfTheBaseWereThere_data();
    void survivorsFollowTheirNodesAsIfTheBaseWereThere();
    void survivorsKeepTheirSettings();
    void survivorsOfARightAngledBaseKeepTheirTracks();
    void aRightAngledSurvivorFindsBackToItsTrack();
    void aSurvivorIsABaseEdgeItself();
    void aRightAngledSurvivorIsABaseEdgeItself();
    void survivorsKeepTheMarginOfTheirTrack();
    void theTrackOfASurvivorCountsWhenItsDerivedEdgesGo();

    void aNodeTakesThePlaceOfAnotherInAllSets();
    void edgesOfAReplacedNodeStay();
    void anEdgeTakesThePlaceOfAnotherInAllSets_data();
    void anEdgeTakesThePlaceOfAnotherInAllSets();
    void anEdgeOutOfReachGoesWithItsNodeAndSparesTheNewer();
    void edgesDerivedFromAReplacedBaseStandOnIt();
    void replacedRecordsAreFreedWithTheirScene_data();
    void replacedRecordsAreFreedWithTheirScene();

    void clearEmptiesAllSets();
    void clearKeepsSizeTextFlagsAndRenderLists();
    void aClearedSelectionIsNoChangeLater();
    void aHiddenSelectedNodeIsStillReported();
    void ownOperationsEmitNothing();

    void anyHistoryKeepsTheInvariants();
};

namespace
{

NodeData* addNode(Scene& scene, qint64 id, float x = 0.0f, float y = 0.0f)
{
    NodeData* node = scene.createNode(id);
    node->x = x;
    node->y = y;
    return node;
}

/// Switches on everything that has a set.
void mark(Scene& scene, NodeData* node)
{
    setMirrored(*node, &NodeData::select, true, scene.selectedNodes);
    setMirrored(*node, &NodeData::circleShow, true, scene.circleNodes);
    scene.labelNodes.insert(node->id, node);
    scene.setNumNodes.insert(node->id, node);
}

void mark(Scene& scene, EdgeData* edge)
{
    setMirrored(*edge, &EdgeData::select, true, scene.selectedEdges);
    setMirrored(*edge, &EdgeData::startArrowShow, true, scene.startArrowEdges);
    setMirrored(*edge, &EdgeData::endArrowShow, true, scene.endArrowEdges);
    scene.labelEdges.insert(edge->id, edge);
}

int entriesIn(const Scene& scene)
{
    return scene.nodes.size() + scene.circleNodes.size() + scene.selectedNodes.size() + scene.labelNodes.size() +
           scene.setNumNodes.size() + scene.edges.size() + scene.plainEdges.size() + scene.selectedEdges.size() +
           scene.startArrowEdges.size() + scene.endArrowEdges.size() + scene.labelEdges.size() + scene.ringEdges.size();
}

void moveNode(NodeData* node, QVector2D place)
{
    node->x = place.x();
    node->y = place.y();
    node->updateAttachedEdges();
}

enum EdgeKind
{
    Base,
    Derived,
    Ring
};

/// Two nodes, a base edge between them, three edges derived from it, and a ring.
struct Family
{
    static constexpr qint64 startId = 1, endId = 2;
    static constexpr qint64 baseId = 10, ringId = 14;
    static constexpr std::array<qint64, 3> derivedIds{11, 12, 13};

    explicit Family(QVector2D startPlace = {0.0f, 0.0f}, QVector2D endPlace = {1000.0f, 300.0f})
    {
        start = addNode(scene, startId, startPlace.x(), startPlace.y());
        end = addNode(scene, endId, endPlace.x(), endPlace.y());
        base = scene.createEdge(baseId, start, end);
        for (int track = 1; track <= 3; ++track)
            scene.createEdge(derivedIds[static_cast<size_t>(track - 1)], base, track);
        scene.createEdge(ringId, start, start);
    }

    QHash<qint64, QByteArray> pictures() const
    {
        QHash<qint64, QByteArray> result;
        for (const EdgeData* edge : scene.edges)
            result.insert(edge->id, shapeBits(*edge));
        return result;
    }

    Scene scene;
    NodeData* start;
    NodeData* end;
    EdgeData* base;
};

void addPlacesOfTwoNodes()
{
    QTest::addColumn<QVector2D>("start");
    QTest::addColumn<QVector2D>("end");
    QTest::newRow("level") << QVector2D(0.0f, 0.0f) << QVector2D(1000.0f, 0.0f);
    QTest::newRow("level, backwards") << QVector2D(1000.0f, 7.0f) << QVector2D(0.0f, 7.0f);
    QTest::newRow("upright") << QVector2D(3.0f, -500.0f) << QVector2D(3.0f, 500.0f);
    QTest::newRow("upright, downwards") << QVector2D(3.0f, 500.0f) << QVector2D(3.0f, -500.0f);
    QTest::newRow("oblique with fractions") << QVector2D(0.1f, 0.2f) << QVector2D(-777.7f, 333.3f);
    QTest::newRow("nearly level") << QVector2D(0.0f, 0.0f) << QVector2D(100000.0f, 0.3f);
    QTest::newRow("closer than their radii") << QVector2D(0.0f, 0.0f) << QVector2D(10.0f, -10.0f);
    QTest::newRow("at one place") << QVector2D(5.0f, 5.0f) << QVector2D(5.0f, 5.0f);
    QTest::newRow("far out") << QVector2D(1e7f, -1e7f) << QVector2D(-3e7f, 2e7f);
}

} // namespace

void SceneTest::startsInTheSmallestSizeWithTextOn()
{
    const Scene scene;
    QCOMPARE(scene.width, 8000);
    QCOMPARE(scene.height, 4800);
    QVERIFY(scene.aspect == 0.6f);
    QVERIFY(scene.nodeTextShow);
    QVERIFY(scene.edgeTextShow);
    QVERIFY(scene.reservedText.isNull());
}

void SceneTest::startsEmpty()
{
    const Scene scene;
    QCOMPARE(entriesIn(scene), 0);
    for (const InstanceList* list :
         {&scene.circleItems, &scene.ringItems, &scene.imageItems, &scene.eyeItems, &scene.textItems,
          &scene.selCircleItems, &scene.selRingItems, &scene.selImageItems, &scene.frameItems, &scene.selTextItems,
          &scene.edgeLineItems, &scene.edgeCurveItems, &scene.arrowItems, &scene.edgeRingItems, &scene.edgeTextItems}) {
        QVERIFY(list->records.empty());
        QCOMPARE(list->count, 0);
    }
}

void SceneTest::startsInItsColors()
{
    const Scene scene;
    QCOMPARE(scene.selectColor, (Rgb{0.196f, 0.557f, 1.0f}));
    QCOMPARE(scene.setNumColor, (Rgba{0.0f, 0.0f, 0.0f, 1.0f}));
    QCOMPARE(scene.setNumBackColor, (Rgba{1.0f, 1.0f, 0.0f, 1.0f}));
}

void SceneTest::declaresItsSignalsInOrder()
{
    const QMetaObject& type = Scene::staticMetaObject;
    QList<QByteArray> signatures;
    for (int i = type.methodOffset(); i < type.methodCount(); ++i) {
        QCOMPARE(type.method(i).methodType(), QMetaMethod::Signal);
        signatures << type.method(i).methodSignature();
    }
    QCOMPARE(signatures, (QList<QByteArray>{"signalSelectChanged(QList<qint64>,QList<qint64>)", "signalElementsMoved()",
                                            "signalChanged(QList<QRectF>)"}));
}

void SceneTest::sizeHasAFloor_data()
{
    constexpr int lastInt = std::numeric_limits<int>::max();
    QTest::addColumn<QSize>("asked");
    QTest::addColumn<QSize>("expected");
    QTest::addColumn<float>("aspect");
    QTest::newRow("above both") << QSize(10000, 6000) << QSize(10000, 6000) << 0.6f;
    QTest::newRow("too low") << QSize(9000, 100) << QSize(9000, 4800) << 0.53333336f;
    QTest::newRow("too narrow") << QSize(100, 9600) << QSize(8000, 9600) << 1.2f;
    QTest::newRow("at both") << QSize(8000, 4800) << QSize(8000, 4800) << 0.6f;
    QTest::newRow("one below") << QSize(7999, 4799) << QSize(8000, 4800) << 0.6f;
    QTest::newRow("one above") << QSize(8001, 4801) << QSize(8001, 4801) << 0.60005f;
    QTest::newRow("nothing") << QSize(0, 0) << QSize(8000, 4800) << 0.6f;
    QTest::newRow("negative") << QSize(-9000, -9000) << QSize(8000, 4800) << 0.6f;
    QTest::newRow("largest") << QSize(lastInt, lastInt) << QSize(lastInt, lastInt) << 1.0f;
}

void SceneTest::sizeHasAFloor()
{
    QFETCH(QSize, asked);
    QFETCH(QSize, expected);
    QFETCH(float, aspect);
    Scene scene;
    scene.setSize(20000, 20000);
    scene.setSize(asked.width(), asked.height());
    QCOMPARE(QSize(scene.width, scene.height), expected);
    QCOMPARE(scene.aspect, aspect);
    QVERIFY(scene.aspect == static_cast<float>(expected.height()) / static_cast<float>(expected.width()));
}

void SceneTest::aNewNodeIsInNoMirrorSet()
{
    Scene scene;
    NodeData* node = scene.createNode(-5);
    QVERIFY(node);
    QCOMPARE(node->id, qint64(-5));
    QCOMPARE(node->center(), QVector2D(0.0f, 0.0f));
    QCOMPARE(scene.getNode(-5), node);
    QCOMPARE(entriesIn(scene), 1);
}

void SceneTest::twoNodesMakeAPlainEdge()
{
    Scene scene;
    NodeData* start = addNode(scene, 1);
    NodeData* end = addNode(scene, 2);
    EdgeData* edge = scene.createEdge(1, start, end); // ids of nodes and edges do not meet
    QVERIFY(edge);
    QCOMPARE(edge->id, qint64(1));
    QVERIFY(!edge->ring);
    QVERIFY(!edge->baseEdge);
    QCOMPARE(edge->index, 0);
    QCOMPARE(scene.getEdge(1), edge);
    QCOMPARE(scene.plainEdges, (Scene::EdgeSet{{1, edge}}));
    QCOMPARE(entriesIn(scene), 4);
    QCOMPARE(brokenInvariant(scene), QString());
}

void SceneTest::oneNodeMakesARing()
{
    Scene scene;
    NodeData* node = addNode(scene, 1);
    EdgeData* ring = scene.createEdge(7, node, node);
    QVERIFY(ring);
    QVERIFY(ring->ring);
    QCOMPARE(ring->index, 0);
    QCOMPARE(scene.getEdge(7), ring);
    QCOMPARE(scene.ringEdges, (Scene::EdgeSet{{7, ring}}));
    QCOMPARE(entriesIn(scene), 3);
    QCOMPARE(brokenInvariant(scene), QString());
}

void SceneTest::aBaseEdgeMakesDerivedEdges()
{
    Scene scene;
    EdgeData* base = scene.createEdge(1, addNode(scene, 1), addNode(scene, 2));
    EdgeData* derived = scene.createEdge(2, base, 4);
    EdgeData* onTheSameTrack = scene.createEdge(3, base, 4);
    QVERIFY(derived && onTheSameTrack && derived != onTheSameTrack);
    QCOMPARE(derived->id, qint64(2));
    QCOMPARE(derived->baseEdge, base);
    QCOMPARE(derived->index, 4);
    QCOMPARE(onTheSameTrack->index, 4);
    QCOMPARE(base->maxIndex, 4);
    QCOMPARE(scene.plainEdges.size(), 3);
    QVERIFY(scene.ringEdges.isEmpty());
    QCOMPARE(brokenInvariant(scene), QString());
}

void SceneTest::aRingMakesRingsThatArePeers()
{
    Scene scene;
    NodeData* node = addNode(scene, 1);
    EdgeData* first = scene.createEdge(1, node, node);
    EdgeData* second = scene.createEdge(2, first, 2);
    QVERIFY(second && second->ring && !second->baseEdge);
    EdgeData* third = scene.createEdge(3, second, 5);
    QVERIFY(third && third->ring && !third->baseEdge);
    QCOMPARE(second->index, 2);
    QCOMPARE(third->index, 5);
    QCOMPARE(third->startNode, node);
    QCOMPARE(first->maxIndex, 0);
    QCOMPARE(second->maxIndex, 0);
    QCOMPARE(scene.ringEdges.size(), 3);
    QVERIFY(scene.plainEdges.isEmpty());
    QCOMPARE(brokenInvariant(scene), QString());
}

void SceneTest::lookUpLeavesTheMapsShared()
{
    Family family;
    const Scene::NodeSet nodesBefore = family.scene.nodes;
    const Scene::EdgeSet edgesBefore = family.scene.edges;
    QCOMPARE(family.scene.getNode(Family::startId), family.start);
    QCOMPARE(family.scene.getEdge(Family::baseId), family.base);
    QVERIFY(!family.scene.getNode(99));
    QVERIFY(!family.scene.getEdge(99));
    QVERIFY(family.scene.nodes.isSharedWith(nodesBefore));
    QVERIFY(family.scene.edges.isSharedWith(edgesBefore));
}

void SceneTest::noEdgeComesOfNull()
{
    Scene scene;
    NodeData* node = addNode(scene, 1);
    NodeData* noNode = nullptr;
    EdgeData* noEdge = nullptr;
    QVERIFY(!scene.createEdge(7, node, noNode));
    QVERIFY(!scene.createEdge(7, noNode, node));
    QVERIFY(!scene.createEdge(7, noNode, noNode));
    QVERIFY(!scene.createEdge(7, noEdge, 1));
    QCOMPARE(entriesIn(scene), 1);
    QVERIFY(node->outEdges.isEmpty() && node->inEdges.isEmpty());
}

void SceneTest::noEdgeComesOfUnknownNodes()
{
    Scene scene;
    Scene other;
    NodeData* node = addNode(scene, 1);
    NodeData* unknown = addNode(other, 2);
    QVERIFY(!scene.createEdge(7, node, unknown));
    QVERIFY(!scene.createEdge(7, unknown, node));
    QVERIFY(!scene.createEdge(7, unknown, unknown));
    QCOMPARE(entriesIn(scene), 1);
    QVERIFY(node->outEdges.isEmpty() && node->inEdges.isEmpty());
    QVERIFY(unknown->outEdges.isEmpty() && unknown->inEdges.isEmpty());
}

void SceneTest::noEdgeComesOfADerivedEdge()
{
    Family family;
    EdgeData* derived = family.scene.getEdge(Family::derivedIds[0]);
    QVERIFY(!family.scene.createEdge(20, derived, 4));
    QCOMPARE(family.scene.edges.size(), 5);
    QCOMPARE(family.start->outEdges.size(), 5);
    QCOMPARE(derived->maxIndex, 0);
    QCOMPARE(family.base->maxIndex, 3);
}

void SceneTest::noEdgeComesOfAnUnknownBase()
{
    Family elsewhere;
    EdgeData* ringElsewhere = elsewhere.scene.getEdge(Family::ringId);
    Scene scene;
    NodeData* start = addNode(scene, Family::startId);
    NodeData* end = addNode(scene, Family::endId);
    QVERIFY(!scene.createEdge(20, elsewhere.base, 4));
    QVERIFY(!scene.createEdge(20, ringElsewhere, 4));
    // For a ring the id must be that of a ring.
    scene.createEdge(Family::ringId, start, end);
    QVERIFY(!scene.createEdge(20, ringElsewhere, 4));
    QCOMPARE(scene.edges.size(), 1);
    QCOMPARE(elsewhere.base->maxIndex, 3);
    QCOMPARE(elsewhere.start->outEdges.size(), 5);
}

void SceneTest::onlyTheIdOfAForeignNodeIsCompared()
{
    Scene scene;
    Scene other;
    NodeData* node = addNode(scene, 1);
    NodeData* here = addNode(scene, 2);
    NodeData* foreign = addNode(other, 2);
    const EdgeData* edge = scene.createEdge(7, node, foreign);
    QVERIFY(edge);
    QCOMPARE(edge->endNode, foreign);
    QCOMPARE(foreign->inEdges.size(), 1);
    QVERIFY(here->inEdges.isEmpty());
    // The same id in two records makes no ring.
    const EdgeData* between = scene.createEdge(8, here, foreign);
    QVERIFY(between);
    QVERIFY(!between->ring);
}

void SceneTest::onlyTheIdOfAForeignBaseIsCompared()
{
    Family elsewhere;
    EdgeData* ringElsewhere = elsewhere.scene.getEdge(Family::ringId);
    Scene scene;
    NodeData* node = addNode(scene, 1);
    scene.createEdge(Family::baseId, node, node);
    scene.createEdge(Family::ringId, node, node);
    const EdgeData* derived = scene.createEdge(20, elsewhere.base, 4);
    QVERIFY(derived);
    QCOMPARE(derived->baseEdge, elsewhere.base);
    const EdgeData* ring = scene.createEdge(21, ringElsewhere, 4);
    QVERIFY(ring);
    QCOMPARE(ring->startNode, elsewhere.start);
}

void SceneTest::aRemovedEdgeLeavesAllSetsAndLists_data()
{
    QTest::addColumn<qint64>("id");
    QTest::addColumn<bool>("marked");
    for (const qint64 id : {Family::baseId, Family::derivedIds[1], Family::ringId}) {
        QTest::addRow("%lld", id) << id << false;
        QTest::addRow("%lld with all features", id) << id << true;
    }
}

void SceneTest::aRemovedEdgeLeavesAllSetsAndLists()
{
    QFETCH(qint64, id);
    QFETCH(bool, marked);
    Family family;
    const int entriesBefore = entriesIn(family.scene);
    EdgeData* edge = family.scene.getEdge(id);
    if (marked)
        mark(family.scene, edge);
    else
        family.scene.labelEdges.insert(id, edge); // text has no flag in the record
    family.scene.removeEdge(id);

    QVERIFY(!family.scene.getEdge(id));
    QVERIFY(!family.start->outEdges.contains(edge));
    QVERIFY(!family.end->inEdges.contains(edge));
    QCOMPARE(entriesIn(family.scene), entriesBefore - 2); // the map of all and the set of its kind
    QCOMPARE(brokenInvariant(family.scene), QString());
}

void SceneTest::removalOfTheLastTrackLowersMaxIndexByOne()
{
    Scene scene;
    EdgeData* base = scene.createEdge(1, addNode(scene, 1), addNode(scene, 2));
    for (const int track : {1, 9, 3, 8, 9})
        scene.createEdge(10 + scene.edges.size(), base, track);
    QCOMPARE(base->maxIndex, 9);
    scene.removeEdge(11); // track 1
    QCOMPARE(base->maxIndex, 9);
    scene.removeEdge(12); // track 9
    QCOMPARE(base->maxIndex, 8);
    scene.removeEdge(15); // the other on track 9
    QCOMPARE(base->maxIndex, 8);
    scene.removeEdge(14); // track 8; the next lower is 3
    QCOMPARE(base->maxIndex, 7);
    scene.removeEdge(13); // track 3
    QCOMPARE(base->maxIndex, 7);
}

void SceneTest::removalOfATrackBelowOneLeavesMaxIndex()
{
    Scene scene;
    EdgeData* base = scene.createEdge(1, addNode(scene, 1), addNode(scene, 2));
    scene.createEdge(2, base, 0);
    scene.createEdge(3, base, -3);
    QCOMPARE(base->maxIndex, 0);
    scene.removeEdge(2);
    QCOMPARE(base->maxIndex, 0);
    // It stands on track 1, which is the largest number now.
    scene.createEdge(4, base, 1);
    scene.removeEdge(3);
    QCOMPARE(base->maxIndex, 0);
}

void SceneTest::aRemovedNodeTakesItsEdgesAlong()
{
    Family family;
    EdgeData* back = family.scene.createEdge(30, family.end, family.start);
    NodeData* third = addNode(family.scene, 3);
    EdgeData* elsewhere = family.scene.createEdge(31, family.end, third);
    family.scene.createEdge(32, back, 1);
    for (EdgeData* edge : qAsConst(family.scene.edges))
        mark(family.scene, edge);
    QCOMPARE(family.scene.edges.size(), 8);

    family.scene.removeNode(Family::startId);
    const Scene::EdgeSet left{{31, elsewhere}};
    QCOMPARE(family.scene.edges, left);
    QCOMPARE(family.scene.plainEdges, left);
    QCOMPARE(family.scene.selectedEdges, left);
    QCOMPARE(family.scene.startArrowEdges, left);
    QCOMPARE(family.scene.endArrowEdges, left);
    QCOMPARE(family.scene.labelEdges, left);
    QVERIFY(family.scene.ringEdges.isEmpty());
    QCOMPARE(family.end->outEdges, QList<EdgeData*>{elsewhere});
    QVERIFY(family.end->inEdges.isEmpty());
    QCOMPARE(brokenInvariant(family.scene), QString());
}

void SceneTest::aRemovedNodeLeavesAllSets()
{
    Scene scene;
    NodeData* plain = addNode(scene, 1);
    scene.labelNodes.insert(1, plain); // text has no flag in the record
    scene.setNumNodes.insert(1, plain);
    mark(scene, addNode(scene, 2));
    addNode(scene, 3);
    scene.removeNode(1);
    QCOMPARE(brokenInvariant(scene), QString());
    scene.removeNode(2);
    QCOMPARE(brokenInvariant(scene), QString());
    QCOMPARE(entriesIn(scene), 1);
    QVERIFY(scene.getNode(3));
}

void SceneTest::aRemovedHubLeavesItsNeighboursWithoutEdges()
{
    constexpr int neighbours = 50;
    Scene scene;
    NodeData* hub = addNode(scene, 1000);
    qint64 id = 0;
    for (qint64 i = 0; i < neighbours; ++i) {
        NodeData* neighbour = addNode(scene, i, static_cast<float>(i) * 300.0f, 700.0f);
        EdgeData* away = scene.createEdge(++id, hub, neighbour);
        EdgeData* back = scene.createEdge(++id, neighbour, hub);
        scene.createEdge(++id, away, 1);
        scene.createEdge(++id, back, 2);
        EdgeData* ring = scene.createEdge(++id, hub, hub);
        scene.createEdge(++id, ring, static_cast<int>(i));
    }
    scene.removeEdge(1); // the first family without its base
    QCOMPARE(scene.edges.size(), 6 * neighbours - 1);

    scene.removeNode(1000);
    QCOMPARE(scene.nodes.size(), neighbours);
    QCOMPARE(entriesIn(scene), neighbours);
    for (const NodeData* neighbour : qAsConst(scene.nodes))
        QVERIFY(neighbour->outEdges.isEmpty() && neighbour->inEdges.isEmpty());
}

void SceneTest::aCircleOfNodesCanBeTakenDownNodeByNode()
{
    constexpr int count = 12;
    Scene scene;
    for (qint64 i = 0; i < count; ++i)
        addNode(scene, i);
    for (qint64 i = 0; i < count; ++i) {
        EdgeData* base = scene.createEdge(i, scene.getNode(i), scene.getNode((i + 1) % count));
        scene.createEdge(100 + i, base, 1);
    }
    // Every third one first, so that nodes with two, one and no neighbour come in turn.
    int edgesLeft = 2 * count;
    const std::array<int, 3> edgesOfANode{4, 2, 0};
    for (qint64 first = 0; first < 3; ++first) {
        for (qint64 id = first; id < count; id += 3) {
            edgesLeft -= edgesOfANode[static_cast<size_t>(first)];
            scene.removeNode(id);
            QCOMPARE(scene.edges.size(), edgesLeft);
            QCOMPARE(brokenInvariant(scene), QString());
        }
    }
    QCOMPARE(entriesIn(scene), 0);
}

void SceneTest::removedRecordsAreFreed()
{
    // A value shared with a record tells when the record is gone.
    const QString sharedWithNode(10, QLatin1Char('n'));
    const QList<LabelLine> sharedWithEdge{LabelLine()};
    const QList<LabelLine> sharedWithAttachedEdge{LabelLine()};
    Family family;
    family.start->imageName = sharedWithNode;
    family.scene.getEdge(Family::derivedIds[0])->labelLines = sharedWithEdge;
    family.scene.getEdge(Family::ringId)->labelLines = sharedWithAttachedEdge;
    QVERIFY(!sharedWithNode.isDetached() && !sharedWithEdge.isDetached() && !sharedWithAttachedEdge.isDetached());

    family.scene.removeEdge(Family::derivedIds[0]);
    QVERIFY(sharedWithEdge.isDetached());
    family.scene.removeNode(Family::startId);
    QVERIFY(sharedWithNode.isDetached());
    QVERIFY(sharedWithAttachedEdge.isDetached());
}

namespace
{

/// Removes the first `removals` edges of `order` one by one and then a node with what is left.
void removeInOrder(const std::array<qint64, 5>& order, size_t removals, qint64 lastNode)
{
    Family family;
    QHash<qint64, QByteArray> expected = family.pictures();
    for (size_t i = 0; i < removals; ++i) {
        family.scene.removeEdge(order[i]);
        expected.remove(order[i]);
        QCOMPARE(family.pictures(), expected);
        QCOMPARE(brokenInvariant(family.scene), QString());
    }

    family.scene.removeNode(lastNode);
    for (const qint64 id : order) {
        if (id != Family::ringId || lastNode == Family::startId)
            expected.remove(id);
    }
    QCOMPARE(family.pictures(), expected);
    QCOMPARE(brokenInvariant(family.scene), QString());
}

} // namespace

void SceneTest::everyOrderOfRemovalLeavesTheRestAsItWas()
{
    std::array<qint64, 5> order{10, 11, 12, 13, 14};
    int orders = 0;
    do {
        ++orders;
        for (size_t removals = 0; removals <= order.size(); ++removals) {
            for (const qint64 lastNode : {Family::startId, Family::endId}) {
                removeInOrder(order, removals, lastNode);
                if (QTest::currentTestFailed())
                    return;
            }
        }
    } while (std::next_permutation(order.begin(), order.end()));
    QCOMPARE(orders, 120);
}

void SceneTest::removalOfTheBaseChangesNoBitOfThePicture_data()
{
    addPlacesOfTwoNodes();
}

void SceneTest::removalOfTheBaseChangesNoBitOfThePicture()
{
    QFETCH(QVector2D, start);
    QFETCH(QVector2D, end);
    Family family(start, end);
    moveNode(family.end, end + QVector2D(1.5f, -2.5f)); // not only as created
    moveNode(family.end, end);
    QHash<qint64, QByteArray> expected = family.pictures();
    expected.remove(Family::baseId);
    const LineFrame frame = family.base->frame;

    family.scene.removeEdge(Family::baseId);
    QCOMPARE(family.pictures(), expected);
    for (const qint64 id : Family::derivedIds) {
        const EdgeData& survivor = *family.scene.getEdge(id);
        QVERIFY(!survivor.baseEdge);
        QCOMPARE(survivor.frame.lineStart, frame.lineStart);
        QCOMPARE(survivor.frame.lineEnd, frame.lineEnd);
        QVERIFY(survivor.frame.lineAngle == frame.lineAngle);
    }
}

void SceneTest::survivorsFollowTheirNodesAsIfTheBaseWereThere_data()
{
    addPlacesOfTwoNodes();
}

void SceneTest::survivorsFollowTheirNodesAsIfTheBaseWereThere()
{
    QFETCH(QVector2D, start);
    QFETCH(QVector2D, end);
    Family whole;
    Family bereaved;
    bereaved.scene.removeEdge(Family::baseId);
    for (const Family* family : {&whole, &bereaved}) {
        moveNode(family->start, start);
        moveNode(family->end, end);
    }
    for (const qint64 id : Family::derivedIds)
        QCOMPARE(shapeBits(*bereaved.scene.getEdge(id)), shapeBits(*whole.scene.getEdge(id)));

    for (const Family* family : {&whole, &bereaved}) {
        EdgeData& derived = *family->scene.getEdge(Family::derivedIds[2]);
        derived.zoomSpan = -1.5f;
        rebuildShape(derived);
    }
    QCOMPARE(shapeBits(*bereaved.scene.getEdge(Family::derivedIds[2])),
             shapeBits(*whole.scene.getEdge(Family::derivedIds[2])));
}

void SceneTest::survivorsKeepTheirSettings()
{
    Family family;
    EdgeData& derived = *family.scene.getEdge(Family::derivedIds[1]);
    derived.zoomSpan = -2.5f;
    derived.edgeWidth = 20;
    derived.show = false;
    rebuildShape(derived);
    mark(family.scene, &derived);
    const QByteArray picture = shapeBits(derived);

    family.scene.removeEdge(Family::baseId);
    QCOMPARE(family.scene.getEdge(Family::derivedIds[1]), &derived);
    QCOMPARE(shapeBits(derived), picture);
    QCOMPARE(derived.index, 2);
    QVERIFY(derived.zoomSpan == -2.5f);
    QCOMPARE(derived.edgeWidth, 20);
    QVERIFY(!derived.show);
    QVERIFY(derived.select && derived.startArrowShow && derived.endArrowShow);
    QVERIFY(family.scene.labelEdges.contains(Family::derivedIds[1]));
    QCOMPARE(brokenInvariant(family.scene), QString());
}

void SceneTest::survivorsOfARightAngledBaseKeepTheirTracks()
{
    Family family;
    family.base->rightAngle = true;
    rebuildShape(*family.base);
    QHash<qint64, QByteArray> expected = family.pictures();
    expected.remove(Family::baseId);
    family.scene.removeEdge(Family::baseId);
    QCOMPARE(family.pictures(), expected);
}

void SceneTest::aRightAngledSurvivorFindsBackToItsTrack()
{
    Family family;
    EdgeData& derived = *family.scene.getEdge(Family::derivedIds[0]);
    const QVector2D onTheTrack = derived.curveStartPos;
    derived.rightAngle = true;
    rebuildShape(derived);
    const QByteArray rightAngled = shapeBits(derived);

    family.scene.removeEdge(Family::baseId);
    QCOMPARE(shapeBits(derived), rightAngled);
    derived.rightAngle = false;
    rebuildShape(derived);
    QCOMPARE(derived.curveStartPos, onTheTrack);
}

void SceneTest::aSurvivorIsABaseEdgeItself()
{
    Family family;
    const QByteArray secondTrack = shapeBits(*family.scene.getEdge(Family::derivedIds[1]));
    family.scene.removeEdge(Family::baseId);
    EdgeData* survivor = family.scene.getEdge(Family::derivedIds[0]);

    // Tracks are counted from the line between the nodes still, and not from the survivor.
    EdgeData* derived = family.scene.createEdge(20, survivor, 2);
    QVERIFY(derived);
    QCOMPARE(derived->baseEdge, survivor);
    QCOMPARE(shapeBits(*derived), secondTrack);

    family.scene.removeEdge(Family::derivedIds[0]);
    QVERIFY(!derived->baseEdge);
    QCOMPARE(shapeBits(*derived), secondTrack);
    QCOMPARE(brokenInvariant(family.scene), QString());
}

void SceneTest::aRightAngledSurvivorIsABaseEdgeItself()
{
    Family family;
    const QByteArray secondTrack = shapeBits(*family.scene.getEdge(Family::derivedIds[1]));
    EdgeData* survivor = family.scene.getEdge(Family::derivedIds[0]);
    survivor->rightAngle = true;
    rebuildShape(*survivor);
    family.scene.removeEdge(Family::baseId);
    EdgeData* derived = family.scene.createEdge(20, survivor, 2);
    QVERIFY(derived);
    QCOMPARE(shapeBits(*derived), secondTrack);
}

void SceneTest::survivorsKeepTheMarginOfTheirTrack()
{
    Family family({0.0f, 0.0f}, {1000.0f, 0.0f});
    const QRect withTrackThree(-256, 256, 1512, 512);
    const QRect withTrackTwo(-128, 128, 1256, 256);
    QCOMPARE(family.scene.boundingRect(false), withTrackThree);
    family.scene.removeEdge(Family::baseId);
    QCOMPARE(family.scene.boundingRect(false), withTrackThree);
    family.scene.removeEdge(Family::derivedIds[2]);
    QCOMPARE(family.scene.boundingRect(false), withTrackTwo);
}

void SceneTest::theTrackOfASurvivorCountsWhenItsDerivedEdgesGo()
{
    Family family;
    EdgeData* survivor = family.scene.getEdge(Family::derivedIds[2]); // on track 3
    family.scene.removeEdge(Family::baseId);
    QCOMPARE(survivor->maxIndex, 3);
    family.scene.createEdge(20, survivor, 3);
    family.scene.createEdge(21, survivor, 5);
    QCOMPARE(survivor->maxIndex, 5);
    family.scene.removeEdge(21);
    QCOMPARE(survivor->maxIndex, 4);
    family.scene.createEdge(22, survivor, 4);
    family.scene.removeEdge(22);
    QCOMPARE(survivor->maxIndex, 3);
    family.scene.removeEdge(20);
    QCOMPARE(survivor->maxIndex, 3);
    QCOMPARE(survivor->edgeMargin(), 256);
}

void SceneTest::aNodeTakesThePlaceOfAnotherInAllSets()
{
    Scene scene;
    NodeData* older = addNode(scene, 1);
    mark(scene, older);
    NodeData* newer = scene.createNode(1);
    QVERIFY(newer != older);
    QCOMPARE(scene.getNode(1), newer);
    QVERIFY(!newer->select && !newer->circleShow);
    QCOMPARE(entriesIn(scene), 1);

    mark(scene, newer);
    QCOMPARE(brokenInvariant(scene), QString());
    scene.removeNode(1);
    QCOMPARE(entriesIn(scene), 0);
}

void SceneTest::edgesOfAReplacedNodeStay()
{
    Family family;
    const QHash<qint64, QByteArray> expected = family.pictures();
    NodeData* newer = family.scene.createNode(Family::startId);
    QVERIFY(newer->outEdges.isEmpty());
    moveNode(newer, {-5000.0f, 70.0f});
    QCOMPARE(family.pictures(), expected);
    QCOMPARE(family.base->startNode, family.start);
    QCOMPARE(brokenInvariant(family.scene), QString());

    family.scene.removeNode(Family::startId);
    QCOMPARE(family.pictures(), expected);
    family.scene.removeEdge(Family::baseId);
    QCOMPARE(family.scene.edges.size(), 4);
    family.scene.removeNode(Family::endId);
    QCOMPARE(family.scene.edges.keys(), QList<qint64>{Family::ringId});
    QCOMPARE(brokenInvariant(family.scene), QString());
    family.scene.removeEdge(Family::ringId);
    QCOMPARE(entriesIn(family.scene), 0);
}

namespace
{

constexpr qint64 takenId = 10;

/// An edge with the id `takenId` between the two nodes of `family`.
EdgeData* createOfKind(Family& family, EdgeKind kind)
{
    switch (kind) {
    case Base:
        return family.scene.createEdge(takenId, family.end, family.start);
    case Derived:
        return family.scene.createEdge(takenId, family.base, 7);
    case Ring:
        return family.scene.createEdge(takenId, family.end, family.end);
    }
    Q_UNREACHABLE();
}

} // namespace

void SceneTest::anEdgeTakesThePlaceOfAnotherInAllSets_data()
{
    const QVector<QPair<EdgeKind, const char*>> kinds{{Base, "base"}, {Derived, "derived"}, {Ring, "ring"}};
    QTest::addColumn<int>("older");
    QTest::addColumn<int>("newer");
    for (const auto& older : kinds) {
        for (const auto& newer : kinds)
            QTest::addRow("%s after %s", newer.second, older.second) << int(older.first) << int(newer.first);
    }
}

void SceneTest::anEdgeTakesThePlaceOfAnotherInAllSets()
{
    QFETCH(int, older);
    QFETCH(int, newer);
    Family family;
    // The first replacement is of the family's base edge, which stays what the others derive from.
    EdgeData* first = createOfKind(family, EdgeKind(older));
    mark(family.scene, first);
    EdgeData* second = createOfKind(family, EdgeKind(newer));
    QVERIFY(second && second != first);
    QCOMPARE(family.scene.getEdge(takenId), second);
    QVERIFY(!second->select && !second->startArrowShow && !second->endArrowShow);
    QVERIFY(family.scene.labelEdges.isEmpty());
    QCOMPARE(brokenInvariant(family.scene), QString());

    mark(family.scene, second);
    QCOMPARE(brokenInvariant(family.scene), QString());
    family.scene.removeEdge(takenId);
    QVERIFY(!family.scene.getEdge(takenId));
    QCOMPARE(brokenInvariant(family.scene), QString());

    // The edges out of reach go with their nodes.
    family.scene.removeNode(Family::endId);
    QCOMPARE(family.start->outEdges.size(), 1);
    family.scene.removeNode(Family::startId);
    QCOMPARE(entriesIn(family.scene), 0);
}

void SceneTest::anEdgeOutOfReachGoesWithItsNodeAndSparesTheNewer()
{
    Family family;
    NodeData* elsewhere = addNode(family.scene, 3);
    EdgeData* newer = family.scene.createEdge(Family::baseId, elsewhere, elsewhere);
    mark(family.scene, newer);
    family.scene.removeNode(Family::startId);
    const Scene::EdgeSet left{{Family::baseId, newer}};
    QCOMPARE(family.scene.edges, left);
    QCOMPARE(family.scene.ringEdges, left);
    QCOMPARE(family.scene.selectedEdges, left);
    QCOMPARE(family.scene.labelEdges, left);
    QVERIFY(family.scene.plainEdges.isEmpty());
    QVERIFY(family.end->inEdges.isEmpty());
    QCOMPARE(brokenInvariant(family.scene), QString());
}

void SceneTest::edgesDerivedFromAReplacedBaseStandOnIt()
{
    Family family;
    Family untouched;
    EdgeData* newer = family.scene.createEdge(Family::baseId, family.start, family.end);
    QCOMPARE(newer->maxIndex, 0);
    family.scene.removeEdge(Family::baseId);
    QCOMPARE(brokenInvariant(family.scene), QString());
    for (const Family* each : {&family, &untouched})
        moveNode(each->end, {-70.0f, 900.0f});
    for (const qint64 id : Family::derivedIds) {
        QCOMPARE(family.scene.getEdge(id)->baseEdge, family.base);
        QCOMPARE(shapeBits(*family.scene.getEdge(id)), shapeBits(*untouched.scene.getEdge(id)));
    }

    family.scene.removeEdge(Family::derivedIds[2]);
    QCOMPARE(family.base->maxIndex, 2);
    family.scene.removeNode(Family::endId);
    QCOMPARE(family.scene.edges.keys(), QList<qint64>{Family::ringId});
    QCOMPARE(family.start->outEdges.size(), 1);
}

void SceneTest::replacedRecordsAreFreedWithTheirScene_data()
{
    QTest::addColumn<bool>("byClear");
    QTest::newRow("by clear") << true;
    QTest::newRow("by destruction") << false;
}

void SceneTest::replacedRecordsAreFreedWithTheirScene()
{
    QFETCH(bool, byClear);
    const QString sharedWithNode(10, QLatin1Char('n'));
    const QList<LabelLine> sharedWithEdge{LabelLine()};
    auto family = std::make_unique<Family>();
    family->start->imageName = sharedWithNode;
    family->base->labelLines = sharedWithEdge;
    family->scene.createNode(Family::startId);
    family->scene.createEdge(Family::baseId, family->end, family->end);
    QVERIFY(!sharedWithNode.isDetached() && !sharedWithEdge.isDetached());

    if (byClear)
        family->scene.clear();
    else
        family.reset();
    QVERIFY(sharedWithNode.isDetached());
    QVERIFY(sharedWithEdge.isDetached());
}

void SceneTest::clearEmptiesAllSets()
{
    const QString sharedWithNode(10, QLatin1Char('n'));
    const QList<LabelLine> sharedWithEdge{LabelLine()};
    Family family;
    for (NodeData* node : qAsConst(family.scene.nodes))
        mark(family.scene, node);
    for (EdgeData* edge : qAsConst(family.scene.edges))
        mark(family.scene, edge);
    family.start->imageName = sharedWithNode;
    family.base->labelLines = sharedWithEdge;

    family.scene.clear();
    QCOMPARE(entriesIn(family.scene), 0);
    QVERIFY(sharedWithNode.isDetached());
    QVERIFY(sharedWithEdge.isDetached());

    NodeData* node = family.scene.createNode(Family::startId);
    QVERIFY(family.scene.createEdge(Family::baseId, node, node));
    QCOMPARE(brokenInvariant(family.scene), QString());
}

void SceneTest::clearKeepsSizeTextFlagsAndRenderLists()
{
    Family family;
    Scene& scene = family.scene;
    scene.setSize(10000, 6000);
    scene.nodeTextShow = false;
    scene.edgeTextShow = false;
    scene.circleItems.records.resize(3);
    scene.circleItems.count = 3;
    scene.edgeTextItems.records.resize(2);
    scene.edgeTextItems.count = 2;

    scene.clear();
    QCOMPARE(QSize(scene.width, scene.height), QSize(10000, 6000));
    QVERIFY(!scene.nodeTextShow && !scene.edgeTextShow);
    QCOMPARE(scene.circleItems.records.size(), size_t(3));
    QCOMPARE(scene.circleItems.count, 3);
    QCOMPARE(scene.edgeTextItems.records.size(), size_t(2));
    QCOMPARE(scene.edgeTextItems.count, 2);
}

void SceneTest::aClearedSelectionIsNoChangeLater()
{
    Family family;
    mark(family.scene, family.start);
    mark(family.scene, family.base);
    const EmissionCounter emissions(family.scene);
    family.scene.clear();
    QVERIFY(family.scene.selectedNodes.isEmpty());
    QVERIFY(family.scene.selectedEdges.isEmpty());

    addNode(family.scene, 1, 5000.0f, 0.0f);
    family.scene.selectInFrame({-100.0f, 100.0f}, {100.0f, -100.0f}, SELECT_REPLACE);
    QCOMPARE(emissions.count(), 0);
    family.scene.selectInFrame({4900.0f, 100.0f}, {5100.0f, -100.0f}, SELECT_REPLACE);
    QCOMPARE(emissions.count(), 2);
}

void SceneTest::aHiddenSelectedNodeIsStillReported()
{
    Scene scene;
    NodeData* hidden = addNode(scene, 1);
    addNode(scene, 2, 5000.0f, 0.0f);
    mark(scene, hidden);
    hidden->show = false;
    QCOMPARE(brokenInvariant(scene), QString());

    const QSignalSpy spy(&scene, &Scene::signalSelectChanged);
    scene.selectInFrame({4900.0f, 100.0f}, {5100.0f, -100.0f}, SELECT_REPLACE);
    QCOMPARE(spy.count(), 1);
    auto reported = spy.first().first().value<QList<qint64>>();
    std::sort(reported.begin(), reported.end());
    QCOMPARE(reported, (QList<qint64>{1, 2}));
}

void SceneTest::ownOperationsEmitNothing()
{
    auto scene = std::make_unique<Scene>();
    const EmissionCounter emissions(*scene);
    QCOMPARE(emissions.signalsWatched(), 3);
    NodeData* start = addNode(*scene, 1);
    NodeData* end = addNode(*scene, 2);
    EdgeData* base = scene->createEdge(1, start, end);
    scene->createEdge(2, base, 1);
    scene->createEdge(3, start, start);
    mark(*scene, start);
    mark(*scene, base);
    scene->createEdge(1, start, end);
    scene->createNode(2);
    scene->setSize(9000, 9000);
    scene->boundingRect(false);
    scene->elementsAlignToCenter();
    scene->removeEdge(2);
    scene->removeNode(1); // selected, with edges
    mark(*scene, scene->getNode(2));
    scene->clear();
    mark(*scene, addNode(*scene, 3));
    scene.reset();
    QCOMPARE(emissions.count(), 0);
}

namespace
{

/// Random changes to a scene, beside a plain account of which ids must be in it.
class History
{
public:
    explicit History(unsigned seed) : m_random(seed) {}

    void step()
    {
        switch (below(8)) {
        case 0:
            createNode();
            break;
        case 1:
        case 2:
            createEdge();
            break;
        case 3:
        case 4:
            deriveEdge();
            break;
        case 5:
            removeEdge();
            break;
        case 6:
            if (below(4) == 0)
                removeNode();
            break;
        default:
            change();
        }
    }

    Scene scene;
    QSet<qint64> nodeIds;
    QSet<qint64> edgeIds;

private:
    int below(int bound) { return static_cast<int>(m_random() % static_cast<unsigned>(bound)); }

    /// Sorted first: the order of a hash differs from run to run.
    qint64 anyOf(const QSet<qint64>& ids)
    {
        QList<qint64> sorted = ids.values();
        std::sort(sorted.begin(), sorted.end());
        return sorted[below(sorted.size())];
    }

    void createNode()
    {
        const qint64 id = below(8);
        moveNode(scene.createNode(id), {static_cast<float>(below(2000)), static_cast<float>(below(2000))});
        nodeIds.insert(id);
    }

    void createEdge()
    {
        if (nodeIds.isEmpty())
            return;
        const qint64 id = below(25);
        NodeData* start = scene.getNode(anyOf(nodeIds));
        QVERIFY(scene.createEdge(id, start, scene.getNode(anyOf(nodeIds))));
        edgeIds.insert(id);
    }

    void deriveEdge()
    {
        if (edgeIds.isEmpty())
            return;
        const qint64 id = below(25);
        EdgeData* base = scene.getEdge(anyOf(edgeIds));
        const bool refused = base->baseEdge != nullptr;
        QCOMPARE(scene.createEdge(id, base, below(6) - 1) == nullptr, refused);
        if (!refused)
            edgeIds.insert(id);
    }

    void removeEdge()
    {
        if (edgeIds.isEmpty())
            return;
        const qint64 id = anyOf(edgeIds);
        scene.removeEdge(id);
        edgeIds.remove(id);
    }

    void removeNode()
    {
        if (nodeIds.isEmpty())
            return;
        const qint64 id = anyOf(nodeIds);
        const NodeData* node = scene.getNode(id);
        for (const EdgeData* edge : qAsConst(scene.edges)) {
            if (edge->startNode == node || edge->endNode == node)
                edgeIds.remove(edge->id);
        }
        scene.removeNode(id);
        nodeIds.remove(id);
    }

    void change()
    {
        if (!nodeIds.isEmpty()) {
            NodeData* node = scene.getNode(anyOf(nodeIds));
            mark(scene, node);
            moveNode(node, {static_cast<float>(below(2000)), static_cast<float>(below(2000))});
        }
        if (!edgeIds.isEmpty())
            mark(scene, scene.getEdge(anyOf(edgeIds)));
    }

    std::mt19937 m_random;
};

QSet<qint64> keysOf(const QList<qint64>& keys)
{
    return {keys.begin(), keys.end()};
}

} // namespace

void SceneTest::anyHistoryKeepsTheInvariants()
{
    for (unsigned seed = 0; seed < 60; ++seed) {
        History history(seed);
        for (int i = 0; i < 300; ++i) {
            history.step();
            if (QTest::currentTestFailed())
                return;
            const QString broken = brokenInvariant(history.scene);
            QVERIFY2(broken.isEmpty(), qPrintable(QStringLiteral("%1, seed %2").arg(broken).arg(seed)));
            QCOMPARE(keysOf(history.scene.nodes.keys()), history.nodeIds);
            QCOMPARE(keysOf(history.scene.edges.keys()), history.edgeIds);
        }
    }
}

QTEST_APPLESS_MAIN(SceneTest)

#include "SceneTest.moc"
