#include "scene/MirroredFlag.h"
#include "scene/Scene.h"
#include "support/SceneOf.h"
#include "support/SignalLog.h"

#include <NELK/GraphScene.h>

#include <QtTest>

#include <algorithm>

using namespace NELK;

class SceneSelectionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void selectsByAClick_data();
    void selectsByAClick();
    void selectsByAFrame_data();
    void selectsByAFrame();
    void emitsNothingForASelectionThatIsThereAlready();

    void findsTheNodeAtAPoint();
    void findsTheTopmostOfOverlappingNodes();
    void findsTheTopmostSelectedNodeBeforeAnyOther();
    void findsSelectedNodesOnlyIfAsked();
    void findsTheEdgeAtAPoint();
    void findsTheFirstOfOverlappingEdges();
    void changesNothingByATest();

    void clicksTheTopmostOfOverlappingNodes();
    void clicksTheFirstOfOverlappingEdges();
    void clicksOneNodeOfManyWhereverItStands();
    void clicksTheRimOfACircleButNotTheSideOfAnIcon();
    void clicksLabelsAsPartOfTheirNodes();
    void clicksEdgesButNotNodesWithTolerance();
    void tellsAClickOnAnEdgeFromOneOnANode();
    void writesTheChangeOnlyWhenThereIsOne();

    void framesLabelsAsPartOfTheirNodes();
    void framesNodesAndEdgesAlike();
    void takesFramesWithoutExtent();

    void keepsHiddenElementsSelected();
    void findsAndHitsNothingHidden();
    void neverPicksNodesFromTheIdLimitOn();
    void picksEdgesWithAnyId();
    void reportsHiddenElementsAmongTheSelected();
    void startsAfreshAfterClear();

    void relaysEachSignalOnce();
    void relaysNothingOfWhatTheHostSelects();
};

namespace
{

Ids sorted(Ids ids)
{
    std::sort(ids.begin(), ids.end());
    return ids;
}

NodeData* addNode(Scene& scene, qint64 id, float x, float y)
{
    NodeData* node = scene.createNode(id);
    node->x = x;
    node->y = y;
    return node;
}

void select(Scene& scene, const Ids& nodes, const Ids& edges)
{
    for (const qint64 id : nodes)
        setMirrored(*scene.getNode(id), &NodeData::select, true, scene.selectedNodes);
    for (const qint64 id : edges)
        setMirrored(*scene.getEdge(id), &EdgeData::select, true, scene.selectedEdges);
}

/// Whether exactly these are selected, by flag and by set alike.
bool isSelected(const Scene& scene, const Ids& nodes, const Ids& edges)
{
    Ids flaggedNodes;
    for (NodeData* node : scene.nodes) {
        if (node->select)
            flaggedNodes.append(node->id);
        if (scene.selectedNodes.value(node->id) != (node->select ? node : nullptr))
            return false;
    }
    Ids flaggedEdges;
    for (EdgeData* edge : scene.edges) {
        if (edge->select)
            flaggedEdges.append(edge->id);
        if (scene.selectedEdges.value(edge->id) != (edge->select ? edge : nullptr))
            return false;
    }
    return sorted(flaggedNodes) == sorted(nodes) && sorted(flaggedEdges) == sorted(edges) &&
           scene.selectedNodes.size() == nodes.size() && scene.selectedEdges.size() == edges.size();
}

/// A click with the tolerance of 4 that views use; answers whether a node was hit.
bool click(Scene& scene, QVector2D point, SelectMode mode)
{
    bool changed = false;
    return scene.selectAtPoint(point, mode, &changed, 4);
}

/// Nodes 1 to 4 at the corners of a square of 2000 units, and edges along its top and bottom: 12 from 1 to 2, which
/// are the upper ones, and 34 from 3 to 4.
class Square
{
public:
    Square()
    {
        addNode(scene, 1, 0.0f, 0.0f);
        addNode(scene, 2, 2000.0f, 0.0f);
        addNode(scene, 3, 0.0f, -2000.0f);
        addNode(scene, 4, 2000.0f, -2000.0f);
        scene.createEdge(12, scene.getNode(1), scene.getNode(2));
        scene.createEdge(34, scene.getNode(3), scene.getNode(4));
    }

    Scene scene;
    SignalLog log{scene};
};

const QVector2D onNode1(0.0f, 0.0f); // and on edge 12, below it
const QVector2D onEdge12(1000.0f, 0.0f);
const QVector2D onBackground(1000.0f, -1000.0f);

/// `count` nodes on top of each other, the one painted last in front.
QList<NodeData*> addPile(Scene& scene, int count)
{
    for (int id = 1; id <= count; ++id)
        addNode(scene, id, 0.0f, 0.0f);
    QList<NodeData*> pile = scene.nodes.values();
    std::reverse(pile.begin(), pile.end());
    return pile;
}

/// `count` edges on top of each other, at x from 0 to 2000, in the order in which the scene walks them. The nodes are
/// hidden.
QList<EdgeData*> addBundle(Scene& scene, int count)
{
    NodeData* start = addNode(scene, 1001, 0.0f, 0.0f);
    NodeData* end = addNode(scene, 1002, 2000.0f, 0.0f);
    start->show = false;
    end->show = false;
    for (int id = 1; id <= count; ++id)
        scene.createEdge(id, start, end);
    return scene.edges.values();
}

} // namespace

void SceneSelectionTest::selectsByAClick_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QVector2D>("point");
    QTest::addColumn<bool>("nodeHit");
    QTest::addColumn<Ids>("nodesBefore");
    QTest::addColumn<Ids>("edgesBefore");
    QTest::addColumn<Ids>("nodesAfter");
    QTest::addColumn<Ids>("edgesAfter");

    const auto row = [](const char* name, int mode, QVector2D point, const Ids& nodesBefore, const Ids& edgesBefore,
                        const Ids& nodesAfter, const Ids& edgesAfter) {
        QTest::newRow(name) << mode << point << (point == onNode1) << nodesBefore << edgesBefore << nodesAfter
                            << edgesAfter;
    };
    row("replace: a node", 0, onNode1, {}, {}, {1}, {});
    row("replace: a node for others", 0, onNode1, {2, 3, 4}, {34}, {1}, {});
    row("replace: a selected node alone", 0, onNode1, {1}, {}, {1}, {});
    row("replace: a selected node among others", 0, onNode1, {1, 2}, {12, 34}, {1}, {});
    row("replace: a node over a selected edge", 0, onNode1, {}, {12}, {1}, {});
    row("replace: an edge", 0, onEdge12, {}, {}, {}, {12});
    row("replace: an edge for others", 0, onEdge12, {1, 2, 3}, {34}, {}, {12});
    row("replace: a selected edge alone", 0, onEdge12, {}, {12}, {}, {12});
    row("replace: a selected edge among others", 0, onEdge12, {1}, {12, 34}, {}, {12});
    row("replace: the background", 0, onBackground, {1, 4}, {12, 34}, {}, {});
    row("replace: the background without a selection", 0, onBackground, {}, {}, {}, {});

    row("add: a node", 1, onNode1, {2, 3}, {34}, {1, 2, 3}, {34});
    row("add: a selected node", 1, onNode1, {1, 2, 3}, {34}, {2, 3}, {34});
    row("add: a node over an edge", 1, onNode1, {}, {}, {1}, {});
    row("add: a node over a selected edge", 1, onNode1, {}, {12}, {1}, {12});
    row("add: an edge", 1, onEdge12, {1, 2}, {34}, {1, 2}, {12, 34});
    row("add: a selected edge", 1, onEdge12, {1, 2}, {12, 34}, {1, 2}, {34});
    row("add: the background", 1, onBackground, {1, 4}, {12, 34}, {1, 4}, {12, 34});

    row("remove: a node", 2, onNode1, {2, 3}, {34}, {2, 3}, {34});
    row("remove: a selected node", 2, onNode1, {1, 2, 3}, {34}, {2, 3}, {34});
    row("remove: a selected node over a selected edge", 2, onNode1, {1}, {12}, {}, {12});
    row("remove: a node over a selected edge", 2, onNode1, {}, {12}, {}, {12});
    row("remove: an edge", 2, onEdge12, {1, 2}, {34}, {1, 2}, {34});
    row("remove: a selected edge", 2, onEdge12, {1, 2}, {12, 34}, {1, 2}, {34});
    row("remove: the background", 2, onBackground, {1, 4}, {12, 34}, {1, 4}, {12, 34});
}

void SceneSelectionTest::selectsByAClick()
{
    QFETCH(int, mode);
    QFETCH(QVector2D, point);
    QFETCH(Ids, nodesBefore);
    QFETCH(Ids, edgesBefore);
    QFETCH(Ids, nodesAfter);
    QFETCH(Ids, edgesAfter);

    Square square;
    select(square.scene, nodesBefore, edgesBefore);
    bool changed = false;
    const bool nodeHit = square.scene.selectAtPoint(point, SelectMode(mode), &changed, 4);

    QTEST(nodeHit, "nodeHit");
    QVERIFY(isSelected(square.scene, nodesAfter, edgesAfter));
    const bool anyChange = nodesBefore != nodesAfter || edgesBefore != edgesAfter;
    QCOMPARE(changed, anyChange);
    QCOMPARE(square.log.take(), anyChange ? SignalLog::selectionChangedTo(nodesAfter, edgesAfter) : QStringList());
}

void SceneSelectionTest::selectsByAFrame_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QVector2D>("leftTop");
    QTest::addColumn<QVector2D>("rightBottom");
    QTest::addColumn<Ids>("nodesBefore");
    QTest::addColumn<Ids>("edgesBefore");
    QTest::addColumn<Ids>("nodesAfter");
    QTest::addColumn<Ids>("edgesAfter");

    struct Frame
    {
        QVector2D leftTop;
        QVector2D rightBottom;
    };
    const Frame onAll{{-1000.0f, 1000.0f}, {3000.0f, -3000.0f}};
    const Frame onUpperHalf{{-1000.0f, 1000.0f}, {3000.0f, -1000.0f}}; // nodes 1 and 2, edge 12
    const Frame onEdge{{900.0f, 100.0f}, {1100.0f, -100.0f}};          // edge 12
    const Frame onNothing{{900.0f, -900.0f}, {1100.0f, -1100.0f}};

    const auto row = [](const char* name, int mode, const Frame& frame, const Ids& nodesBefore, const Ids& edgesBefore,
                        const Ids& nodesAfter, const Ids& edgesAfter) {
        QTest::newRow(name) << mode << frame.leftTop << frame.rightBottom << nodesBefore << edgesBefore << nodesAfter
                            << edgesAfter;
    };
    row("replace: all", 0, onAll, {}, {}, {1, 2, 3, 4}, {12, 34});
    row("replace: the upper half for the lower", 0, onUpperHalf, {3, 4}, {34}, {1, 2}, {12});
    row("replace: the upper half of all", 0, onUpperHalf, {1, 2, 3, 4}, {12, 34}, {1, 2}, {12});
    row("replace: an edge", 0, onEdge, {1, 2}, {34}, {}, {12});
    row("replace: what is selected already", 0, onUpperHalf, {1, 2}, {12}, {1, 2}, {12});
    row("replace: nothing", 0, onNothing, {1, 4}, {12}, {}, {});
    row("replace: nothing without a selection", 0, onNothing, {}, {}, {}, {});

    row("add: the upper half", 1, onUpperHalf, {3}, {34}, {1, 2, 3}, {12, 34});
    row("add: to a part of it", 1, onUpperHalf, {1, 3}, {12}, {1, 2, 3}, {12});
    row("add: a selected edge", 1, onEdge, {1}, {12, 34}, {1}, {12, 34});
    row("add: what is selected already", 1, onUpperHalf, {1, 2, 3}, {12, 34}, {1, 2, 3}, {12, 34});
    row("add: nothing", 1, onNothing, {1, 4}, {12}, {1, 4}, {12});

    row("remove: the upper half", 2, onUpperHalf, {1, 2, 3}, {12, 34}, {3}, {34});
    row("remove: an edge", 2, onEdge, {1, 2}, {12, 34}, {1, 2}, {34});
    row("remove: what is not selected", 2, onUpperHalf, {3, 4}, {34}, {3, 4}, {34});
    row("remove: nothing", 2, onNothing, {1, 4}, {12}, {1, 4}, {12});
}

void SceneSelectionTest::selectsByAFrame()
{
    QFETCH(int, mode);
    QFETCH(QVector2D, leftTop);
    QFETCH(QVector2D, rightBottom);
    QFETCH(Ids, nodesBefore);
    QFETCH(Ids, edgesBefore);
    QFETCH(Ids, nodesAfter);
    QFETCH(Ids, edgesAfter);

    Square square;
    select(square.scene, nodesBefore, edgesBefore);
    square.scene.selectInFrame(leftTop, rightBottom, SelectMode(mode));

    QVERIFY(isSelected(square.scene, nodesAfter, edgesAfter));
    const bool anyChange = nodesBefore != nodesAfter || edgesBefore != edgesAfter;
    QCOMPARE(square.log.take(), anyChange ? SignalLog::selectionChangedTo(nodesAfter, edgesAfter) : QStringList());
}

void SceneSelectionTest::emitsNothingForASelectionThatIsThereAlready()
{
    Square square;
    const auto frameUpperHalf = [&](SelectMode mode) {
        square.scene.selectInFrame({-1000.0f, 1000.0f}, {3000.0f, -1000.0f}, mode);
    };
    frameUpperHalf(SELECT_REPLACE);
    QCOMPARE(square.log.take(), SignalLog::selectionChangedTo({1, 2}, {12}));
    frameUpperHalf(SELECT_REPLACE);
    frameUpperHalf(SELECT_ADD);
    QCOMPARE(square.log.take(), QStringList());

    click(square.scene, onNode1, SELECT_REPLACE);
    QCOMPARE(square.log.take(), SignalLog::selectionChangedTo({1}, {}));
    click(square.scene, onNode1, SELECT_REPLACE);
    QCOMPARE(square.log.take(), QStringList());
}

void SceneSelectionTest::findsTheNodeAtAPoint()
{
    Square square;
    qint64 id = -1;
    QVERIFY(square.scene.testNodeAt({2100.0f, -1900.0f}, &id, false));
    QCOMPARE(id, 4);
    QVERIFY(!square.scene.testNodeAt({2128.0f, -2000.0f}, &id, false));
    QCOMPARE(id, 4);
    QVERIFY(square.scene.testNodeAt({0.0f, 0.0f}, nullptr, false));
    QVERIFY(!square.scene.testNodeAt(onBackground, nullptr, false));

    square.scene.getNode(3)->labelWidth = 300;
    square.scene.getNode(3)->labelHeight = 40;
    QVERIFY(square.scene.testNodeAt({149.0f, -2167.0f}, &id, false));
    QCOMPARE(id, 3);
    square.scene.nodeTextShow = false;
    QVERIFY(!square.scene.testNodeAt({149.0f, -2167.0f}, &id, false));
}

void SceneSelectionTest::findsTheTopmostOfOverlappingNodes()
{
    Scene scene;
    const QList<NodeData*> pile = addPile(scene, 8);
    qint64 id = -1;
    for (NodeData* topmost : pile) {
        QVERIFY(scene.testNodeAt({0.0f, 0.0f}, &id, false));
        QCOMPARE(id, topmost->id);
        topmost->x = 5000.0f;
    }
    QVERIFY(!scene.testNodeAt({0.0f, 0.0f}, &id, false));
}

void SceneSelectionTest::findsTheTopmostSelectedNodeBeforeAnyOther()
{
    Scene scene;
    const QList<NodeData*> pile = addPile(scene, 8);
    qint64 id = -1;
    for (int depth = 7; depth >= 0; --depth) {
        select(scene, {pile[depth]->id}, {});
        QVERIFY(scene.testNodeAt({0.0f, 0.0f}, &id, false));
        QCOMPARE(id, pile[depth]->id);
    }

    // A selected node elsewhere does not count.
    pile[0]->x = 5000.0f;
    QVERIFY(scene.testNodeAt({0.0f, 0.0f}, &id, false));
    QCOMPARE(id, pile[1]->id);
}

void SceneSelectionTest::findsSelectedNodesOnlyIfAsked()
{
    Scene scene;
    const QList<NodeData*> pile = addPile(scene, 8);
    qint64 id = -1;
    QVERIFY(!scene.testNodeAt({0.0f, 0.0f}, &id, true));
    QCOMPARE(id, -1);

    select(scene, {pile[5]->id, pile[3]->id}, {});
    QVERIFY(scene.testNodeAt({0.0f, 0.0f}, &id, true));
    QCOMPARE(id, pile[3]->id);
    QVERIFY(scene.testNodeAt({0.0f, 0.0f}, nullptr, true));
    QVERIFY(!scene.testNodeAt({5000.0f, 0.0f}, nullptr, true));

    pile[3]->show = false;
    QVERIFY(scene.testNodeAt({0.0f, 0.0f}, &id, true));
    QCOMPARE(id, pile[5]->id);
}

void SceneSelectionTest::findsTheEdgeAtAPoint()
{
    Square square;
    qint64 id = -1;
    QVERIFY(square.scene.testEdgeAt({1000.0f, -2011.0f}, 4, &id));
    QCOMPARE(id, 34);
    QVERIFY(!square.scene.testEdgeAt({1000.0f, -12.0f}, 4, &id));
    QCOMPARE(id, 34);
    QVERIFY(square.scene.testEdgeAt({1000.0f, -12.0f}, 5, &id));
    QCOMPARE(id, 12);
    QVERIFY(square.scene.testEdgeAt(onNode1, 4, nullptr)); // under the node's icon
    QVERIFY(!square.scene.testEdgeAt(onBackground, 4, nullptr));
}

void SceneSelectionTest::findsTheFirstOfOverlappingEdges()
{
    Scene scene;
    const QList<EdgeData*> bundle = addBundle(scene, 8);
    select(scene, {}, {bundle[7]->id});
    bundle[7]->edgeWidth = 100;
    qint64 id = -1;
    for (EdgeData* first : bundle) {
        QVERIFY(scene.testEdgeAt(onEdge12, 4, &id));
        QCOMPARE(id, first->id);
        first->show = false;
    }
    QVERIFY(!scene.testEdgeAt(onEdge12, 4, &id));
}

void SceneSelectionTest::changesNothingByATest()
{
    Square square;
    select(square.scene, {2}, {34});
    for (const QVector2D point : {onNode1, onEdge12, onBackground}) {
        square.scene.testNodeAt(point, nullptr, false);
        square.scene.testNodeAt(point, nullptr, true);
        square.scene.testEdgeAt(point, 4, nullptr);
    }
    QVERIFY(isSelected(square.scene, {2}, {34}));
    QCOMPARE(square.log.take(), QStringList());
}

void SceneSelectionTest::clicksTheTopmostOfOverlappingNodes()
{
    Scene scene;
    const QList<NodeData*> pile = addPile(scene, 2);
    const qint64 upper = pile[0]->id;
    const qint64 lower = pile[1]->id;

    QVERIFY(click(scene, {0.0f, 0.0f}, SELECT_REPLACE));
    QVERIFY(isSelected(scene, {upper}, {}));
    QVERIFY(click(scene, {0.0f, 0.0f}, SELECT_ADD));
    QVERIFY(isSelected(scene, {}, {}));

    // A test prefers the selected node; a click does not.
    select(scene, {lower}, {});
    qint64 id = -1;
    QVERIFY(scene.testNodeAt({0.0f, 0.0f}, &id, false));
    QCOMPARE(id, lower);
    SignalLog log(scene);
    QVERIFY(click(scene, {0.0f, 0.0f}, SELECT_REMOVE));
    QVERIFY(isSelected(scene, {lower}, {}));
    QCOMPARE(log.take(), QStringList());
    QVERIFY(click(scene, {0.0f, 0.0f}, SELECT_ADD));
    QVERIFY(isSelected(scene, {upper, lower}, {}));
    QVERIFY(click(scene, {0.0f, 0.0f}, SELECT_REMOVE));
    QVERIFY(isSelected(scene, {lower}, {}));
    QVERIFY(click(scene, {0.0f, 0.0f}, SELECT_REPLACE));
    QVERIFY(isSelected(scene, {upper}, {}));
}

void SceneSelectionTest::clicksTheFirstOfOverlappingEdges()
{
    Scene scene;
    const QList<EdgeData*> bundle = addBundle(scene, 3);
    const qint64 first = bundle[0]->id;
    const qint64 second = bundle[1]->id;
    const qint64 third = bundle[2]->id;

    click(scene, onEdge12, SELECT_REPLACE);
    QVERIFY(isSelected(scene, {}, {first}));
    click(scene, onEdge12, SELECT_ADD);
    QVERIFY(isSelected(scene, {}, {}));

    select(scene, {}, {second, third});
    SignalLog log(scene);
    click(scene, onEdge12, SELECT_REMOVE);
    QVERIFY(isSelected(scene, {}, {second, third}));
    QCOMPARE(log.take(), QStringList());
    click(scene, onEdge12, SELECT_ADD);
    QVERIFY(isSelected(scene, {}, {first, second, third}));
    click(scene, onEdge12, SELECT_REMOVE);
    QVERIFY(isSelected(scene, {}, {second, third}));
    click(scene, onEdge12, SELECT_REPLACE);
    QVERIFY(isSelected(scene, {}, {first}));
}

void SceneSelectionTest::clicksOneNodeOfManyWhereverItStands()
{
    constexpr int count = 20;
    Scene scene;
    Ids all;
    for (qint64 id = 1; id <= count; ++id) {
        addNode(scene, id, 1000.0f * static_cast<float>(id), 0.0f);
        all.append(id);
    }
    SignalLog log(scene);
    for (qint64 id = 1; id <= count; ++id) {
        const QVector2D point(1000.0f * static_cast<float>(id), 0.0f);
        Ids others = all;
        others.removeOne(id);

        select(scene, all, {});
        QVERIFY(click(scene, point, SELECT_REMOVE));
        QVERIFY(isSelected(scene, others, {}));
        QCOMPARE(log.take(), SignalLog::selectionChangedTo(others, {}));
        QVERIFY(click(scene, point, SELECT_ADD));
        QVERIFY(isSelected(scene, all, {}));
        QCOMPARE(log.take(), SignalLog::selectionChangedTo(all, {}));
        QVERIFY(click(scene, point, SELECT_REPLACE));
        QVERIFY(isSelected(scene, {id}, {}));
        QCOMPARE(log.take(), SignalLog::selectionChangedTo({id}, {}));
    }
}

void SceneSelectionTest::clicksTheRimOfACircleButNotTheSideOfAnIcon()
{
    Scene scene;
    NodeData* node = addNode(scene, 1, 0.0f, 0.0f);
    QVERIFY(!click(scene, {128.0f, 0.0f}, SELECT_REPLACE));
    QVERIFY(isSelected(scene, {}, {}));
    QVERIFY(click(scene, {127.0f, 0.0f}, SELECT_REPLACE));
    QVERIFY(isSelected(scene, {1}, {}));

    setMirrored(*node, &NodeData::circleShow, true, scene.circleNodes);
    QVERIFY(!click(scene, {182.0f, 0.0f}, SELECT_REPLACE));
    QVERIFY(isSelected(scene, {}, {}));
    QVERIFY(click(scene, {181.0f, 0.0f}, SELECT_REPLACE));
    QVERIFY(isSelected(scene, {1}, {}));
}

void SceneSelectionTest::clicksLabelsAsPartOfTheirNodes()
{
    Scene scene;
    NodeData* node = addNode(scene, 1, 0.0f, 0.0f);
    node->labelWidth = 300;
    node->labelHeight = 40;
    const QVector2D onLabel(140.0f, -150.0f);
    QVERIFY(click(scene, onLabel, SELECT_REPLACE));
    QVERIFY(isSelected(scene, {1}, {}));

    scene.nodeTextShow = false;
    QVERIFY(!click(scene, onLabel, SELECT_REPLACE));
    QVERIFY(isSelected(scene, {}, {}));

    node->setNumWidth = 300;
    node->setNumHeight = 40;
    QVERIFY(click(scene, onLabel, SELECT_REPLACE));
    QVERIFY(isSelected(scene, {1}, {}));
}

void SceneSelectionTest::clicksEdgesButNotNodesWithTolerance()
{
    Square square;
    bool changed = false;
    QVERIFY(!square.scene.selectAtPoint({1000.0f, 20.0f}, SELECT_REPLACE, &changed, 12));
    QVERIFY(isSelected(square.scene, {}, {}));
    square.scene.selectAtPoint({1000.0f, 20.0f}, SELECT_REPLACE, &changed, 13);
    QVERIFY(isSelected(square.scene, {}, {12}));
    QVERIFY(!square.scene.selectAtPoint({0.0f, 129.0f}, SELECT_REPLACE, &changed, 100));
    QVERIFY(isSelected(square.scene, {}, {}));
}

void SceneSelectionTest::tellsAClickOnAnEdgeFromOneOnANode()
{
    Square square;
    bool changed = false;
    QVERIFY(!square.scene.selectAtPoint(onEdge12, SELECT_REPLACE, &changed, 4));
    QVERIFY(changed);
    QVERIFY(isSelected(square.scene, {}, {12}));

    // A node is told even where the click leaves all as it is.
    select(square.scene, {}, {34});
    changed = false;
    QVERIFY(square.scene.selectAtPoint(onNode1, SELECT_REMOVE, &changed, 4));
    QVERIFY(!changed);
}

void SceneSelectionTest::writesTheChangeOnlyWhenThereIsOne()
{
    Square square;
    bool changed = true;
    square.scene.selectAtPoint(onBackground, SELECT_REPLACE, &changed, 4);
    QVERIFY(changed);

    changed = false;
    square.scene.selectAtPoint(onBackground, SELECT_REPLACE, &changed, 4);
    QVERIFY(!changed);
    square.scene.selectAtPoint(onNode1, SELECT_REPLACE, &changed, 4);
    QVERIFY(changed);

    changed = false;
    square.scene.selectAtPoint(onNode1, SELECT_REPLACE, &changed, 4);
    QVERIFY(!changed);
    square.scene.selectAtPoint(onBackground, SELECT_REPLACE, &changed, 4);
    QVERIFY(changed);
}

void SceneSelectionTest::framesLabelsAsPartOfTheirNodes()
{
    Scene scene;
    NodeData* node = addNode(scene, 1, 0.0f, 0.0f);
    node->labelWidth = 300;
    node->labelHeight = 40;
    const auto frameLabel = [&] { scene.selectInFrame({135.0f, -140.0f}, {145.0f, -150.0f}, SELECT_REPLACE); };
    frameLabel();
    QVERIFY(isSelected(scene, {1}, {}));
    scene.nodeTextShow = false;
    frameLabel();
    QVERIFY(isSelected(scene, {}, {}));
    node->setNumWidth = 300;
    node->setNumHeight = 40;
    frameLabel();
    QVERIFY(isSelected(scene, {1}, {}));
}

void SceneSelectionTest::framesNodesAndEdgesAlike()
{
    Scene scene;
    const QList<NodeData*> pile = addPile(scene, 3);
    NodeData* aside = addNode(scene, 4, 2000.0f, 0.0f);
    for (NodeData* node : pile)
        scene.createEdge(10 + node->id, node, aside);
    scene.selectInFrame({-10.0f, 10.0f}, {10.0f, -10.0f}, SELECT_ADD);
    QVERIFY(isSelected(scene, {1, 2, 3}, {11, 12, 13}));
    scene.selectInFrame({-10.0f, 10.0f}, {10.0f, -10.0f}, SELECT_REMOVE);
    QVERIFY(isSelected(scene, {}, {}));
}

void SceneSelectionTest::takesFramesWithoutExtent()
{
    Square square;
    square.scene.selectInFrame({100.0f, 1000.0f}, {100.0f, -1000.0f}, SELECT_REPLACE);
    QVERIFY(isSelected(square.scene, {1}, {12}));
    square.scene.selectInFrame({-100.0f, -1950.0f}, {1000.0f, -1950.0f}, SELECT_REPLACE);
    QVERIFY(isSelected(square.scene, {3}, {}));
    square.scene.selectInFrame({2010.0f, 10.0f}, {2010.0f, 10.0f}, SELECT_REPLACE);
    QVERIFY(isSelected(square.scene, {2}, {}));
}

void SceneSelectionTest::keepsHiddenElementsSelected()
{
    Square square;
    select(square.scene, {3}, {34});
    square.scene.getNode(3)->show = false;
    square.scene.getEdge(34)->show = false;

    click(square.scene, onBackground, SELECT_REPLACE);
    square.scene.selectInFrame({900.0f, -900.0f}, {1100.0f, -1100.0f}, SELECT_REPLACE);
    for (const SelectMode mode : {SELECT_REPLACE, SELECT_ADD, SELECT_REMOVE}) {
        click(square.scene, {0.0f, -2000.0f}, mode);
        click(square.scene, {1000.0f, -2000.0f}, mode);
    }
    square.scene.selectInFrame({-10.0f, -1900.0f}, {10.0f, -2100.0f}, SELECT_REMOVE);
    QVERIFY(isSelected(square.scene, {3}, {34}));
    QCOMPARE(square.log.take(), QStringList());

    click(square.scene, onNode1, SELECT_REPLACE);
    QVERIFY(isSelected(square.scene, {1, 3}, {34}));
    click(square.scene, onBackground, SELECT_REPLACE);
    QVERIFY(isSelected(square.scene, {3}, {34}));
    QCOMPARE(square.log.take(), SignalLog::selectionChangedTo({1, 3}, {34}) + SignalLog::selectionChangedTo({3}, {34}));
}

void SceneSelectionTest::findsAndHitsNothingHidden()
{
    Square square;
    square.scene.getNode(1)->show = false;
    QVERIFY(!square.scene.testNodeAt(onNode1, nullptr, false));

    // A hidden node covers nothing: the click goes through to the edge.
    QVERIFY(!click(square.scene, onNode1, SELECT_REPLACE));
    QVERIFY(isSelected(square.scene, {}, {12}));

    square.scene.getEdge(12)->show = false;
    QVERIFY(!square.scene.testEdgeAt(onNode1, 4, nullptr));
    click(square.scene, onNode1, SELECT_ADD);
    square.scene.selectInFrame({-1000.0f, 1000.0f}, {3000.0f, -3000.0f}, SELECT_ADD);
    QVERIFY(isSelected(square.scene, {2, 3, 4}, {12, 34}));
}

void SceneSelectionTest::neverPicksNodesFromTheIdLimitOn()
{
    constexpr qint64 limit = 12345678900;
    GraphScene graphScene;
    Scene& scene = sceneOf(graphScene);
    SignalLog log(scene);
    const GraphNode node = graphScene.createNode(limit);
    QVERIFY(!scene.testNodeAt({0.0f, 0.0f}, nullptr, false));
    QCOMPARE(graphScene.testNodeAtPoint(QPoint(0, 0)), QList<GraphNode>{node});

    for (const bool selected : {false, true}) {
        const Ids expected = selected ? Ids{limit} : Ids{};
        select(scene, expected, {});
        for (const SelectMode mode : {SELECT_REPLACE, SELECT_ADD, SELECT_REMOVE}) {
            QVERIFY(!click(scene, {0.0f, 0.0f}, mode));
            click(scene, {5000.0f, 0.0f}, mode);
            scene.selectInFrame({-10.0f, 10.0f}, {10.0f, -10.0f}, mode);
            scene.selectInFrame({5000.0f, 10.0f}, {5010.0f, -10.0f}, mode);
            QVERIFY(isSelected(scene, expected, {}));
        }
        QVERIFY(!scene.testNodeAt({0.0f, 0.0f}, nullptr, selected));
    }
    QCOMPARE(log.take(), QStringList());

    graphScene.createNode(limit - 1);
    QVERIFY(click(scene, {0.0f, 0.0f}, SELECT_REPLACE));
    QVERIFY(isSelected(scene, {limit - 1, limit}, {}));
}

void SceneSelectionTest::picksEdgesWithAnyId()
{
    constexpr qint64 beyondLimit = 12345678901;
    Square square;
    square.scene.createEdge(beyondLimit, square.scene.getNode(1), square.scene.getNode(3));
    const QVector2D onEdge(0.0f, -1000.0f);
    qint64 id = -1;
    QVERIFY(square.scene.testEdgeAt(onEdge, 4, &id));
    QCOMPARE(id, beyondLimit);
    click(square.scene, onEdge, SELECT_REPLACE);
    QVERIFY(isSelected(square.scene, {}, {beyondLimit}));
    square.scene.selectInFrame({-10.0f, -990.0f}, {10.0f, -1010.0f}, SELECT_REMOVE);
    QVERIFY(isSelected(square.scene, {}, {}));
}

void SceneSelectionTest::reportsHiddenElementsAmongTheSelected()
{
    Square square;
    select(square.scene, {3}, {34});
    square.scene.getNode(3)->show = false;
    square.scene.getEdge(34)->show = false;
    click(square.scene, onNode1, SELECT_ADD);
    QCOMPARE(square.log.take(), SignalLog::selectionChangedTo({1, 3}, {34}));
    square.scene.selectInFrame({900.0f, 100.0f}, {1100.0f, -100.0f}, SELECT_REPLACE);
    QCOMPARE(square.log.take(), SignalLog::selectionChangedTo({3}, {12, 34}));
}

void SceneSelectionTest::startsAfreshAfterClear()
{
    Square square;
    select(square.scene, {1, 2}, {12});
    square.scene.clear();
    QVERIFY(isSelected(square.scene, {}, {}));
    for (const SelectMode mode : {SELECT_REPLACE, SELECT_ADD, SELECT_REMOVE}) {
        square.scene.selectInFrame({-1000.0f, 1000.0f}, {3000.0f, -3000.0f}, mode);
        QVERIFY(!click(square.scene, onNode1, mode));
    }
    QCOMPARE(square.log.take(), QStringList());
}

void SceneSelectionTest::relaysEachSignalOnce()
{
    GraphScene graphScene;
    SignalLog log(graphScene);
    GraphNode one = graphScene.createNode(1);
    GraphNode two = graphScene.createNode(2);
    two.setPos(2000, 0);
    graphScene.createEdge(12, one, two);
    Scene& scene = sceneOf(graphScene);

    click(scene, onNode1, SELECT_REPLACE);
    QCOMPARE(log.take(), SignalLog::selectionChangedTo({1}, {}));
    click(scene, onEdge12, SELECT_ADD);
    QCOMPARE(log.take(), SignalLog::selectionChangedTo({1}, {12}));
    scene.selectInFrame({-1000.0f, 1000.0f}, {3000.0f, -1000.0f}, SELECT_ADD);
    QCOMPARE(log.take(), SignalLog::selectionChangedTo({1, 2}, {12}));
    scene.selectInFrame({-1000.0f, 1000.0f}, {3000.0f, -1000.0f}, SELECT_ADD);
    QCOMPARE(log.take(), QStringList());
    scene.moveSelected({10.0f, 0.0f});
    QCOMPARE(log.take(), QStringList{SignalLog::changed()});
}

void SceneSelectionTest::relaysNothingOfWhatTheHostSelects()
{
    GraphScene graphScene;
    SignalLog log(graphScene);
    SignalLog innerLog(sceneOf(graphScene));
    GraphNode one = graphScene.createNode(1);
    GraphNode two = graphScene.createNode(2);
    GraphEdge edge = graphScene.createEdge(12, one, two);
    one.setSelect(true);
    edge.setSelect(true);
    edge.setSelect(false);
    graphScene.removeNode(1);
    graphScene.clear();
    QCOMPARE(log.take(), QStringList());
    QCOMPARE(innerLog.take(), QStringList());
}

QTEST_APPLESS_MAIN(SceneSelectionTest)

#include "SceneSelectionTest.moc"
