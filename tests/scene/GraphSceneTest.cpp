#include "support/EmissionCounter.h"
#include "support/SceneInvariants.h"
#include "support/SceneOf.h"

#include <NELK/NELK>

#include <QSignalSpy>
#include <QTranslator>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <type_traits>

using namespace NELK;

static_assert(std::is_base_of_v<QObject, GraphScene>);
static_assert(std::has_virtual_destructor_v<GraphScene>);
static_assert(!std::is_copy_constructible_v<GraphScene> && !std::is_copy_assignable_v<GraphScene>);
static_assert(!std::is_move_constructible_v<GraphScene> && !std::is_move_assignable_v<GraphScene>);

namespace
{

using Ids = QList<qint64>;

/// Takes the signals of a scene down in words, in the order in which they come.
class Listener : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void selectChanged(const QList<qint64>& nodes, const QList<qint64>& edges)
    {
        heard << QStringLiteral("selected %1 nodes, %2 edges").arg(nodes.size()).arg(edges.size());
        nodeIds = nodes;
        edgeIds = edges;
    }
    void changed(const QList<QRectF>& region) { heard << QStringLiteral("changed %1").arg(region.size()); }
    void sizeChanged() { heard << QStringLiteral("size"); }

public:
    QStringList heard;
    Ids nodeIds;
    Ids edgeIds;
};

void connectInWords(const GraphScene& scene, const Listener& listener, Qt::ConnectionType type)
{
    QVERIFY(QObject::connect(&scene, SIGNAL(signalSelectChanged(const QList<qint64>&, const QList<qint64>&)), &listener,
                             SLOT(selectChanged(const QList<qint64>&, const QList<qint64>&)), type));
    QVERIFY(QObject::connect(&scene, SIGNAL(changed(const QList<QRectF>&)), &listener,
                             SLOT(changed(const QList<QRectF>&)), type));
    QVERIFY(QObject::connect(&scene, SIGNAL(signalSizeChanged()), &listener, SLOT(sizeChanged()), type));
}

void connectByPointer(const GraphScene& scene, const Listener& listener, Qt::ConnectionType type)
{
    QVERIFY(QObject::connect(&scene, &GraphScene::signalSelectChanged, &listener, &Listener::selectChanged, type));
    QVERIFY(QObject::connect(&scene, &GraphScene::changed, &listener, &Listener::changed, type));
    QVERIFY(QObject::connect(&scene, &GraphScene::signalSizeChanged, &listener, &Listener::sizeChanged, type));
}

/// What a click in a view does: selects what is at `point`, and nothing else.
void clickAt(const GraphScene& scene, QVector2D point)
{
    bool changed = false;
    sceneOf(scene).selectAtPoint(point, SELECT_REPLACE, &changed, 4);
    QVERIFY(changed);
}

Ids sorted(Ids ids)
{
    std::sort(ids.begin(), ids.end());
    return ids;
}

} // namespace

class GraphSceneTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // This one comes first, since a type that was registered once stays registered.
    void queuedConnectionsInWordsArrive();
    void queuedConnectionsByPointerArrive();
    void directConnectionsOfBothFormsArrive();
    void connectionsToFunctionsArrive();
    void spiesWorkOnAllSignals();

    void declaresItsSignalsInOrder();
    void hasNoParentAndItsOwnName();
    void translatesInItsOwnContext();

    void selectionsOfAViewAreForwardedInOrder();
    void dragsAreForwardedAsChanges();
    void sizeChangesAreToldAlways();
    void ownOperationsEmitNothing();

    void sizeHasAFloor_data();
    void sizeHasAFloor();
    void clearKeepsTheSize();
    void textFlagsAreStoredAndNothingElse();
    void boundingRectIsThatOfTheModel();
    void elementsAlignToCenterMovesNodesAndEdges();

    void aNodeWithItselfMakesARing();
    void aRingMakesRingsThatArePeers();
    void aBaseEdgeMakesParallelEdges();
    void aParallelEdgeMakesNone();
    void handlesThatAreNotValidAreRefused_data();
    void handlesThatAreNotValidAreRefused();
    void handlesOfOtherScenesAreTakenByTheirIdAlone();
    void removalsAndClearReachTheModel();
    void deletionOfTheSceneFreesItsElements();

    void testNodeAtPointMeasuresFromTheCentre_data();
    void testNodeAtPointMeasuresFromTheCentre();
    void testNodeAtPointIsStrictToTheLastBit();
    void testNodeAtPointTakesTheCircleAsItIs_data();
    void testNodeAtPointTakesTheCircleAsItIs();
    void testNodeAtPointDoesNotMirror();
    void testNodeAtPointPassesNoNodeOver();
    void testNodeAtPointGivesAllNodes();
};

void GraphSceneTest::queuedConnectionsInWordsArrive()
{
    GraphScene scene;
    const GraphNode node = scene.createNode(5);
    Listener listener;
    connectInWords(scene, listener, Qt::QueuedConnection);
    clickAt(scene, {0.0f, 0.0f});
    scene.setSize(9000, 9000);
    QCOMPARE(listener.heard, QStringList());
    QCoreApplication::processEvents();
    QCOMPARE(listener.heard, (QStringList{"selected 1 nodes, 0 edges", "changed 0", "size"}));
    QCOMPARE(listener.nodeIds, Ids{5});
    QVERIFY(node.select());
}

void GraphSceneTest::queuedConnectionsByPointerArrive()
{
    GraphScene scene;
    scene.createNode(5);
    Listener listener;
    connectByPointer(scene, listener, Qt::QueuedConnection);
    clickAt(scene, {0.0f, 0.0f});
    scene.setSize(9000, 9000);
    QCOMPARE(listener.heard, QStringList());
    QCoreApplication::processEvents();
    QCOMPARE(listener.heard, (QStringList{"selected 1 nodes, 0 edges", "changed 0", "size"}));
    QCOMPARE(listener.nodeIds, Ids{5});
}

void GraphSceneTest::directConnectionsOfBothFormsArrive()
{
    for (const auto connectTo : {connectInWords, connectByPointer}) {
        GraphScene scene;
        scene.createNode(5);
        Listener listener;
        connectTo(scene, listener, Qt::DirectConnection);
        clickAt(scene, {0.0f, 0.0f});
        QCOMPARE(listener.heard, (QStringList{"selected 1 nodes, 0 edges", "changed 0"}));
        QCOMPARE(listener.nodeIds, Ids{5});
        scene.setSize(9000, 9000);
        QCOMPARE(listener.heard.last(), QStringLiteral("size"));
    }
}

void GraphSceneTest::connectionsToFunctionsArrive()
{
    GraphScene scene;
    scene.createNode(5);
    Ids nodeIds;
    int regions = 0;
    connect(&scene, &GraphScene::signalSelectChanged, &scene,
            [&nodeIds](const Ids& nodes, const Ids&) { nodeIds = nodes; });
    connect(
        &scene, &GraphScene::changed, &scene, [&regions](const QList<QRectF>&) { ++regions; }, Qt::QueuedConnection);
    clickAt(scene, {0.0f, 0.0f});
    QCOMPARE(nodeIds, Ids{5});
    QCOMPARE(regions, 0);
    QCoreApplication::processEvents();
    QCOMPARE(regions, 1);
}

void GraphSceneTest::spiesWorkOnAllSignals()
{
    GraphScene scene;
    const GraphNode node = scene.createNode(5);
    scene.createEdge(6, node, node);
    const QSignalSpy selections(&scene, &GraphScene::signalSelectChanged);
    const QSignalSpy selectionsInWords(&scene, SIGNAL(signalSelectChanged(QList<qint64>, QList<qint64>)));
    const QSignalSpy changes(&scene, &GraphScene::changed);
    const QSignalSpy changesInWords(&scene, SIGNAL(changed(QList<QRectF>)));
    const QSignalSpy sizes(&scene, &GraphScene::signalSizeChanged);
    const QSignalSpy sizesInWords(&scene, SIGNAL(signalSizeChanged()));

    sceneOf(scene).selectInFrame({-200.0f, 800.0f}, {200.0f, -200.0f}, SELECT_REPLACE);
    scene.setSize(1, 1);
    for (const QSignalSpy* spy : {&selections, &selectionsInWords}) {
        QCOMPARE(spy->count(), 1);
        QCOMPARE(spy->first()[0].value<Ids>(), Ids{5});
        QCOMPARE(spy->first()[1].value<Ids>(), Ids{6});
    }
    for (const QSignalSpy* spy : {&changes, &changesInWords}) {
        QCOMPARE(spy->count(), 1);
        QVERIFY(spy->first()[0].canConvert<QList<QRectF>>());
        QVERIFY(spy->first()[0].value<QList<QRectF>>().isEmpty());
    }
    QCOMPARE(sizes.count(), 1);
    QCOMPARE(sizesInWords.count(), 1);
}

void GraphSceneTest::declaresItsSignalsInOrder()
{
    const QMetaObject& type = GraphScene::staticMetaObject;
    QList<QByteArray> signatures;
    for (int i = type.methodOffset(); i < type.methodCount(); ++i) {
        QCOMPARE(type.method(i).methodType(), QMetaMethod::Signal);
        signatures << type.method(i).methodSignature();
    }
    QCOMPARE(signatures, (QList<QByteArray>{"signalSelectChanged(QList<qint64>,QList<qint64>)",
                                            "changed(QList<QRectF>)", "signalSizeChanged()"}));
    QCOMPARE(type.method(type.methodOffset()).parameterNames(), (QList<QByteArray>{"ns", "es"}));
    QCOMPARE(type.method(type.methodOffset() + 1).parameterNames(), QList<QByteArray>{"region"});
}

void GraphSceneTest::hasNoParentAndItsOwnName()
{
    GraphScene scene;
    QVERIFY(!scene.parent());
    QObject* object = &scene;
    QCOMPARE(object->metaObject(), &GraphScene::staticMetaObject);
    QCOMPARE(GraphScene::staticMetaObject.className(), "NELK::GraphScene");
    QCOMPARE(GraphScene::staticMetaObject.superClass(), &QObject::staticMetaObject);
    QCOMPARE(qobject_cast<GraphScene*>(object), &scene);
}

namespace
{

class ContextTranslator : public QTranslator
{
public:
    QString translate(const char* context, const char* text, const char*, int) const override
    {
        return QStringLiteral("%1: %2").arg(QLatin1String(context), QLatin1String(text));
    }
};

} // namespace

void GraphSceneTest::translatesInItsOwnContext()
{
    ContextTranslator translator;
    QCoreApplication::installTranslator(&translator);
    const QString translated = GraphScene::tr("text");
    QCoreApplication::removeTranslator(&translator);
    QCOMPARE(translated, QStringLiteral("NELK::GraphScene: text"));
}

void GraphSceneTest::selectionsOfAViewAreForwardedInOrder()
{
    GraphScene scene;
    scene.createNode(5).setSelect(true);
    const GraphNode node = scene.createNode(6);
    scene.createNode(7).setPos(5000, 0);
    scene.createEdge(8, node, node).setSelect(true);
    Listener listener;
    connectInWords(scene, listener, Qt::DirectConnection);
    sceneOf(scene).selectInFrame({4900.0f, 100.0f}, {5100.0f, -100.0f}, SELECT_ADD);
    QCOMPARE(listener.heard, (QStringList{"selected 2 nodes, 1 edges", "changed 0"}));
    QCOMPARE(sorted(listener.nodeIds), (Ids{5, 7}));
    QCOMPARE(listener.edgeIds, Ids{8});

    sceneOf(scene).selectInFrame({4900.0f, 100.0f}, {5100.0f, -100.0f}, SELECT_ADD);
    QCOMPARE(listener.heard.size(), 2);
}

void GraphSceneTest::dragsAreForwardedAsChanges()
{
    GraphScene scene;
    Listener listener;
    connectInWords(scene, listener, Qt::DirectConnection);
    sceneOf(scene).moveSelected({1.0f, 1.0f});
    QCOMPARE(listener.heard, QStringList{"changed 0"});
}

void GraphSceneTest::sizeChangesAreToldAlways()
{
    GraphScene scene;
    const EmissionCounter emissions(scene);
    const QSignalSpy spy(&scene, &GraphScene::signalSizeChanged);
    scene.setSize(10000, 6000);
    QCOMPARE(spy.count(), 1);
    scene.setSize(10000, 6000);
    QCOMPARE(spy.count(), 2);
    scene.setSize(100, 100);
    QCOMPARE(spy.count(), 3);
    QCOMPARE(emissions.count(), 3);

    // Whoever hears of it reads the new size.
    int widthHeard = 0;
    connect(&scene, &GraphScene::signalSizeChanged, &scene, [&] { widthHeard = scene.width(); });
    scene.setSize(20000, 6000);
    QCOMPARE(widthHeard, 20000);
}

void GraphSceneTest::ownOperationsEmitNothing()
{
    auto scene = std::make_unique<GraphScene>();
    const EmissionCounter emissions(*scene);
    const EmissionCounter emissionsOfTheModel(sceneOf(*scene));
    QCOMPARE(emissions.signalsWatched(), 3);
    GraphNode node = scene->createNode();
    node.setSelect(true);
    const GraphNode other = scene->createNode(100);
    GraphEdge edge = scene->createEdge(node, other);
    scene->createEdge(101, edge, 1).setSelect(true);
    scene->createEdge(edge, 2);
    scene->createEdge(102, node, node).setSelect(true);
    scene->createEdge(GraphNode(), node);
    scene->createNode(100).setSelect(true);
    scene->getNode(100);
    scene->getEdge(99);
    scene->boundingRect(true);
    scene->elementsAlignToCenter();
    scene->setNodeTextShow(false);
    scene->setEdgeTextShow(false);
    scene->testNodeAtPoint(QPoint(0, 0));
    scene->removeEdge(101);
    scene->removeNode(node.getId());
    scene->clear();
    scene->createNode(1).setSelect(true);
    scene.reset();
    QCOMPARE(emissions.count(), 0);
    QCOMPARE(emissionsOfTheModel.count(), 0);
}

void GraphSceneTest::sizeHasAFloor_data()
{
    QTest::addColumn<QSize>("asked");
    QTest::addColumn<QSize>("expected");
    QTest::newRow("too small") << QSize(100, 100) << QSize(8000, 4800);
    QTest::newRow("one below") << QSize(7999, 4799) << QSize(8000, 4800);
    QTest::newRow("at the floor") << QSize(8000, 4800) << QSize(8000, 4800);
    QTest::newRow("one above") << QSize(8001, 4801) << QSize(8001, 4801);
    QTest::newRow("each by itself") << QSize(9000, 100) << QSize(9000, 4800);
    QTest::newRow("negative") << QSize(-1, -1) << QSize(8000, 4800);
}

void GraphSceneTest::sizeHasAFloor()
{
    QFETCH(QSize, asked);
    GraphScene scene;
    QCOMPARE(QSize(scene.width(), scene.height()), QSize(8000, 4800));
    scene.setSize(20000, 20000);
    scene.setSize(asked.width(), asked.height());
    QTEST(QSize(scene.width(), scene.height()), "expected");
}

void GraphSceneTest::clearKeepsTheSize()
{
    GraphScene scene;
    scene.setSize(10000, 6000);
    scene.createNode(1);
    scene.clear();
    QVERIFY(!scene.getNode(1).valid());
    QCOMPARE(QSize(scene.width(), scene.height()), QSize(10000, 6000));
}

void GraphSceneTest::textFlagsAreStoredAndNothingElse()
{
    GraphScene scene;
    const Scene& model = sceneOf(scene);
    scene.setNodeTextShow(false);
    QVERIFY(!model.nodeTextShow);
    QVERIFY(model.edgeTextShow);
    scene.setEdgeTextShow(false);
    scene.setNodeTextShow(true);
    QVERIFY(model.nodeTextShow);
    QVERIFY(!model.edgeTextShow);
    scene.setEdgeTextShow(true);
    QVERIFY(model.edgeTextShow);
}

void GraphSceneTest::boundingRectIsThatOfTheModel()
{
    GraphScene scene;
    QCOMPARE(scene.boundingRect(false), QRect(-4000, 2400, 8000, -4800));
    GraphNode node = scene.createNode(1);
    node.setPos(100, 50);
    scene.createNode(2).setPos(-300, -150);
    node.setShow(false);
    QCOMPARE(scene.boundingRect(false), QRect(-300, 50, 400, 200));
    QCOMPARE(scene.boundingRect(true), QRect(-300, -150, 0, 0));
}

void GraphSceneTest::elementsAlignToCenterMovesNodesAndEdges()
{
    GraphScene scene;
    GraphNode start = scene.createNode(1);
    GraphNode end = scene.createNode(2);
    end.setPos(100, 200);
    const GraphEdge edge = scene.createEdge(1, start, end);
    scene.elementsAlignToCenter();
    QCOMPARE(start.pos(), QPoint(-50, -100));
    QCOMPARE(end.pos(), QPoint(50, 100));
    QCOMPARE(edge.startPos(), QPoint(-50, 100));
    QCOMPARE(edge.endPos(), QPoint(50, -100));
}

void GraphSceneTest::aNodeWithItselfMakesARing()
{
    GraphScene scene;
    const GraphNode node = scene.createNode(1);
    const GraphNode same = scene.getNode(1);
    const GraphEdge ring = scene.createEdge(10, node, same);
    QVERIFY(ring.valid());
    QVERIFY(ring.ring());
    QCOMPARE(sceneOf(scene).getEdge(10)->index, 0);
}

void GraphSceneTest::aRingMakesRingsThatArePeers()
{
    GraphScene scene;
    const GraphNode node = scene.createNode(1);
    const GraphEdge first = scene.createEdge(10, node, node);
    const GraphEdge second = scene.createEdge(11, first, 2);
    QVERIFY(second.valid());
    QVERIFY(second.ring());
    QVERIFY(!sceneOf(scene).getEdge(11)->baseEdge);
    QCOMPARE(sceneOf(scene).getEdge(11)->index, 2);
    const GraphEdge third = scene.createEdge(12, second, 3);
    QVERIFY(third.valid());
    QVERIFY(third.ring());
}

void GraphSceneTest::aBaseEdgeMakesParallelEdges()
{
    GraphScene scene;
    const GraphNode start = scene.createNode(1);
    GraphNode end = scene.createNode(2);
    end.setPos(1000, 0);
    const GraphEdge base = scene.createEdge(10, start, end);
    QVERIFY(base.valid() && !base.ring());
    const GraphEdge right = scene.createEdge(11, base, 1);
    const GraphEdge left = scene.createEdge(12, base, 2);
    QVERIFY(right.valid() && left.valid());
    // Right of a way along x is below it, and the graph plane has y down.
    QCOMPARE(right.curveStartPos(), QPoint(128, 128));
    QCOMPARE(right.curveEndPos(), QPoint(872, 128));
    QCOMPARE(left.curveStartPos(), QPoint(128, -128));
    QCOMPARE(left.curveEndPos(), QPoint(872, -128));
    QCOMPARE(right.startPos(), base.startPos());
    QCOMPARE(right.endPos(), base.endPos());
}

void GraphSceneTest::aParallelEdgeMakesNone()
{
    GraphScene scene;
    const GraphNode start = scene.createNode(1);
    const GraphEdge base = scene.createEdge(10, start, scene.createNode(2));
    const GraphEdge derived = scene.createEdge(11, base, 1);
    QVERIFY(derived.valid());
    const GraphEdge refused = scene.createEdge(12, derived, 2);
    QVERIFY(!refused.valid());
    QVERIFY(refused == scene.getEdge(99)); // null, but of this scene
    QCOMPARE(sceneOf(scene).edges.size(), 2);
}

namespace
{

enum Ending
{
    NeverBegun,
    NotFound,
    Removed,
    Cleared,
    Replaced,
    RemovedAndCreatedAgain
};

/// A node and an edge of `scene` under the id 5, brought to an end in one of the ways there are. The scene then holds
/// node 1, and what has taken the place of the two.
void bringToAnEnd(GraphScene& scene, Ending ending, GraphNode& node, GraphEdge& edge)
{
    if (ending != NeverBegun) {
        node = ending == NotFound ? scene.getNode(5) : scene.createNode(5);
        edge = ending == NotFound ? scene.getEdge(5) : scene.createEdge(5, node, node);
    }
    if (ending == Cleared)
        scene.clear();
    if (ending == Removed || ending == RemovedAndCreatedAgain)
        scene.removeNode(5);
    if (ending == Replaced || ending == RemovedAndCreatedAgain) {
        const GraphNode next = scene.createNode(5);
        scene.createEdge(5, next, next);
    }
    scene.createNode(1);
}

} // namespace

void GraphSceneTest::handlesThatAreNotValidAreRefused_data()
{
    QTest::addColumn<int>("ending");
    QTest::newRow("null") << int(NeverBegun);
    QTest::newRow("null, of the scene") << int(NotFound);
    QTest::newRow("removed") << int(Removed);
    QTest::newRow("cleared away") << int(Cleared);
    QTest::newRow("replaced") << int(Replaced);
    QTest::newRow("removed, and the id lives again at the same place") << int(RemovedAndCreatedAgain);
}

void GraphSceneTest::handlesThatAreNotValidAreRefused()
{
    QFETCH(int, ending);
    GraphScene scene;
    GraphNode node;
    GraphEdge edge;
    bringToAnEnd(scene, Ending(ending), node, edge);
    QVERIFY(!node.valid() && !edge.valid());

    const GraphNode alive = scene.getNode(1);
    const int edgesBefore = sceneOf(scene).edges.size();
    const GraphEdge nullOfTheScene = scene.getEdge(99);
    QVERIFY(scene.createEdge(30, node, alive) == nullOfTheScene);
    QVERIFY(scene.createEdge(30, alive, node) == nullOfTheScene);
    QVERIFY(scene.createEdge(30, node, node) == nullOfTheScene);
    QVERIFY(scene.createEdge(30, edge, 1) == nullOfTheScene);
    QVERIFY(scene.createEdge(node, alive) == nullOfTheScene);
    QVERIFY(scene.createEdge(edge, 1) == nullOfTheScene);
    QCOMPARE(sceneOf(scene).edges.size(), edgesBefore);
    QVERIFY(sceneOf(scene).getNode(1)->outEdges.isEmpty());
    QCOMPARE(brokenInvariant(sceneOf(scene)), QString());
}

void GraphSceneTest::handlesOfOtherScenesAreTakenByTheirIdAlone()
{
    GraphScene scene;
    GraphScene other;
    const GraphNode node = scene.createNode(1);
    const GraphNode known = other.createNode(1);
    const GraphNode unknown = other.createNode(2);
    QVERIFY(!scene.createEdge(10, node, unknown).valid());
    QVERIFY(scene.createEdge(10, node, known).valid());
    QCOMPARE(sceneOf(scene).getEdge(10)->endNode, sceneOf(other).getNode(1));
}

void GraphSceneTest::removalsAndClearReachTheModel()
{
    GraphScene scene;
    const Scene& model = sceneOf(scene);
    const GraphNode node = scene.createNode(1);
    scene.createEdge(10, node, node);
    scene.createEdge(11, node, node);
    scene.removeEdge(10);
    QCOMPARE(model.edges.keys(), Ids{11});
    scene.createNode(2);
    scene.removeNode(1);
    QVERIFY(model.edges.isEmpty());
    QCOMPARE(model.nodes.keys(), Ids{2});
    scene.clear();
    QVERIFY(model.nodes.isEmpty());
}

void GraphSceneTest::deletionOfTheSceneFreesItsElements()
{
    // A value shared with a record tells when the record is gone.
    const QString sharedWithNode(10, QLatin1Char('n'));
    const QList<LabelLine> sharedWithEdge{LabelLine()};
    auto scene = std::make_unique<GraphScene>();
    const GraphNode node = scene->createNode(1);
    scene->createEdge(10, node, node);
    sceneOf(*scene).getNode(1)->imageName = sharedWithNode;
    sceneOf(*scene).getEdge(10)->labelLines = sharedWithEdge;
    QVERIFY(!sharedWithNode.isDetached() && !sharedWithEdge.isDetached());
    const QPointer<Scene> model(&sceneOf(*scene));
    scene.reset();
    QVERIFY(!model);
    QVERIFY(sharedWithNode.isDetached());
    QVERIFY(sharedWithEdge.isDetached());
}

void GraphSceneTest::testNodeAtPointMeasuresFromTheCentre_data()
{
    QTest::addColumn<QPoint>("offset");
    QTest::addColumn<bool>("hit");
    QTest::newRow("centre") << QPoint(0, 0) << true;
    QTest::newRow("180 to the right") << QPoint(180, 0) << true;
    QTest::newRow("181 to the right") << QPoint(181, 0) << false;
    QTest::newRow("180 to the left") << QPoint(-180, 0) << true;
    QTest::newRow("181 to the left") << QPoint(-181, 0) << false;
    QTest::newRow("180 up") << QPoint(0, 180) << true;
    QTest::newRow("181 up") << QPoint(0, 181) << false;
    QTest::newRow("180 down") << QPoint(0, -180) << true;
    QTest::newRow("181 down") << QPoint(0, -181) << false;
    // 19 * 19 + 180 * 180 = 181 * 181
    QTest::newRow("on the rim, off the axes") << QPoint(19, -180) << false;
    QTest::newRow("just inside") << QPoint(18, -180) << true;
    QTest::newRow("just outside") << QPoint(20, -180) << false;
    // 127 * 127 * 2 is below, 128 * 128 * 2 above the square of 181, which is 32761.
    QTest::newRow("inside a corner of the icon") << QPoint(127, 127) << true;
    QTest::newRow("a corner of the icon") << QPoint(128, 128) << false;
}

void GraphSceneTest::testNodeAtPointMeasuresFromTheCentre()
{
    QFETCH(QPoint, offset);
    QFETCH(bool, hit);
    for (const QPoint& centre : {QPoint(0, 0), QPoint(1000, -3000)}) {
        GraphScene scene;
        GraphNode node = scene.createNode(5);
        node.setPos(centre);
        const QList<GraphNode> found = scene.testNodeAtPoint(centre + offset);
        QCOMPARE(found.size(), hit ? 1 : 0);
        QVERIFY(!hit || found.first() == node);
    }
}

void GraphSceneTest::testNodeAtPointIsStrictToTheLastBit()
{
    GraphScene scene;
    scene.createNode(5);
    NodeData& node = *sceneOf(scene).getNode(5);
    node.x = 181.0f;
    QCOMPARE(scene.testNodeAtPoint(QPoint(0, 0)).size(), 0);
    node.x = std::nextafter(181.0f, 0.0f);
    QCOMPARE(scene.testNodeAtPoint(QPoint(0, 0)).size(), 1);
    node.x = std::nextafter(181.0f, 200.0f);
    QCOMPARE(scene.testNodeAtPoint(QPoint(0, 0)).size(), 0);
}

void GraphSceneTest::testNodeAtPointTakesTheCircleAsItIs_data()
{
    QTest::addColumn<bool>("circleShow");
    QTest::addColumn<int>("diameter");
    QTest::addColumn<int>("farthestHit");
    QTest::newRow("even") << false << 362 << 180;
    QTest::newRow("odd: half of 363 is 181") << false << 363 << 180;
    QTest::newRow("next even") << false << 364 << 181;
    QTest::newRow("circle shown") << true << 362 << 180;
    QTest::newRow("wide circle") << false << 724 << 361;
}

void GraphSceneTest::testNodeAtPointTakesTheCircleAsItIs()
{
    QFETCH(bool, circleShow);
    QFETCH(int, diameter);
    QFETCH(int, farthestHit);
    GraphScene scene;
    GraphNode node = scene.createNode(5);
    node.setCircleShow(circleShow);
    sceneOf(scene).getNode(5)->circleDiameter = diameter;
    QCOMPARE(scene.testNodeAtPoint(QPoint(farthestHit, 0)).size(), 1);
    QCOMPARE(scene.testNodeAtPoint(QPoint(farthestHit + 1, 0)).size(), 0);
}

void GraphSceneTest::testNodeAtPointDoesNotMirror()
{
    GraphScene scene;
    scene.createNode(5).setPos(0, 1000);
    QCOMPARE(scene.testNodeAtPoint(QPoint(0, 1000)).size(), 1);
    QCOMPARE(scene.testNodeAtPoint(QPoint(0, -1000)).size(), 0);
}

void GraphSceneTest::testNodeAtPointPassesNoNodeOver()
{
    GraphScene scene;
    scene.createNode(5).setShow(false);
    for (const qint64 id : {qint64(12345678899), qint64(12345678900), std::numeric_limits<qint64>::max(), qint64(-1)})
        scene.createNode(id);
    scene.createNode(6).setSelect(true);
    QCOMPARE(scene.testNodeAtPoint(QPoint(0, 0)).size(), 6);
}

void GraphSceneTest::testNodeAtPointGivesAllNodes()
{
    GraphScene scene;
    QVERIFY(scene.testNodeAtPoint(QPoint(0, 0)).isEmpty());
    scene.createNode(5).setPos(-100, 0);
    scene.createNode(6).setPos(100, 0);
    scene.createNode(7).setPos(1000, 0);
    const QList<GraphNode> found = scene.testNodeAtPoint(QPoint(0, 0));
    Ids ids;
    for (const GraphNode& node : found) {
        QVERIFY(node.valid());
        QVERIFY(node == scene.getNode(node.getId()));
        ids << node.getId();
    }
    QCOMPARE(sorted(ids), (Ids{5, 6}));
}

QTEST_GUILESS_MAIN(GraphSceneTest)

#include "GraphSceneTest.moc"
